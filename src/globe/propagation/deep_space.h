// The deep-space part of the propagator: orbits of 225 minutes and more, which the moon and the sun pull at
// and which may resonate with the earth's rotation. Used by sat_rec.cpp alone.
#pragma once

#include "globe/propagation/mean_elements.h"

namespace nimbara::SGP4 {

/// Sets the lunar-solar and the resonance terms of a record whose near-earth terms are set.
void initialiseDeepSpace(SatRec& record);

/// What moon, sun and resonance have done in `t` minutes.
void addDeepSpaceSecular(SatRec const& rec, double t, MeanElements& m, ResonanceState& state);

/// The waves with the periods of moon and sun. The inclination comes out positive.
void addLunarSolarPeriodics(SatRec const& rec, double t, MeanElements& m);

}  // namespace nimbara::SGP4
