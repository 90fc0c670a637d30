// The interchange record: what every forecast client produces whatever its service sends. Shaped like the
// wttr JSON answer, so all values are texts as a provider wrote them and weather codes are WWO codes. Its
// JSON keys are a file format. `process` turns it into `WeatherData`.
#pragma once

#include "base/json/json.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// The measurements that a provider may lack. What is not in a record's set holds a placeholder and is not
/// shown.
enum class WeatherDetailField { humidity, visibility, pressure, uvIndex, cloudCover, dewPoint };

template <>
inline constexpr auto enumNames<WeatherDetailField> = std::to_array<std::string_view>(
    {"humidity", "visibility", "pressure", "uvIndex", "cloudCover", "dewPoint"});
static_assert(enumNamesComplete(WeatherDetailField::dewPoint));

using DetailFields = EnumSet<WeatherDetailField>;

/// What every record has a place for although a provider may not say it. What is in a record's set of unknown
/// values holds a placeholder: it is neither shown nor taken for "none".
enum class ForecastValue { precipitation, precipitationChance, windSpeed, windGust };

template <>
inline constexpr auto enumNames<ForecastValue> =
    std::to_array<std::string_view>({"precipitation", "precipitationChance", "windSpeed", "windGust"});
static_assert(enumNamesComplete(ForecastValue::windGust));

using ForecastValues = EnumSet<ForecastValue>;

struct WttrValue {
  std::string value;

  bool operator==(WttrValue const&) const = default;
};

template <>
inline constexpr auto jsonFields<WttrValue> = FieldList{field("value", &WttrValue::value)};

using WttrValues = std::vector<WttrValue>;

/// The first text of a list, empty when there is none.
inline std::string const& firstText(WttrValues const& values) {
  static std::string const kNone;
  return values.empty() ? kNone : values.front().value;
}

struct WttrRequest {
  std::string query;
  std::string type;

  bool operator==(WttrRequest const&) const = default;
};

template <>
inline constexpr auto jsonFields<WttrRequest> =
    FieldList{field("query", &WttrRequest::query), field("type", &WttrRequest::type)};

struct NearestArea {
  WttrValues areaName;
  WttrValues country;
  WttrValues region;
  WttrValues weatherUrl;
  std::string latitude;
  std::string longitude;
  std::string population;

  bool operator==(NearestArea const&) const = default;
};

template <>
inline constexpr auto jsonFields<NearestArea> = FieldList{
    field("areaName", &NearestArea::areaName),     field("country", &NearestArea::country),
    field("region", &NearestArea::region),         field("weatherUrl", &NearestArea::weatherUrl),
    field("latitude", &NearestArea::latitude),     field("longitude", &NearestArea::longitude),
    field("population", &NearestArea::population),
};

struct CurrentCondition {
  std::string feelsLikeC;
  std::string feelsLikeF;
  std::string cloudcover;
  std::string humidity;
  std::string localObsDateTime;
  std::string observationTime;
  std::optional<bool> isDay;
  std::string precipInches;
  std::string precipMM;
  std::string pressure;  ///< hPa
  std::string pressureInches;
  std::string tempC;
  std::string tempF;
  std::string uvIndex;
  std::string visibility;  ///< km
  std::string visibilityMiles;
  std::string weatherCode;
  WttrValues weatherDesc;
  WttrValues weatherIconUrl;
  std::string winddir16Point;
  std::string winddirDegree;
  std::string windspeedKmph;
  std::string windspeedMiles;
  DetailFields availableDetailFields = DetailFields::all();

  bool operator==(CurrentCondition const&) const = default;
};

