#include "providers/common/interchange.h"

#include "base/sun_moon.h"
#include "base/text/number.h"
#include "base/units.h"
#include "model/weather_condition.h"
#include "providers/common/compass.h"
#include "providers/common/wmo_code.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kMilesPerKm = 0.621371;
constexpr double kInchesPerMm = 0.03937;
constexpr double kInchesOfMercuryPerHpa = 0.02953;
constexpr int kFirstThunderCode = 95;
constexpr double kFogBelow = 1000;  // m

std::string rounded(Reading reading) {
  return reading ? roundedText(*reading) : std::string();
}

std::string rounded(Reading reading, double factor) {
  return reading ? roundedText(*reading * factor) : std::string();
}

std::string roundedFahrenheit(Reading celsius) {
  return celsius ? roundedText(fahrenheitFromCelsius(*celsius)) : std::string();
}

/// Most hours are dry, and a printed zero needs no arithmetic.
std::string decimals(Reading reading, double factor, int count) {
  if (!reading) return {};
  if (*reading == 0) return count == 1 ? "0.0" : "0.00";
  return fixedDecimal(*reading * factor, count);
}

Reading visibilityKm(Reading metres) {
  if (!metres) return std::nullopt;
  return std::max(0.0, roundHalfAway(*metres / 1000));
}

DetailFields detailsOf(HourlyEntry const& entry) {
  struct Row {
    WeatherDetailField field;
    Reading HourlyEntry::* reading;
  };
  constexpr Row kRows[] = {{WeatherDetailField::humidity, &HourlyEntry::relativeHumidity2m},
                           {WeatherDetailField::visibility, &HourlyEntry::visibility},
                           {WeatherDetailField::pressure, &HourlyEntry::pressureMsl},
                           {WeatherDetailField::uvIndex, &HourlyEntry::uvIndex},
                           {WeatherDetailField::cloudCover, &HourlyEntry::cloudCover},
                           {WeatherDetailField::dewPoint, &HourlyEntry::dewPoint2m}};
  DetailFields details;
  for (Row const& row : kRows) {
    if (entry.*row.reading) details.insert(row.field);
  }
  return details;
}

template <class Entry>
WwoCondition conditionOf(Entry const& entry) {
  if (entry.condition) return *entry.condition;
  if (!entry.weatherCode) return {"", "Unknown"};
  return {wwoCodeOfWmo(*entry.weatherCode), descriptionOfWmo(*entry.weatherCode)};
}

bool isThundery(HourlyEntry const& entry) {
  if (!entry.condition) return entry.weatherCode.value_or(0) >= kFirstThunderCode;
  return category(conditionOfWwoCode(entry.condition->code)) == ConditionCategory::thunderstorm;
}

/// Thick fog by its visibility; services that give none say it by their condition.
bool isFoggy(HourlyEntry const& entry) {
  if (entry.visibility) return *entry.visibility < kFogBelow;
  return entry.condition && conditionOfWwoCode(entry.condition->code) == WeatherConditionCode::fog;
}

/// What the hourly and the current record write alike; their members are named alike for that reason.
template <class Condition>
void writeShared(HourlyEntry const& entry, Condition& out) {
  Reading const feelsLike = entry.apparentTemperature ? entry.apparentTemperature : entry.temperature2m;
  Reading const visibility = visibilityKm(entry.visibility);
  out.tempC = rounded(entry.temperature2m);
  out.tempF = roundedFahrenheit(entry.temperature2m);
  out.feelsLikeC = rounded(feelsLike);
  out.feelsLikeF = roundedFahrenheit(feelsLike);
  out.cloudcover = rounded(entry.cloudCover);
  out.humidity = rounded(entry.relativeHumidity2m);
  out.precipMM = decimals(entry.precipitation, 1, 1);
  out.precipInches = decimals(entry.precipitation, kInchesPerMm, 2);
  out.pressure = rounded(entry.pressureMsl);
  out.pressureInches = decimals(entry.pressureMsl, kInchesOfMercuryPerHpa, 2);
  out.uvIndex = rounded(entry.uvIndex);
  out.visibility = rounded(visibility);
  out.visibilityMiles = rounded(visibility, kMilesPerKm);
  out.windspeedKmph = rounded(entry.windSpeed10m);
  out.windspeedMiles = rounded(entry.windSpeed10m, kMilesPerKm);
  out.winddirDegree = rounded(entry.windDirection10m);
  if (entry.windDirection10m) out.winddir16Point = compassPoint(*entry.windDirection10m);
  WwoCondition const condition = conditionOf(entry);
  out.weatherCode = condition.code;
  out.weatherDesc.emplace_back(std::string(condition.description));
  out.weatherIconUrl.emplace_back();
  out.availableDetailFields = detailsOf(entry);
}

