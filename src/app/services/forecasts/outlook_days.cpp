#include "app/services/forecasts/outlook_days.h"

#include "base/units.h"
#include "providers/common/wmo_code.h"

namespace nimbara {

namespace {

DailyForecast recordOf(OutlookDay const& day, Calendar const& calendar) {
  DailyForecast out;
  out.date = calendar.startOfDay(day.date);
  out.minTempC = day.lowestC;
  out.maxTempC = day.highestC;
  out.minTempF = convert(day.lowestC, TemperatureUnit::fahrenheit);
  out.maxTempF = convert(day.highestC, TemperatureUnit::fahrenheit);
  out.dailyPrecipitationChance = day.chance;
  if (day.weatherCode) out.condition = conditionOfWwoCode(wwoCodeOfWmo(*day.weatherCode));
  if (out.condition == WeatherConditionCode::unknown) out.condition.reset();
  out.precipMM = day.precipMM;
  out.windSpeedKmph = day.windKmph;
  return out;
}

}  // namespace

std::vector<DailyForecast> outlookDays(std::vector<OutlookDay> const& days, WeatherData const& forecast,
                                       Calendar const& calendar) {
  std::vector<DailyForecast> beyond;
  if (forecast.daily.empty()) return beyond;
  Date const last = calendar.day(forecast.daily.back().date);
  for (OutlookDay const& day : days) {
    if (day.date > last) beyond.push_back(recordOf(day, calendar));
  }
  return beyond;
}

}  // namespace nimbara