/// The current record writes "temp_C" where the hourly one writes "tempC"; the format has it so.
template <>
inline constexpr auto jsonFields<CurrentCondition> = FieldList{
    field("FeelsLikeC", &CurrentCondition::feelsLikeC),
    field("FeelsLikeF", &CurrentCondition::feelsLikeF),
    field("cloudcover", &CurrentCondition::cloudcover),
    field("humidity", &CurrentCondition::humidity),
    field("localObsDateTime", &CurrentCondition::localObsDateTime),
    field("observation_time", &CurrentCondition::observationTime),
    field("is_day", &CurrentCondition::isDay),
    field("precipInches", &CurrentCondition::precipInches),
    field("precipMM", &CurrentCondition::precipMM),
    field("pressure", &CurrentCondition::pressure),
    field("pressureInches", &CurrentCondition::pressureInches),
    field("temp_C", &CurrentCondition::tempC),
    field("temp_F", &CurrentCondition::tempF),
    field("uvIndex", &CurrentCondition::uvIndex),
    field("visibility", &CurrentCondition::visibility),
    field("visibilityMiles", &CurrentCondition::visibilityMiles),
    field("weatherCode", &CurrentCondition::weatherCode),
    field("weatherDesc", &CurrentCondition::weatherDesc),
    field("weatherIconUrl", &CurrentCondition::weatherIconUrl),
    field("winddir16Point", &CurrentCondition::winddir16Point),
    field("winddirDegree", &CurrentCondition::winddirDegree),
    field("windspeedKmph", &CurrentCondition::windspeedKmph),
    field("windspeedMiles", &CurrentCondition::windspeedMiles),
    fieldOr("_nimbaraDetailFields", &CurrentCondition::availableDetailFields),
};

/// One forecast hour. The "chanceof" texts are percentages.
struct HourlyCondition {
  std::string dewPointC;
  std::string dewPointF;
  std::string feelsLikeC;
  std::string feelsLikeF;
  std::string heatIndexC;
  std::string heatIndexF;
  std::string windChillC;
  std::string windChillF;
  std::string windGustKmph;
  std::string windGustMiles;
  std::string chanceoffog;
  std::string chanceoffrost;
  std::string chanceofhightemp;
  std::string chanceofovercast;
  std::string chanceofrain;
  std::string chanceofremdry;
  std::string chanceofsnow;
  std::string chanceofsunshine;
  std::string chanceofthunder;
  std::string chanceofwindy;
  std::string cloudcover;
  std::string humidity;
  std::string precipInches;
  std::string precipMM;
  std::string pressure;
  std::string pressureInches;
  std::string tempC;
  std::string tempF;
  std::string time;  ///< local clock time as hours times 100: "0", "300", … "2100"
  std::string uvIndex;
  std::string visibility;
  std::string visibilityMiles;
  std::string weatherCode;
  WttrValues weatherDesc;
  WttrValues weatherIconUrl;
  std::string winddir16Point;
  std::string winddirDegree;
  std::string windspeedKmph;
  std::string windspeedMiles;
  DetailFields availableDetailFields = DetailFields::all();
  /// Those whose text looks like a value all the same; an empty text is unknown without this.
  std::optional<ForecastValues> unknownValues;

  bool operator==(HourlyCondition const&) const = default;
};

template <>
inline constexpr auto jsonFields<HourlyCondition> = FieldList{
    field("DewPointC", &HourlyCondition::dewPointC),
    field("DewPointF", &HourlyCondition::dewPointF),
    field("FeelsLikeC", &HourlyCondition::feelsLikeC),
    field("FeelsLikeF", &HourlyCondition::feelsLikeF),
    field("HeatIndexC", &HourlyCondition::heatIndexC),
    field("HeatIndexF", &HourlyCondition::heatIndexF),
    field("WindChillC", &HourlyCondition::windChillC),
    field("WindChillF", &HourlyCondition::windChillF),
    field("WindGustKmph", &HourlyCondition::windGustKmph),
    field("WindGustMiles", &HourlyCondition::windGustMiles),
    field("chanceoffog", &HourlyCondition::chanceoffog),
    field("chanceoffrost", &HourlyCondition::chanceoffrost),
    field("chanceofhightemp", &HourlyCondition::chanceofhightemp),
    field("chanceofovercast", &HourlyCondition::chanceofovercast),
    field("chanceofrain", &HourlyCondition::chanceofrain),
    field("chanceofremdry", &HourlyCondition::chanceofremdry),
    field("chanceofsnow", &HourlyCondition::chanceofsnow),
    field("chanceofsunshine", &HourlyCondition::chanceofsunshine),
    field("chanceofthunder", &HourlyCondition::chanceofthunder),
    field("chanceofwindy", &HourlyCondition::chanceofwindy),
    field("cloudcover", &HourlyCondition::cloudcover),
    field("humidity", &HourlyCondition::humidity),
    field("precipInches", &HourlyCondition::precipInches),
    field("precipMM", &HourlyCondition::precipMM),
    field("pressure", &HourlyCondition::pressure),
    field("pressureInches", &HourlyCondition::pressureInches),
    field("tempC", &HourlyCondition::tempC),
    field("tempF", &HourlyCondition::tempF),
    field("time", &HourlyCondition::time),
    field("uvIndex", &HourlyCondition::uvIndex),
    field("visibility", &HourlyCondition::visibility),
    field("visibilityMiles", &HourlyCondition::visibilityMiles),
    field("weatherCode", &HourlyCondition::weatherCode),
    field("weatherDesc", &HourlyCondition::weatherDesc),
    field("weatherIconUrl", &HourlyCondition::weatherIconUrl),
    field("winddir16Point", &HourlyCondition::winddir16Point),
    field("winddirDegree", &HourlyCondition::winddirDegree),
    field("windspeedKmph", &HourlyCondition::windspeedKmph),
    field("windspeedMiles", &HourlyCondition::windspeedMiles),
    fieldOr("_nimbaraDetailFields", &HourlyCondition::availableDetailFields),
    field("_nimbaraUnknownValues", &HourlyCondition::unknownValues),
};