/// Coarse chances for what services give no probability of.
void writeChances(HourlyEntry const& entry, HourlyCondition& out) {
  double const rain = entry.precipitationProbability.value_or(0);
  double const wind = entry.windSpeed10m.value_or(0);
  double const temperature = *entry.temperature2m;
  bool const snows = entry.snowfall.value_or(0) > 0;
  if (!entry.precipitationProbability) out.unknownValues = {ForecastValue::precipitationChance};
  out.chanceofrain = roundedText(rain);
  out.chanceofremdry = roundedText(std::max(0.0, 100 - rain));
  out.chanceofsnow = snows ? roundedText(std::min(100.0, rain + 20)) : "0";
  out.chanceofthunder = entry.thunderProbability ? rounded(entry.thunderProbability)
                        : isThundery(entry)      ? "60"
                                                 : "0";
  out.chanceoffog = entry.fogProbability ? rounded(entry.fogProbability) : isFoggy(entry) ? "50" : "0";
  out.chanceofhightemp = temperature > 35 ? "80" : "0";
  out.chanceoffrost = temperature < 0 ? "80" : "0";
  out.chanceofwindy = wind > 40 ? "70" : wind > 25 ? "40" : "10";
  if (entry.cloudCover)
    out.chanceofsunshine = *entry.cloudCover < 30 ? "80" : *entry.cloudCover < 60 ? "50" : "20";
  out.chanceofovercast = rounded(entry.cloudCover);
}

/// The largest (or smallest) of a reading over the hours.
template <class Better>
Reading bestOf(std::span<HourlyEntry const> hours, Reading HourlyEntry::* reading, Better better) {
  Reading best;
  for (HourlyEntry const& hour : hours) {
    if (hour.*reading && (!best || better(*(hour.*reading), *best))) best = hour.*reading;
  }
  return best;
}

Reading sumOf(std::span<HourlyEntry const> hours, Reading HourlyEntry::* reading) {
  Reading sum;
  for (HourlyEntry const& hour : hours) {
    if (hour.*reading) sum = sum.value_or(0) + *(hour.*reading);
  }
  return sum;
}

/// Hours of sunshine, estimated: each hour of daylight counts by the part of the sky that is free of clouds.
Reading sunshineHours(std::span<HourlyEntry const> hours) {
  Reading sum;
  for (HourlyEntry const& hour : hours) {
    if (!hour.isDay || !hour.cloudCover) continue;
    sum = sum.value_or(0) + (*hour.isDay ? 1 - std::clamp(*hour.cloudCover, 0.0, 100.0) / 100 : 0);
  }
  return sum;
}

std::string clockOr(std::optional<Instant> instant, Calendar const& calendar, std::string_view none) {
  return instant ? formatClock12(calendar.local(*instant)) : std::string(none);
}

Astronomy writeAstronomy(DailyEntry const& entry, Calendar const& calendar, Coordinate place) {
  Instant const begin = calendar.startOfDay(entry.date);
  Instant const end = calendar.startOfDay(addDays(entry.date, 1));
  RiseSet sun{entry.sunrise, entry.sunset, false};
  if (!sun.rise || !sun.set) sun = sunRiseSet(begin, end, place);
  RiseSet const moon = moonRiseSet(begin, end, place);
  MoonState const noon = moonState(begin + (end - begin) / 2);
  return {.moonIllumination = roundedText(noon.illumination * 100),
          .moonPhase = std::string(enumName(moonPhase(begin, end))),
          .moonrise = clockOr(moon.rise, calendar, "No moonrise"),
          .moonset = clockOr(moon.set, calendar, "No moonset"),
          .sunrise = clockOr(sun.rise, calendar, "No sunrise"),
          .sunset = clockOr(sun.set, calendar, "No sunset")};
}

