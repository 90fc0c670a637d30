// Writing of measured values into the interchange record: the one place that knows how an hour, the present
// and a day are put into texts. Clients gather their service's values into the entries below and hand them
// over. A value that the service did not give is absent, is written as an empty text, and leaves its detail
// out of the record's set.
#pragma once

#include "base/geodesy.h"
#include "base/time/calendar.h"
#include "base/time/instant.h"
#include "model/wttr_response.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

using Reading = std::optional<double>;

/// The condition of a service that has codes of its own: the WWO code and the English description, both
/// texts of a table that lives as long as the program.
struct WwoCondition {
  std::string_view code;
  std::string_view description;

  bool operator==(WwoCondition const&) const = default;
};

/// The values of one hour or of the present: °C, %, mm, cm of snow, km/h, degrees, hPa, m.
struct HourlyEntry {
  Instant begin;
  int hour = 0;  ///< 0-23, of the place
  Reading temperature2m;
  Reading relativeHumidity2m;
  Reading apparentTemperature;
  Reading dewPoint2m;
  std::optional<int> weatherCode;  ///< WMO; services with other codes set `condition` instead
  std::optional<WwoCondition> condition;
  Reading cloudCover;
  Reading precipitationProbability;
  Reading thunderProbability;  ///< estimated from the condition where it is absent, as the next one is
  Reading fogProbability;
  Reading precipitation;
  Reading snowfall;
  Reading windSpeed10m;
  Reading windDirection10m;
  Reading windGusts10m;
  Reading pressureMsl;
  Reading visibility;
  Reading uvIndex;
  std::optional<bool> isDay;
};

/// The values of one local day; what is absent is taken from the hours.
struct DailyEntry {
  Date date;
  Reading temperatureMax;
  Reading temperatureMin;
  Reading uvIndexMax;
  Reading precipitationProbabilityMax;
  Reading snowfallSum;
  Reading precipitationSum;
  Reading windSpeedMax;
  Reading windDirectionDominant;
  std::optional<int> weatherCode;  ///< WMO; services with other codes set `condition` instead
  std::optional<WwoCondition> condition;
  std::optional<Instant> sunrise;
  std::optional<Instant> sunset;
};

HourlyCondition writeHour(HourlyEntry const& entry);

/// `observed` is the moment of the reading, `time` its text as the service wrote it.
CurrentCondition writeCurrent(HourlyEntry const& entry, LocalTime observed, std::string time);

/// `hours` are those of that day in the place's time, in order. Nothing when neither the entry nor the hours
/// know the day's extremes.
std::optional<WeatherDay> writeDay(DailyEntry const& entry, std::span<HourlyEntry const> hours,
                                   Calendar const& calendar, Coordinate place);

/// The record's area and request for a coordinate that has no name yet.
NearestArea writeArea(Coordinate place);
WttrRequest writeRequest(Coordinate place);

}  // namespace nimbara
