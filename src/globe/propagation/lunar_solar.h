// Lunar-solar terms, used by the deep-space part alone.
#pragma once

#include "globe/propagation/deep_space.h"

namespace nimbara::SGP4 {

/// What one disturbing body does, under the names of the published theory.
struct BodyTerms {
  double s1, s2, s3, s4, s5, s6, s7;
  double z1, z2, z3, z11, z12, z13, z21, z22, z23, z31, z32, z33;
};

/// What the resonance terms need as well.
struct LunarSolarTerms {
  double sini, cosi, emsq;
};

/// Sets the record's lunar-solar rates and periodic coefficients.
LunarSolarTerms initialiseLunarSolar(SatRec& record);

}  // namespace nimbara::SGP4
