#include "states.h"

namespace nimbara::test {

Texts const& english() {
  static Texts const kTexts = Texts::load("en_GB@hours=h23");
  return kTexts;
}

ViewContext contextAt(Instant now) {
  return {english(), Units::metric(), now, Calendar::utc(), {}};
}

WeatherData mildWeek() {
  WeatherData data = mildForecast(at("2026-11-21T00:00:00Z"), 8 * 24);
  data.current.tempF = data.current.feelsLikeF = 59;
  data.current.windDirection = "W";
  data.current.pressure = 1015;
  data.current.observationTime = "2026-11-21T12:15";
  data.fetchedAt = kNow;
  for (DailyForecast& day : data.daily) {
    day.minTempC = 10;
    day.maxTempC = 20;
    day.minTempF = 50;
    day.maxTempF = 68;
  }
  return data;
}

WeatherState stateOf(WeatherData data) {
  WeatherState state;
  state.weatherData = std::move(data);
  state.lastUpdated = kNow;
  state.currentWeatherProvider = WeatherProviderOption::openMeteo;
  return state;
}

SavedPlace savedPlace(std::string name, Coordinate coordinate) {
  return {Uuid::named(kCurrentLocation, name), std::move(name), "NO", "Norway", "Region", coordinate, "UTC"};
}

std::shared_ptr<EngineSnapshot> snapshotOf(WeatherState state, std::string const& name) {
  auto snapshot = std::make_shared<EngineSnapshot>();
  Coordinate coordinate;
  if (state.weatherData) {
    coordinate = {state.weatherData->location.latitude, state.weatherData->location.longitude};
  }
  SavedPlace const saved = savedPlace(name, coordinate);
  snapshot->place = Place{coordinate, saved.name, saved.countryName, saved.region};
  snapshot->places.places = {saved, savedPlace("Elsewhere", {10, 20})};
  snapshot->places.selected = saved.id;
  if (state.weatherData) snapshot->kept[saved.id] = std::make_shared<WeatherData const>(*state.weatherData);
  snapshot->weather = std::make_shared<WeatherState const>(std::move(state));
  return snapshot;
}

WeatherAlert alertOf(AlertSeverity severity, std::string title) {
  WeatherAlert alert;
  alert.severity = severity;
  alert.title = std::move(title);
  alert.message = "Something is to be expected, and something is to be done.";
  return alert;
}

}  // namespace nimbara::test
