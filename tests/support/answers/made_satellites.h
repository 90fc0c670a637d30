// Element sets made up by a generator of its own, so that they are the same on every machine: shaped like the
// groups that the globe shows, near earth unless deep space is asked for.
#pragma once

#include "globe/propagation/sat_rec.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace nimbara::test {

/// Numbers in [low, high), by a linear congruential generator.
class Drawn {
 public:
  double operator()(double low, double high) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return low + (high - low) * static_cast<double>(state_ >> 11) / 9007199254740992.0;
  }

 private:
  std::uint64_t state_ = 20261121;
};

/// A shape of orbits: heights of the perigee in km, eccentricities, inclinations in degrees, B* as powers
/// of 10.
struct Shape {
  int count;
  double lowest, highest, roundest, longest, flattest, steepest, weakest, strongest;
};

SGP4::TLE madeElements(Drawn& draw, Shape const& shape, int number);

std::vector<SGP4::SatRec> madeSatellites(std::vector<Shape> const& shapes);

/// 10,000 of them.
std::vector<SGP4::SatRec> madeNearEarth();

}  // namespace nimbara::test
