// What a weather station in the user's own network tells over HTTP, in any of the forms in docs/stations.md:
// the local interface of Ecowitt's gateways, the names of Ambient Weather's consoles, packets of WeeWX, or a
// plain object. Pure; any bytes may be given.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"
#include "feeds/stations/station_reading.h"

#include <string_view>

namespace nimbara {

enum class StationForm { ecowitt, ambient, weewx, plain };

template <>
inline constexpr auto enumNames<StationForm> =
    std::to_array<std::string_view>({"ecowitt", "ambient", "weewx", "plain"});
static_assert(enumNamesComplete(StationForm::plain));

struct StationDocument {
  StationForm form = StationForm::plain;
  StationReading station;  ///< without an identifier; its place only where the document says it

  bool operator==(StationDocument const&) const = default;
};

/// The form is known by its names. `now` is the time of what is sent without one. An error where nothing was
/// measured that this program knows.
Result<StationDocument, DecodeError> parseStationDocument(std::string_view body, Instant now);

}  // namespace nimbara