/// Clock texts in 12-hour form with AM or PM; "No moonrise" and its like where there is none.
struct Astronomy {
  std::string moonIllumination;
  std::string moonPhase;
  std::string moonrise;
  std::string moonset;
  std::string sunrise;
  std::string sunset;

  bool operator==(Astronomy const&) const = default;
};

template <>
inline constexpr auto jsonFields<Astronomy> = FieldList{
    field("moon_illumination", &Astronomy::moonIllumination),
    field("moon_phase", &Astronomy::moonPhase),
    field("moonrise", &Astronomy::moonrise),
    field("moonset", &Astronomy::moonset),
    field("sunrise", &Astronomy::sunrise),
    field("sunset", &Astronomy::sunset),
};

struct WeatherDay {
  std::vector<Astronomy> astronomy;
  std::string avgtempC;
  std::string avgtempF;
  std::string date;  ///< local calendar date, "2026-11-21"
  std::vector<HourlyCondition> hourly;
  std::string maxtempC;
  std::string maxtempF;
  std::string mintempC;
  std::string mintempF;
  std::string sunHour;
  std::string totalSnowCm;
  std::string uvIndex;
  std::optional<std::string> dailyPrecipitationChance;  ///< the provider's own daily probability
  /// The provider's own words on the whole day, where it has them.
  std::optional<std::string> weatherCode;
  std::optional<std::string> precipMM;
  std::optional<std::string> windspeedKmph;  ///< the strongest
  std::optional<std::string> winddir16Point;

  bool operator==(WeatherDay const&) const = default;
};

template <>
inline constexpr auto jsonFields<WeatherDay> = FieldList{
    field("astronomy", &WeatherDay::astronomy),
    field("avgtempC", &WeatherDay::avgtempC),
    field("avgtempF", &WeatherDay::avgtempF),
    field("date", &WeatherDay::date),
    field("hourly", &WeatherDay::hourly),
    field("maxtempC", &WeatherDay::maxtempC),
    field("maxtempF", &WeatherDay::maxtempF),
    field("mintempC", &WeatherDay::mintempC),
    field("mintempF", &WeatherDay::mintempF),
    field("sunHour", &WeatherDay::sunHour),
    field("totalSnow_cm", &WeatherDay::totalSnowCm),
    field("uvIndex", &WeatherDay::uvIndex),
    field("dailyPrecipitationChance", &WeatherDay::dailyPrecipitationChance),
    field("_nimbaraWeatherCode", &WeatherDay::weatherCode),
    field("_nimbaraPrecipMM", &WeatherDay::precipMM),
    field("_nimbaraWindspeedKmph", &WeatherDay::windspeedKmph),
    field("_nimbaraWinddir16Point", &WeatherDay::winddir16Point),
};

struct WttrResponse {
  std::vector<CurrentCondition> currentCondition;
  std::vector<NearestArea> nearestArea;
  std::vector<WttrRequest> request;
  std::vector<WeatherDay> weather;
  /// The place's IANA zone or fixed offset ("GMT+05:30"): days and hours are the place's own.
  std::optional<std::string> timeZone;

  bool operator==(WttrResponse const&) const = default;
};

template <>
inline constexpr auto jsonFields<WttrResponse> = FieldList{
    field("current_condition", &WttrResponse::currentCondition),
    field("nearest_area", &WttrResponse::nearestArea),
    field("request", &WttrResponse::request),
    field("weather", &WttrResponse::weather),
    field("_nimbaraTimeZone", &WttrResponse::timeZone),
};

}  // namespace nimbara
