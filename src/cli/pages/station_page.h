// The user's weather station for scripts and for people.
#pragma once

#include "app/words/station_text.h"
#include "base/json/json.h"
#include "cli/pages/style.h"

namespace nimbara {

/// {"tempC": {"station", "module", "observedAt", "ageSeconds"}…}: by the present's members, which values are
/// a station's. What is felt is computed from them.
void writeSources(JsonWriter& json, StationShown const& shown, Instant now);

std::string stationJson(StationShown const& shown, Instant now);
std::string stationsJson(StationsReading const& reading, Instant now);

struct StationPageOptions {
  Style style;
  Units units;
  Instant now;
};

std::string stationPage(StationShown const& shown, Texts const& texts, StationPageOptions const& options);
std::string stationList(StationsReading const& reading, Texts const& texts,
                        StationPageOptions const& options);

}  // namespace nimbara