/// Into the record's own place: an hour is more than a kilobyte of texts, which nobody should move twice.
void writeHourInto(HourlyEntry const& entry, HourlyCondition& out) {
  writeShared(entry, out);
  writeChances(entry, out);
  out.time = std::to_string(entry.hour * 100);
  out.dewPointC = rounded(entry.dewPoint2m);
  out.dewPointF = roundedFahrenheit(entry.dewPoint2m);
  out.heatIndexC = out.windChillC = out.feelsLikeC;
  out.heatIndexF = out.windChillF = out.feelsLikeF;
  out.windGustKmph = rounded(entry.windGusts10m);
  out.windGustMiles = rounded(entry.windGusts10m, kMilesPerKm);
}

/// What the provider itself says of the whole day.
void writeWholeDay(DailyEntry const& entry, WeatherDay& out) {
  if (entry.precipitationProbabilityMax)
    out.dailyPrecipitationChance = rounded(entry.precipitationProbabilityMax);
  if (entry.condition || entry.weatherCode) out.weatherCode = conditionOf(entry).code;
  if (entry.precipitationSum) out.precipMM = decimals(entry.precipitationSum, 1, 1);
  if (entry.windSpeedMax) out.windspeedKmph = rounded(entry.windSpeedMax);
  if (entry.windDirectionDominant) out.winddir16Point = compassPoint(*entry.windDirectionDominant);
}

}  // namespace

HourlyCondition writeHour(HourlyEntry const& entry) {
  HourlyCondition out;
  writeHourInto(entry, out);
  return out;
}

CurrentCondition writeCurrent(HourlyEntry const& entry, LocalTime observed, std::string time) {
  CurrentCondition out;
  writeShared(entry, out);
  out.observationTime = std::move(time);
  out.localObsDateTime =
      formatDate(Date(std::chrono::floor<std::chrono::days>(observed))) + " " + formatClock12(observed);
  out.isDay = entry.isDay;
  return out;
}

std::optional<WeatherDay> writeDay(DailyEntry const& entry, std::span<HourlyEntry const> hours,
                                   Calendar const& calendar, Coordinate place) {
  auto const or_ = [](Reading given, Reading found) { return given ? given : found; };
  Reading const highest =
      or_(entry.temperatureMax, bestOf(hours, &HourlyEntry::temperature2m, std::greater{}));
  Reading const lowest = or_(entry.temperatureMin, bestOf(hours, &HourlyEntry::temperature2m, std::less{}));
  if (!highest || !lowest) return std::nullopt;
  Reading const mean = (*highest + *lowest) / 2;
  WeatherDay out;
  out.date = formatDate(entry.date);
  out.maxtempC = rounded(highest);
  out.maxtempF = roundedFahrenheit(highest);
  out.mintempC = rounded(lowest);
  out.mintempF = roundedFahrenheit(lowest);
  out.avgtempC = rounded(mean);
  out.avgtempF = roundedFahrenheit(mean);
  out.sunHour = decimals(sunshineHours(hours), 1, 1);
  out.totalSnowCm = decimals(or_(entry.snowfallSum, sumOf(hours, &HourlyEntry::snowfall)), 1, 1);
  out.uvIndex = rounded(or_(entry.uvIndexMax, bestOf(hours, &HourlyEntry::uvIndex, std::greater{})));
  writeWholeDay(entry, out);
  out.astronomy = {writeAstronomy(entry, calendar, place)};
  out.hourly.resize(hours.size());
  for (std::size_t i = 0; i < hours.size(); ++i) writeHourInto(hours[i], out.hourly[i]);
  return out;
}

NearestArea writeArea(Coordinate place) {
  NearestArea area;
  area.areaName = {{formatCoordinate(place)}};
  area.country = {{""}};
  area.region = {{""}};
  area.weatherUrl = {{""}};
  area.latitude = plainDecimal(place.latitude);
  area.longitude = plainDecimal(place.longitude);
  area.population = "0";
  return area;
}

WttrRequest writeRequest(Coordinate place) {
  return {plainDecimal(place.latitude) + "," + plainDecimal(place.longitude), "LatLon"};
}

}  // namespace nimbara
