// Fires as satellites see them: the parser of the hot spots that NASA FIRMS lists, and how neighbouring hot
// spots become one fire. Pure; any bytes may be given. A hot spot need not be a wildfire: flares of gas and
// volcanoes are among them.
#pragma once

#include "base/enum_names.h"
#include "base/geodesy.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class FireConfidence { low, nominal, high };

template <>
inline constexpr auto enumNames<FireConfidence> = std::to_array<std::string_view>({"low", "nominal", "high"});
static_assert(enumNamesComplete(FireConfidence::high));

/// One cell of one satellite's image.
struct HotSpot {
  Coordinate coordinate;
  Instant time;
  double frp = 0;  ///< radiative power, MW
  FireConfidence confidence = FireConfidence::nominal;

  bool operator==(HotSpot const&) const = default;
};

struct FireDetection {
  std::string id;         ///< of the place ("fire:38.40,-122.65"), so one fire keeps it from pass to pass
  Coordinate coordinate;  ///< the middle of its hot spots
  Instant detectedAt;     ///< the newest
  double frp = 0;         ///< of the strongest hot spot, MW
  FireConfidence confidence = FireConfidence::nominal;  ///< the highest
  int hotSpots = 1;
  double reachKm = 0;  ///< from the middle to the farthest of them

  bool operator==(FireDetection const&) const = default;
};

/// In the table's order, without those of low confidence and rows that cannot be read. A text that is no such
/// table, as the service sends for a wrong key under status 200 too, is an error that quotes it.
Result<std::vector<HotSpot>, DecodeError> parseHotSpots(std::string_view body);

/// Hot spots of the last 24 hours within `radiusKm`, those within 2 km of each other as one fire. The nearest
/// fire first.
std::vector<FireDetection> firesNear(std::vector<HotSpot> const& spots, Coordinate place, double radiusKm,
                                     Instant now);

/// A fire that moves and grows keeps the identifier under which it was known: that of the nearest of
/// `before`, from edge to edge within 5 km.
void keepFireIds(std::vector<FireDetection>& fires, std::vector<FireDetection> const& before);

}  // namespace nimbara
