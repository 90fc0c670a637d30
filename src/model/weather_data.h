// The processed forecast of one place: what the rest of the program reads, caches and analyses. Values are
// metric; moments are absolute. Its JSON keys are a file format.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"
#include "base/uuid.h"
#include "model/weather_condition.h"
#include "model/wttr_response.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct LocationInfo {
  std::string areaName;
  std::string country;
  std::string region;
  double latitude = 0;   ///< degrees
  double longitude = 0;  ///< degrees
  std::optional<std::string> timeZone;

  bool operator==(LocationInfo const&) const = default;
};

template <>
inline constexpr auto jsonFields<LocationInfo> = FieldList{
    field("areaName", &LocationInfo::areaName),   field("country", &LocationInfo::country),
    field("region", &LocationInfo::region),       field("latitude", &LocationInfo::latitude),
    field("longitude", &LocationInfo::longitude), field("timeZone", &LocationInfo::timeZone),
};

/// One hour. A detail that the provider lacked is 0 and missing from `availableDetailFields`; without that
/// set all details are real.
struct HourlyForecast {
  TransientId id;
  Instant date;
  int hour = 0;  ///< 0-23, of the place
  double tempC = 0;
  double tempF = 0;
  double feelsLikeC = 0;
  double feelsLikeF = 0;
  int humidity = 0;  ///< %
  double precipMM = 0;
  WeatherConditionCode condition = WeatherConditionCode::unknown;
  std::string conditionDescription;
  double windSpeedKmph = 0;
  std::string windDirection;  ///< 16-point compass text
  int chanceOfRain = 0;       ///< all chances and the cloud cover in %
  int chanceOfSnow = 0;
  int chanceOfFog = 0;
  int chanceOfThunder = 0;
  int chanceOfSunshine = 0;
  int uvIndex = 0;
  int cloudCover = 0;
  double pressure = 0;  ///< hPa
  double visibilityKm = 0;
  double windGustKmph = 0;
  double dewPointC = 0;
  double dewPointF = 0;
  std::optional<DetailFields> availableDetailFields;
  std::optional<ForecastValues> unknownValues;  ///< without that set all of these values are real

  bool has(WeatherDetailField detail) const {
    return !availableDetailFields || availableDetailFields->contains(detail);
  }
  bool knows(ForecastValue value) const { return !unknownValues || !unknownValues->contains(value); }
  bool operator==(HourlyForecast const&) const = default;
};

template <>
inline constexpr auto jsonFields<HourlyForecast> = FieldList{
    field("date", &HourlyForecast::date),
    field("hour", &HourlyForecast::hour),
    field("tempC", &HourlyForecast::tempC),
    field("tempF", &HourlyForecast::tempF),
    field("feelsLikeC", &HourlyForecast::feelsLikeC),
    field("feelsLikeF", &HourlyForecast::feelsLikeF),
    field("humidity", &HourlyForecast::humidity),
    field("precipMM", &HourlyForecast::precipMM),
    field("condition", &HourlyForecast::condition),
    field("conditionDescription", &HourlyForecast::conditionDescription),
    field("windSpeedKmph", &HourlyForecast::windSpeedKmph),
    field("windDirection", &HourlyForecast::windDirection),
    field("chanceOfRain", &HourlyForecast::chanceOfRain),
    field("chanceOfSnow", &HourlyForecast::chanceOfSnow),
    field("chanceOfFog", &HourlyForecast::chanceOfFog),
    field("chanceOfThunder", &HourlyForecast::chanceOfThunder),
    field("chanceOfSunshine", &HourlyForecast::chanceOfSunshine),
    field("uvIndex", &HourlyForecast::uvIndex),
    field("cloudCover", &HourlyForecast::cloudCover),
    field("pressure", &HourlyForecast::pressure),
    field("visibilityKm", &HourlyForecast::visibilityKm),
    field("windGustKmph", &HourlyForecast::windGustKmph),
    field("dewPointC", &HourlyForecast::dewPointC),
    field("dewPointF", &HourlyForecast::dewPointF),
    field("_nimbaraDetailFields", &HourlyForecast::availableDetailFields),
    field("_nimbaraUnknownValues", &HourlyForecast::unknownValues),
};

struct DailyForecast {
  /// Clock texts as in `Astronomy`.
  struct ProcessedAstronomy {
    std::string sunrise;
    std::string sunset;
    std::string moonrise;
    std::string moonset;
    std::string moonPhase;
    int moonIllumination = 0;  ///< %

    bool operator==(ProcessedAstronomy const&) const = default;
  };

  TransientId id;
  Instant date;  ///< start of the local day
  double maxTempC = 0;
  double maxTempF = 0;
  double minTempC = 0;
  double minTempF = 0;
  double avgTempC = 0;
  double avgTempF = 0;
  double totalSnowCm = 0;
  double sunHours = 0;
  int uvIndex = 0;
  std::optional<int> dailyPrecipitationChance;  ///< %
  std::vector<HourlyForecast> hourly;
  ProcessedAstronomy astronomy;
  /// What the provider itself says of the whole day; its hours usually say more.
  std::optional<WeatherConditionCode> condition;
  std::optional<double> precipMM;
  std::optional<double> windSpeedKmph;  ///< the strongest
  std::optional<std::string> windDirection;

  bool operator==(DailyForecast const&) const = default;
};

