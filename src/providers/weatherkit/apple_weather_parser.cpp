#include "providers/weatherkit/apple_weather_parser.h"

#include "base/json/json_codec.h"

#include <algorithm>

namespace nimbara {

namespace {

struct HourlySet {
  std::optional<std::vector<AppleWeatherHour>> hours;
};

struct DailySet {
  std::optional<std::vector<AppleWeatherDay>> days;
};

struct Document {
  std::optional<AppleWeatherHour> currentWeather;
  std::optional<HourlySet> forecastHourly;
  std::optional<DailySet> forecastDaily;
};

struct ConditionRow {
  std::string_view code;
  WwoCondition condition;
};

constexpr WwoCondition kCloudy{"119", "Cloudy"};

constexpr ConditionRow kConditions[] = {
    {"Clear", {"113", "Clear"}},
    {"MostlyClear", {"116", "Mostly Clear"}},
    {"PartlyCloudy", {"116", "Partly Cloudy"}},
    {"MostlyCloudy", {"119", "Mostly Cloudy"}},
    {"Cloudy", {"122", "Cloudy"}},
    {"Foggy", {"143", "Fog"}},
    {"Fog", {"143", "Fog"}},
    {"Haze", {"143", "Haze"}},
    {"Smoke", {"143", "Smoke"}},
    {"Dust", {"143", "Dust"}},
    {"BlowingDust", {"143", "Blowing Dust"}},
    {"Breezy", {"116", "Breezy"}},
    {"Windy", {"116", "Windy"}},
    {"Frigid", {"113", "Frigid"}},
    {"Hot", {"113", "Hot"}},
    {"Drizzle", {"266", "Drizzle"}},
    {"Rain", {"296", "Rain"}},
    {"HeavyRain", {"308", "Heavy Rain"}},
    {"Showers", {"176", "Showers"}},
    {"ScatteredShowers", {"176", "Scattered Showers"}},
    {"SunShowers", {"176", "Sun Showers"}},
    {"FreezingDrizzle", {"281", "Freezing Drizzle"}},
    {"FreezingRain", {"311", "Freezing Rain"}},
    {"Flurries", {"227", "Flurries"}},
    {"SunFlurries", {"227", "Sun Flurries"}},
    {"Snow", {"227", "Snow"}},
    {"BlowingSnow", {"227", "Blowing Snow"}},
    {"HeavySnow", {"338", "Heavy Snow"}},
    {"Blizzard", {"230", "Blizzard"}},
    {"SnowShowers", {"326", "Snow Showers"}},
    {"ScatteredSnowShowers", {"323", "Scattered Snow Showers"}},
    {"Sleet", {"320", "Sleet"}},
    {"WintryMix", {"320", "Wintry Mix"}},
    {"MixedRainAndSleet", {"317", "Rain and Sleet"}},
    {"MixedRainAndSnow", {"317", "Rain and Snow"}},
    {"MixedRainfall", {"317", "Mixed Rainfall"}},
    {"MixedSnowAndSleet", {"320", "Snow and Sleet"}},
    {"Hail", {"350", "Hail"}},
    {"Thunderstorm", {"200", "Thunderstorm"}},
    {"Thunderstorms", {"200", "Thunderstorms"}},
    {"IsolatedThunderstorms", {"200", "Isolated Thunderstorms"}},
    {"ScatteredThunderstorms", {"200", "Scattered Thunderstorms"}},
    {"SevereThunderstorm", {"389", "Severe Thunderstorm"}},
    {"StrongStorms", {"389", "Strong Storms"}},
    {"Tornado", {"389", "Tornado"}},
    {"TropicalStorm", {"308", "Tropical Storm"}},
    {"Hurricane", {"308", "Hurricane"}},
};

}  // namespace

/// The present and the hours differ in the key of their time and are alike in all else.
template <>
inline constexpr auto jsonFields<AppleWeatherHour> = FieldList{
    field("forecastStart", &AppleWeatherHour::time),
    field("asOf", &AppleWeatherHour::time),
    field("cloudCover", &AppleWeatherHour::cloudCover),
    field("conditionCode", &AppleWeatherHour::conditionCode),
    field("daylight", &AppleWeatherHour::daylight),
    field("humidity", &AppleWeatherHour::humidity),
    field("precipitationAmount", &AppleWeatherHour::precipitationAmount),
    field("precipitationIntensity", &AppleWeatherHour::precipitationIntensity),
    field("precipitationChance", &AppleWeatherHour::precipitationChance),
    field("pressure", &AppleWeatherHour::pressure),
    field("snowfallIntensity", &AppleWeatherHour::snowfallIntensity),
    field("snowfallAmount", &AppleWeatherHour::snowfallAmount),
    field("temperature", &AppleWeatherHour::temperature),
    field("temperatureApparent", &AppleWeatherHour::temperatureApparent),
    field("temperatureDewPoint", &AppleWeatherHour::temperatureDewPoint),
    field("uvIndex", &AppleWeatherHour::uvIndex),
    field("visibility", &AppleWeatherHour::visibility),
    field("windDirection", &AppleWeatherHour::windDirection),
    field("windGust", &AppleWeatherHour::windGust),
    field("windSpeed", &AppleWeatherHour::windSpeed),
};

template <>
inline constexpr auto jsonFields<AppleWeatherDayPart> =
    FieldList{field("windDirection", &AppleWeatherDayPart::windDirection),
              field("windSpeed", &AppleWeatherDayPart::windSpeed)};

template <>
inline constexpr auto jsonFields<AppleWeatherDay> = FieldList{
    field("forecastStart", &AppleWeatherDay::begin),
    field("conditionCode", &AppleWeatherDay::conditionCode),
    field("daytimeForecast", &AppleWeatherDay::daytime),
    field("maxUvIndex", &AppleWeatherDay::maxUvIndex),
    field("overnightForecast", &AppleWeatherDay::overnight),
    field("precipitationAmount", &AppleWeatherDay::precipitationAmount),
    field("precipitationChance", &AppleWeatherDay::precipitationChance),
    field("snowfallAmount", &AppleWeatherDay::snowfallAmount),
    field("sunrise", &AppleWeatherDay::sunrise),
    field("sunset", &AppleWeatherDay::sunset),
    field("temperatureMax", &AppleWeatherDay::temperatureMax),
    field("temperatureMin", &AppleWeatherDay::temperatureMin),
};

template <>
inline constexpr auto jsonFields<HourlySet> = FieldList{field("hours", &HourlySet::hours)};

template <>
inline constexpr auto jsonFields<DailySet> = FieldList{field("days", &DailySet::days)};

template <>
inline constexpr auto jsonFields<Document> = FieldList{
    field("currentWeather", &Document::currentWeather),
    field("forecastDaily", &Document::forecastDaily),
    field("forecastHourly", &Document::forecastHourly),
};

Result<AppleWeatherResponse, DecodeError> parseAppleWeather(std::string_view body) {
  auto document = decodeJson<Document>(body);
  if (!document) return std::unexpected(document.error());
  AppleWeatherResponse response;
  response.current = std::move(document->currentWeather);
  if (document->forecastHourly) response.hours = std::move(document->forecastHourly->hours);
  if (document->forecastDaily) response.days = std::move(document->forecastDaily->days);
  return response;
}

WwoCondition conditionOfAppleCode(std::string_view code) {
  auto const row = std::ranges::find(kConditions, code, &ConditionRow::code);
  return row == std::ranges::end(kConditions) ? kCloudy : row->condition;
}

}  // namespace nimbara
