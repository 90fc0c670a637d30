// The user's weather station in words, for every face. Pure.
#pragma once

#include "base/units.h"
#include "base/words/texts.h"
#include "feeds/stations/station_shown.h"

#include <string>

namespace nimbara {

/// What a module is called: its own name, else that of its kind.
std::string moduleText(std::string const& name, StationModuleKind kind, Texts const& texts);

/// "From your station, 4 min ago", or of several: "From 6 stations within 2 km, 4 min ago". Empty where
/// nothing of the present is a station's.
std::string liveText(StationShown const& shown, Units const& units, Texts const& texts, Instant now);

/// The like of one value; empty where it is not the station's.
std::string markText(StationShown const& shown, StationQuantity quantity, Units const& units,
                     Texts const& texts, Instant now);

/// Why a value is not shown as the present one; a whole sentence.
std::string doubtText(DoubtedValue const& doubted, Units const& units, Texts const& texts, Instant now);

/// Where the account's tokens lie, a whole sentence; empty where there are none.
std::string tokensText(StationTokensIn tokens, Texts const& texts);

/// Why nothing can be told of the station; empty where something can. A whole sentence.
std::string stationProblemText(StationsReading const& reading, Texts const& texts);

/// "3.4 °C", in the user's unit.
std::string valueText(StationQuantity quantity, double value, Units const& units);

}  // namespace nimbara
