#include "feeds/stations/station_reading.h"

#include "base/json/json_codec.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

struct QuantityRow {
  StationQuantity quantity;
  std::string_view unit;
  double least, most;  ///< the records of the Earth, with some room
};

constexpr QuantityRow kQuantities[] = {
    {StationQuantity::temperature, "°C", -90, 65},      {StationQuantity::humidity, "%", 0, 100},
    {StationQuantity::pressure, "hPa", 850, 1100},      {StationQuantity::absolutePressure, "hPa", 400, 1100},
    {StationQuantity::windSpeed, "km/h", 0, 420},       {StationQuantity::windDirection, "°", 0, 360},
    {StationQuantity::gustSpeed, "km/h", 0, 420},       {StationQuantity::gustDirection, "°", 0, 360},
    {StationQuantity::rainLastHour, "mm", 0, 310},      {StationQuantity::rainLastDay, "mm", 0, 1850},
    {StationQuantity::carbonDioxide, "ppm", 0, 20'000}, {StationQuantity::noise, "dB", 0, 140},
};

QuantityRow const& rowOf(StationQuantity quantity) {
  return kQuantities[static_cast<std::size_t>(quantity)];
}

static_assert([] {
  std::size_t index = 0;
  for (QuantityRow const& row : kQuantities) {
    if (static_cast<std::size_t>(row.quantity) != index++) return false;
  }
  return index == enumNames<StationQuantity>.size();
}());

}  // namespace

template Result<StationReading, DecodeError> decodeJson<StationReading>(std::string_view document);

std::string_view unitOf(StationQuantity quantity) {
  return rowOf(quantity).unit;
}

bool isPossible(StationQuantity quantity, double value) {
  return std::isfinite(value) && value >= rowOf(quantity).least && value <= rowOf(quantity).most;
}

std::optional<double> StationModule::value(StationQuantity quantity) const {
  auto const found = std::ranges::find(values, quantity, &StationValue::quantity);
  return found == values.end() ? std::nullopt : std::optional(found->value);
}

void StationModule::add(StationQuantity quantity, std::optional<double> value) {
  if (value && isPossible(quantity, *value)) values.push_back({quantity, *value});
}

std::optional<Coordinate> StationReading::place() const {
  if (!latitude || !longitude) return std::nullopt;
  Coordinate const place{*latitude, *longitude};
  return isValid(place) ? std::optional(place) : std::nullopt;
}

std::optional<Instant> StationReading::lastUpload() const {
  std::optional<Instant> last;
  for (StationModule const& module : modules) last = std::max(last, module.observedAt);
  return last;
}

StationModule const* moduleOf(StationReading const& station, StationModuleKind kind) {
  auto const found = std::ranges::find(station.modules, kind, &StationModule::kind);
  return found == station.modules.end() ? nullptr : &*found;
}

}  // namespace nimbara
