#include "feeds/stations/station_overlay.h"

#include "base/apparent_temperature.h"
#include "base/sun_moon.h"
#include "base/text/number.h"
#include "base/time/calendar.h"
#include "base/units.h"
#include "model/present.h"
#include "model/process.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

using enum StationQuantity;
using Kind = StationModuleKind;

constexpr double kFarOffC = 12;
constexpr double kFarOffHPa = 15;
/// In the sun: so much warmer than the forecast, while the sun is up and clouds leave it free.
constexpr double kSunnyExcessC = 6;
constexpr double kSunAltitude = 10;
constexpr int kSunlessClouds = 70;
/// Indoors: as warm as the base station, and not as the forecast.
constexpr double kIndoorLikenessC = 2;
constexpr double kIndoorExcessC = 6;
constexpr double kFrostC = 1;
constexpr std::chrono::minutes kClockError{5};

/// Which kinds of module measure a quantity outdoors; a base station and indoor modules only the pressure.
struct OutdoorRow {
  StationQuantity quantity;
  std::array<Kind, 2> kinds;
};

constexpr OutdoorRow kOutdoors[] = {
    {temperature, {Kind::outdoor, Kind::outdoor}}, {humidity, {Kind::outdoor, Kind::outdoor}},
    {pressure, {Kind::base, Kind::outdoor}},       {windSpeed, {Kind::wind, Kind::outdoor}},
    {windDirection, {Kind::wind, Kind::outdoor}},  {rainLastHour, {Kind::rain, Kind::outdoor}}};

struct KeyRow {
  StationQuantity quantity;
  std::array<std::string_view, 2> keys;
};

constexpr KeyRow kKeys[] = {{temperature, {"tempC", "tempF"}},
                            {humidity, {"humidity", ""}},
                            {pressure, {"pressure", ""}},
                            {windSpeed, {"windSpeedKmph", "windSpeedMph"}},
                            {windDirection, {"windDirection", "windDirDegree"}},
                            {rainLastHour, {"precipMM", ""}}};

std::string compassOf(double degrees) {
  constexpr std::array<std::string_view, 16> kPoints{"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                                     "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};
  constexpr double kWidth = 22.5;
  return std::string(kPoints[static_cast<std::size_t>(std::lround(degrees / kWidth)) % kPoints.size()]);
}

/// The conditions of the present as a reading, whatever the record had them from.
WeatherData::ProcessedCurrent currentOf(WeatherData const& data, Present const& present, Instant now) {
  if (hasYoungReading(data, now)) return data.current;
  WeatherData::ProcessedCurrent current;
  DetailFields known;
  ForecastValues unknown;
  auto const detail = [&known](auto const& value, WeatherDetailField field, auto& member) {
    if (!value) return;
    member = *value;
    known.insert(field);
  };
  current.tempC = present.tempC;
  current.tempF = present.tempF;
  current.feelsLikeC = present.feelsLikeC;
  current.feelsLikeF = present.feelsLikeF;
  current.windSpeedKmph = present.windSpeedKmph;
  current.windSpeedMph = convert(present.windSpeedKmph, WindUnit::mph);
  current.windDirection = present.windDirection;
  current.condition = present.condition;
  current.conditionDescription = present.description;
  current.isDay = present.isDay;
  detail(present.humidity, WeatherDetailField::humidity, current.humidity);
  detail(present.cloudCover, WeatherDetailField::cloudCover, current.cloudCover);
  detail(present.pressure, WeatherDetailField::pressure, current.pressure);
  detail(present.visibility, WeatherDetailField::visibility, current.visibility);
  detail(present.uvIndex, WeatherDetailField::uvIndex, current.uvIndex);
  current.precipMM = present.precipMM.value_or(0);
  if (!present.precipMM) unknown.insert(ForecastValue::precipitation);
  if (!present.knowsWind) unknown.insert(ForecastValue::windSpeed);
  current.availableDetailFields = known;
  current.unknownValues = unknown;
  return current;
}

/// The judgement of one station on one forecast's present.
class Overlaying {
 public:
  Overlaying(WeatherData const& data, StationReading const& station, Instant now, Present present)
      : station_(station), now_(now), present_(std::move(present)) {
    overlay_.data = data;
    overlay_.data.current = currentOf(data, present_, now);
  }

  StationOverlay run() {
    for (StationModule const& module : station_.modules) noteSilence(module);
    for (OutdoorRow const& row : kOutdoors) {
      for (Kind const kind : row.kinds) {
        if (take(row.quantity, kind)) break;
      }
    }
    finish();
    return std::move(overlay_);
  }

