// How a MeteoAlarm entry tells what it warns of and by which level's colour. Pure.
#pragma once

#include "feeds/awareness/meteo_alarm_type.h"
#include "model/warnings/weather_alert.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// What the kind's alerts are about.
WarningKind warningKindOf(MeteoAlarmType type);

/// A number from 1 to 12 at the beginning of `event` decides; else the word of `title` between the colour and
/// "Warning issued for"; else the words of `event`, in any of the services' languages; else those of the
/// title's head.
MeteoAlarmType meteoAlarmTypeOf(std::string_view event, std::string_view title);

/// The kind that the words of a text name, the longest word deciding.
MeteoAlarmType meteoAlarmTypeInWords(std::string_view text);

/// The kind that a message's parameter names: the word of "12; flooding", else its number as the messages
/// count, where 12 is a flood and 13 is rain and flood.
std::optional<MeteoAlarmType> awarenessTypeOf(std::string_view parameter);

/// "yellow" of "Yellow Wind Warning issued for …"; empty for titles that begin with no level's colour.
std::string colourOfTitle(std::string_view title);

/// "orange" of a message's parameter "3; orange; Severe"; empty where it names no level's colour.
std::string colourOfLevel(std::string_view parameter);

/// Whether the title calls the level green, which means that there is nothing to warn of.
bool isGreenTitle(std::string_view title);

}  // namespace nimbara
