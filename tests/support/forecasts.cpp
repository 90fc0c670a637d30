#include "support/forecasts.h"

namespace nimbara::test {

HourlyForecast mildHour(Instant date) {
  HourlyForecast hour;
  hour.date = date;
  hour.tempC = hour.feelsLikeC = 15;
  hour.tempF = hour.feelsLikeF = 59;
  hour.humidity = 50;
  hour.condition = WeatherConditionCode::partlyCloudy;
  hour.windSpeedKmph = 10;
  hour.windGustKmph = 15;
  hour.pressure = 1015;
  hour.visibilityKm = 10;
  return hour;
}

WeatherData mildForecast(Instant begin, int count) {
  WeatherData data;
  data.location.areaName = "Testville";
  data.location.timeZone = "UTC";
  data.current.tempC = data.current.feelsLikeC = 15;
  data.current.humidity = 50;
  data.current.visibility = 10;
  data.current.windSpeedKmph = 10;
  data.current.condition = WeatherConditionCode::partlyCloudy;
  data.current.observationTime = "noon";
  for (int i = 0; i < count; ++i) {
    HourlyForecast hour = mildHour(begin + std::chrono::hours(i));
    hour.hour = Calendar::utc().hour(hour.date);
    data.allHourly.push_back(hour);
    Instant const day = std::chrono::floor<std::chrono::days>(hour.date);
    if (data.daily.empty() || data.daily.back().date != day) data.daily.emplace_back().date = day;
    data.daily.back().hourly.push_back(hour);
  }
  data.fetchedAt = begin;
  return data;
}

}  // namespace nimbara::test