 private:
  WeatherData::ProcessedCurrent& current() { return overlay_.data.current; }

  /// A module out of doors without a value, which is not the same as a measurement of nothing.
  void noteSilence(StationModule const& module) {
    bool const isSilent = !module.isReachable || module.values.empty();
    if (!isSilent || module.kind == Kind::base || module.kind == Kind::indoor) return;
    doubt(StationDoubt::unreachable,
          module.kind == Kind::wind   ? windSpeed
          : module.kind == Kind::rain ? rainLastHour
                                      : temperature,
          module, {}, {});
  }

  /// True where the kind of module measures the quantity, believed or not.
  bool take(StationQuantity quantity, Kind kind) {
    for (StationModule const& module : station_.modules) {
      auto const value = module.kind == kind ? module.value(quantity) : std::nullopt;
      if (!value || !module.observedAt || !module.isReachable) continue;
      if (auto const why = doubtOf(quantity, *value, module)) {
        doubt(*why, quantity, module, value, expectedOf(quantity));
      } else if (!isSpoilt(quantity, module)) {
        apply(quantity, *value);
        overlay_.values.push_back({quantity, *value, module.name, *module.observedAt});
      }
      return true;
    }
    return false;
  }

  std::optional<StationDoubt> doubtOf(StationQuantity quantity, double value,
                                      StationModule const& module) const {
    if (*module.observedAt > now_ + kClockError) return StationDoubt::future;
    if (now_ - *module.observedAt > kStationLife) return StationDoubt::old;
    if (quantity == temperature) return doubtOfTemperature(value);
    if (quantity == rainLastHour && coldest() <= kFrostC) return StationDoubt::frozen;
    auto const expected = expectedOf(quantity);
    bool const isFar = quantity == pressure && expected && std::abs(value - *expected) > kFarOffHPa;
    return isFar ? std::optional(StationDoubt::farOff) : std::nullopt;
  }

  std::optional<StationDoubt> doubtOfTemperature(double value) const {
    double const excess = value - present_.tempC;
    StationModule const* const base = moduleOf(station_, Kind::base);
    auto const inside = base != nullptr ? base->value(temperature) : std::nullopt;
    if (inside && std::abs(value - *inside) <= kIndoorLikenessC && std::abs(excess) > kIndoorExcessC) {
      return StationDoubt::indoors;
    }
    Coordinate const place{overlay_.data.location.latitude, overlay_.data.location.longitude};
    bool const isSunny =
        present_.cloudCover.value_or(0) < kSunlessClouds && sunPosition(now_, place).altitude > kSunAltitude;
    if (isSunny && excess > kSunnyExcessC) return StationDoubt::inSun;
    return std::abs(excess) > kFarOffC ? std::optional(StationDoubt::farOff) : std::nullopt;
  }

  /// Of the station's believed temperature, else the forecast's.
  double coldest() const {
    OverlaidValue const* const taken = overlay_.find(temperature);
    return taken != nullptr ? taken->value : present_.tempC;
  }

  /// The humidity of a sensor whose temperature is not believed belongs to that temperature.
  bool isSpoilt(StationQuantity quantity, StationModule const& module) const {
    return quantity == humidity && std::ranges::any_of(overlay_.doubts, [&](DoubtedValue const& doubted) {
             return doubted.quantity == temperature && doubted.module == module.name;
           });
  }

  std::optional<double> expectedOf(StationQuantity quantity) const {
    if (quantity == temperature) return present_.tempC;
    if (quantity == pressure) return present_.pressure;
    if (quantity == rainLastHour) return present_.precipMM;
    return std::nullopt;
  }

  void doubt(StationDoubt why, StationQuantity quantity, StationModule const& module,
             std::optional<double> value, std::optional<double> expected) {
    overlay_.doubts.push_back({why, quantity, value, expected, module.name, module.observedAt});
  }

  void know(WeatherDetailField field) {
    if (current().availableDetailFields) current().availableDetailFields->insert(field);
  }
  void know(ForecastValue value) {
    if (current().unknownValues) current().unknownValues->erase(value);
  }

