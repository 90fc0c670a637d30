#include "support/answers/made_satellites.h"

namespace nimbara::test {

SGP4::TLE madeElements(Drawn& draw, Shape const& shape, int number) {
  constexpr double kRadians = std::numbers::pi / 180;
  SGP4::TLE tle;
  tle.satnum = number;
  tle.epochDay = 2461364.5;
  tle.epochFraction = std::round(draw(0, 1) * 1e8) / 1e8;
  tle.epochJD = tle.epochDay + tle.epochFraction;
  tle.ecco = draw(shape.roundest, shape.longest);
  tle.inclo = draw(shape.flattest, shape.steepest) * kRadians;
  tle.nodeo = draw(0, 360) * kRadians;
  tle.argpo = draw(0, 360) * kRadians;
  tle.mo = draw(0, 360) * kRadians;
  tle.bstar = std::pow(10, draw(shape.weakest, shape.strongest)) * (draw(0, 1) < 0.1 ? -1 : 1);
  double const radii = (1 + draw(shape.lowest, shape.highest) / SGP4::kEarthRadiusKm) / (1 - tle.ecco);
  tle.no_kozai = SGP4::kXke / std::pow(radii, 1.5);
  return tle;
}

std::vector<SGP4::SatRec> madeSatellites(std::vector<Shape> const& shapes) {
  Drawn draw;
  std::vector<SGP4::SatRec> records;
  for (Shape const& shape : shapes) {
    for (int i = 0; i < shape.count; ++i) {
      records.push_back(
          SGP4::initialise(madeElements(draw, shape, 10'000 + static_cast<int>(records.size()))));
    }
  }
  return records;
}

std::vector<SGP4::SatRec> madeNearEarth() {
  return madeSatellites({{7300, 340, 570, 5e-5, 4e-4, 33, 97.7, -4.3, -3.1},
                         {650, 1190, 1210, 1e-4, 4e-4, 87.8, 88, -4, -3},
                         {1960, 430, 900, 3e-4, 0.05, 65, 99.5, -4.5, -2.3},
                         {60, 815, 855, 5e-4, 1.5e-3, 98.5, 99.1, -4.7, -3.7},
                         {20, 390, 420, 2e-4, 1.2e-3, 41.47, 51.64, -4, -3.2},
                         {10, 180, 230, 0.01, 0.05, 55, 65, -5, -3.7}});
}

}  // namespace nimbara::test
