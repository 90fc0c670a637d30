// When a satellite passes over a place: pure functions over a record, a place and a span of time.
#pragma once

#include "base/json/json.h"
#include "globe/earth_frame.h"

#include <optional>
#include <vector>

namespace nimbara {

/// A moment of a pass as it is seen from the place.
struct PassMoment {
  Instant time;
  double azimuth = 0;    ///< degrees from north through east
  double elevation = 0;  ///< degrees, without refraction
};

template <>
inline constexpr auto jsonFields<PassMoment> =
    FieldList{field("time", &PassMoment::time), field("azimuth", &PassMoment::azimuth),
              field("elevation", &PassMoment::elevation)};

/// A stretch of a pass.
struct PassSpan {
  Instant from, to;
};

template <>
inline constexpr auto jsonFields<PassSpan> =
    FieldList{field("from", &PassSpan::from), field("to", &PassSpan::to)};

/// Below it buildings, trees and haze stand before satellites; degrees.
inline constexpr double kVisibleAbove = 10;

struct SatellitePass {
  PassMoment rise, culmination, set;
  bool sunlit = false;   ///< the satellite, when it stands highest
  bool skyDark = false;  ///< the sun is then more than 6° below the place's horizon
  /// The longest stretch in which it can be seen: lit, high enough and in a dark sky, all at once. Stretches
  /// of less than ten seconds may be missed.
  std::optional<PassSpan> visible;
};

/// The passes above the horizon that have not ended at `from` and begin before `to`, in the order of their
/// culminations. Satellites that never rise or never set there have none. Times are good to a tenth of a
/// second. They can be seen from `visibleAbove` degrees on.
std::vector<SatellitePass> satellitePasses(SGP4::SatRec const& record, Coordinate place, Instant from,
                                           Instant to, double visibleAbove = kVisibleAbove);

}  // namespace nimbara
