// The first half of a propagation, after which near earth and deep space go the same way: what gravity, drag,
// moon and sun have made of the elements. Used inside the propagator and by its batch.
#pragma once

#include "globe/propagation/sat_rec.h"

namespace nimbara::SGP4 {

/// The elements of a moment on their way through the theory; angles in radians.
struct MeanElements {
  double em, inclm, nodem, argpm, mm;
  double nm;  ///< mean motion, radians per minute
};

struct MeanMoment {
  MeanElements elements{};
  double am = 0;  ///< semi-major axis, earth radii
  int error = 0;  ///< without a code the rest is set
};

MeanMoment meanElementsAt(SatRec const& rec, double tsince, ResonanceState& resonance);

/// The long-period coefficients of an inclination.
struct LongPeriod {
  double aycof, xlcof;
};
LongPeriod longPeriod(double sini, double cosi);

}  // namespace nimbara::SGP4
