#include "station_states.h"

#include "feeds/stations/station_shown.h"

namespace nimbara::test {

namespace {

using Kind = StationModuleKind;
using enum StationQuantity;

Coordinate placeOf() {
  auto const snapshot = snapshotOf(stateOf(mildWeek()));
  return snapshot->place->coordinate;
}

StationReading stationAt(std::string id, std::string name, Coordinate place, double celsius) {
  StationReading made{
      .id = std::move(id), .name = std::move(name), .latitude = place.latitude, .longitude = place.longitude};
  made.modules.push_back({.id = "o",
                          .name = "Balcony",
                          .kind = Kind::outdoor,
                          .battery = 14,
                          .observedAt = kNow - std::chrono::minutes(4),
                          .values = {{temperature, celsius}, {humidity, 81}}});
  return made;
}

}  // namespace

StationDesk stationDesk() {
  Coordinate const place = placeOf();
  StationDesk desk;
  desk.hasAccount = true;
  desk.reading.state = StationState::current;
  desk.reading.kind = StationLinkKind::account;
  desk.reading.checkedAt = kNow - std::chrono::minutes(3);
  desk.reading.stations = {stationAt("a", "Home", place, 11.4), stationAt("b", "Garden", place, 12)};
  desk.reading.stations.front().modules.push_back(
      {.id = "r", .kind = Kind::rain, .isReachable = false, .battery = 80});
  StationsAround around{.place = "Testville", .at = place, .stations = {}, .problem = {}};
  for (int i = 0; i < 3; ++i) {
    Coordinate const stands{place.latitude + 0.01 * i, place.longitude};
    around.stations.nearest.push_back(stationAt("p" + std::to_string(i), "", stands, 11 + i));
  }
  around.stations.used = 3;
  desk.around = std::make_shared<StationsAround const>(std::move(around));
  return desk;
}

std::shared_ptr<EngineSnapshot> withStation(std::shared_ptr<EngineSnapshot> snapshot) {
  WeatherState state = *snapshot->weather;
  auto shown = std::make_shared<StationShown>(overlaid(*state.weatherData, stationDesk().reading, kNow));
  for (int hour = 30; hour >= 0; --hour) {
    shown->history.push_back({.at = kNow - std::chrono::hours(hour), .temperature = 11.4 - 0.1 * hour});
  }
  state.isShowingLiveNetatmoData = shown->isLive();
  state.station = std::move(shown);
  snapshot->weather = std::make_shared<WeatherState const>(std::move(state));
  return snapshot;
}

}  // namespace nimbara::test