template <>
inline constexpr auto jsonFields<DailyForecast::ProcessedAstronomy> = FieldList{
    field("sunrise", &DailyForecast::ProcessedAstronomy::sunrise),
    field("sunset", &DailyForecast::ProcessedAstronomy::sunset),
    field("moonrise", &DailyForecast::ProcessedAstronomy::moonrise),
    field("moonset", &DailyForecast::ProcessedAstronomy::moonset),
    field("moonPhase", &DailyForecast::ProcessedAstronomy::moonPhase),
    field("moonIllumination", &DailyForecast::ProcessedAstronomy::moonIllumination),
};

template <>
inline constexpr auto jsonFields<DailyForecast> = FieldList{
    field("date", &DailyForecast::date),
    field("maxTempC", &DailyForecast::maxTempC),
    field("maxTempF", &DailyForecast::maxTempF),
    field("minTempC", &DailyForecast::minTempC),
    field("minTempF", &DailyForecast::minTempF),
    field("avgTempC", &DailyForecast::avgTempC),
    field("avgTempF", &DailyForecast::avgTempF),
    field("totalSnowCm", &DailyForecast::totalSnowCm),
    field("sunHours", &DailyForecast::sunHours),
    field("uvIndex", &DailyForecast::uvIndex),
    field("dailyPrecipitationChance", &DailyForecast::dailyPrecipitationChance),
    field("hourly", &DailyForecast::hourly),
    field("astronomy", &DailyForecast::astronomy),
    field("_nimbaraCondition", &DailyForecast::condition),
    field("_nimbaraPrecipMM", &DailyForecast::precipMM),
    field("_nimbaraWindSpeedKmph", &DailyForecast::windSpeedKmph),
    field("_nimbaraWindDirection", &DailyForecast::windDirection),
};

struct WeatherData {
  /// Conditions now. Without a reading every number is 0, the condition `unknown` and `observationTime`
  /// empty.
  struct ProcessedCurrent {
    double tempC = 0;
    double tempF = 0;
    double feelsLikeC = 0;
    double feelsLikeF = 0;
    int humidity = 0;    ///< %
    int cloudCover = 0;  ///< %
    double precipMM = 0;
    double pressure = 0;  ///< hPa
    int uvIndex = 0;
    double visibility = 0;  ///< km
    double windSpeedKmph = 0;
    double windSpeedMph = 0;
    std::string windDirection;  ///< 16-point compass text
    int windDirDegree = 0;
    WeatherConditionCode condition = WeatherConditionCode::unknown;
    std::string conditionDescription;
    std::string observationTime;
    std::optional<bool> isDay;
    std::optional<DetailFields> availableDetailFields;  ///< as in `HourlyForecast`
    std::optional<ForecastValues> unknownValues;        ///< as in `HourlyForecast`

    bool isReading() const { return condition != WeatherConditionCode::unknown || !observationTime.empty(); }
    bool has(WeatherDetailField detail) const {
      return !availableDetailFields || availableDetailFields->contains(detail);
    }
    bool knows(ForecastValue value) const { return !unknownValues || !unknownValues->contains(value); }
    bool operator==(ProcessedCurrent const&) const = default;
  };

  TransientId id;
  LocationInfo location;
  ProcessedCurrent current;
  std::vector<DailyForecast> daily;
  std::vector<HourlyForecast> allHourly;  ///< every hour of every day, in time order
  Instant fetchedAt;

  bool operator==(WeatherData const&) const = default;
};

template <>
inline constexpr auto jsonFields<WeatherData::ProcessedCurrent> = FieldList{
    field("tempC", &WeatherData::ProcessedCurrent::tempC),
    field("tempF", &WeatherData::ProcessedCurrent::tempF),
    field("feelsLikeC", &WeatherData::ProcessedCurrent::feelsLikeC),
    field("feelsLikeF", &WeatherData::ProcessedCurrent::feelsLikeF),
    field("humidity", &WeatherData::ProcessedCurrent::humidity),
    field("cloudCover", &WeatherData::ProcessedCurrent::cloudCover),
    field("precipMM", &WeatherData::ProcessedCurrent::precipMM),
    field("pressure", &WeatherData::ProcessedCurrent::pressure),
    field("uvIndex", &WeatherData::ProcessedCurrent::uvIndex),
    field("visibility", &WeatherData::ProcessedCurrent::visibility),
    field("windSpeedKmph", &WeatherData::ProcessedCurrent::windSpeedKmph),
    field("windSpeedMph", &WeatherData::ProcessedCurrent::windSpeedMph),
    field("windDirection", &WeatherData::ProcessedCurrent::windDirection),
    field("windDirDegree", &WeatherData::ProcessedCurrent::windDirDegree),
    field("condition", &WeatherData::ProcessedCurrent::condition),
    field("conditionDescription", &WeatherData::ProcessedCurrent::conditionDescription),
    field("observationTime", &WeatherData::ProcessedCurrent::observationTime),
    field("isDay", &WeatherData::ProcessedCurrent::isDay),
    field("_nimbaraDetailFields", &WeatherData::ProcessedCurrent::availableDetailFields),
    field("_nimbaraUnknownValues", &WeatherData::ProcessedCurrent::unknownValues),
};

template <>
inline constexpr auto jsonFields<WeatherData> = FieldList{
    field("location", &WeatherData::location),   field("current", &WeatherData::current),
    field("daily", &WeatherData::daily),         field("allHourly", &WeatherData::allHourly),
    field("fetchedAt", &WeatherData::fetchedAt),
};

}  // namespace nimbara