  void apply(StationQuantity quantity, double value) {
    switch (quantity) {
      case temperature:
        current().tempC = value;
        current().tempF = fahrenheitFromCelsius(value);
        break;
      case humidity:
        current().humidity = static_cast<int>(roundHalfAway(value));
        know(WeatherDetailField::humidity);
        break;
      case pressure:
        current().pressure = value;
        know(WeatherDetailField::pressure);
        break;
      case windSpeed:
        current().windSpeedKmph = value;
        current().windSpeedMph = convert(value, WindUnit::mph);
        know(ForecastValue::windSpeed);
        break;
      case windDirection:
        current().windDirDegree = static_cast<int>(roundHalfAway(value));
        current().windDirection = compassOf(value);
        break;
      case rainLastHour:
        current().precipMM = value;
        know(ForecastValue::precipitation);
        break;
      default:
        break;
    }
  }

  /// The reading is the station's now: as old as the oldest of its values, with what they feel like.
  void finish() {
    if (!overlay_.isLive()) return;
    auto const oldest = std::ranges::min_element(overlay_.values, {}, &OverlaidValue::observedAt);
    Calendar const calendar = calendarOf(overlay_.data, Calendar::utc());
    current().observationTime = formatLocalTime(calendar.local(oldest->observedAt));
    bool const isFelt = std::ranges::any_of(overlay_.values, [](OverlaidValue const& value) {
      return value.quantity == temperature || value.quantity == humidity || value.quantity == windSpeed;
    });
    bool const isKnown =
        current().has(WeatherDetailField::humidity) && current().knows(ForecastValue::windSpeed);
    if (!isFelt || !isKnown) return;
    current().feelsLikeC = apparentTemperature(current().tempC, current().humidity, current().windSpeedKmph);
    current().feelsLikeF = fahrenheitFromCelsius(current().feelsLikeC);
  }

  StationReading const& station_;
  Instant now_;
  Present present_;
  StationOverlay overlay_;
};

}  // namespace

OverlaidValue const* StationOverlay::find(StationQuantity quantity) const {
  auto const found = std::ranges::find(values, quantity, &OverlaidValue::quantity);
  return found == values.end() ? nullptr : &*found;
}

StationOverlay stationOverlay(WeatherData const& data, StationReading const& station, Instant now) {
  auto const stands = station.place();
  Coordinate const place{data.location.latitude, data.location.longitude};
  StationOverlay unchanged;
  unchanged.data = data;
  unchanged.isElsewhere = !stands || haversineKm(*stands, place) > kStationReachKm;
  auto const present = presentAt(data, now);
  // What is fetched so long ago is shown as the last of its kind, not as the present.
  bool const isShown = present && std::chrono::abs(now - data.fetchedAt) < kReadingLife;
  if (unchanged.isElsewhere || !isShown) return unchanged;
  return Overlaying(data, station, now, *present).run();
}

namespace {

/// The first module of the kinds that measure it which has a value.
StationModule const* measurerOf(StationReading const& station, StationQuantity quantity) {
  auto const* const row = std::ranges::find(kOutdoors, quantity, &OutdoorRow::quantity);
  if (row == std::ranges::end(kOutdoors)) return nullptr;
  for (Kind const kind : row->kinds) {
    for (StationModule const& module : station.modules) {
      if (module.kind == kind && module.observedAt && module.value(quantity)) return &module;
    }
  }
  return nullptr;
}

}  // namespace

std::optional<OverlaidValue> measuredNow(StationReading const& station, StationQuantity quantity,
                                         Instant now) {
  StationModule const* const module = measurerOf(station, quantity);
  if (module == nullptr || !module->isReachable) return std::nullopt;
  bool const isNow = now - *module->observedAt <= kStationLife && *module->observedAt <= now + kClockError;
  if (!isNow) return std::nullopt;
  return OverlaidValue{quantity, *module->value(quantity), module->name, *module->observedAt};
}

bool measures(StationReading const& station, StationQuantity quantity) {
  if (measurerOf(station, quantity) != nullptr) return true;
  auto const* const row = std::ranges::find(kOutdoors, quantity, &OutdoorRow::quantity);
  bool const isNever = row == std::ranges::end(kOutdoors) || row->kinds.front() == Kind::base;
  return !isNever && std::ranges::any_of(station.modules, [row](StationModule const& module) {
    return module.kind == row->kinds.front() && module.values.empty();
  });
}

std::vector<std::string_view> presentKeys(StationQuantity quantity) {
  std::vector<std::string_view> keys;
  for (KeyRow const& row : kKeys) {
    if (row.quantity != quantity) continue;
    for (std::string_view const key : row.keys) {
      if (!key.empty()) keys.push_back(key);
    }
  }
  return keys;
}

}  // namespace nimbara
