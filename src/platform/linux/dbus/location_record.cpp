#include "platform/linux/dbus/location_record.h"

#include <cmath>
#include <optional>

namespace nimbara {

namespace {

std::optional<double> number(LocationProperties const& properties, char const* name) {
  auto const found = properties.find(name);
  if (found == properties.end() || !found->second.containsValueOfType<double>()) return std::nullopt;
  double const value = found->second.get<double>();
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

Instant timeOf(LocationProperties const& properties) {
  using Timestamp = sdbus::Struct<std::uint64_t, std::uint64_t>;  // seconds and microseconds
  auto const now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  auto const found = properties.find("Timestamp");
  if (found == properties.end() || !found->second.containsValueOfType<Timestamp>()) return now;
  auto const [seconds, micros] =
      static_cast<std::tuple<std::uint64_t, std::uint64_t> const&>(found->second.get<Timestamp>());
  constexpr std::uint64_t kLastSecond = 253'402'300'799;  // of the year 9999
  if (seconds == 0 || seconds > kLastSecond) return now;
  return Instant(std::chrono::seconds(seconds)) + std::chrono::milliseconds(micros / 1000 % 1000);
}

}  // namespace

LocationError locationError(LocationError::Kind kind, std::string_view reason) {
  return {kind, "the location is unknown: " + std::string(reason)};
}

Result<LocationFix, LocationError> locationFix(LocationProperties const& properties) {
  auto const latitude = number(properties, "Latitude");
  auto const longitude = number(properties, "Longitude");
  if (!latitude || !longitude || std::abs(*latitude) > 90 || std::abs(*longitude) > 180) {
    return std::unexpected(
        locationError(LocationError::Kind::unavailable, "the location service returned no position"));
  }
  return LocationFix{{*latitude, *longitude}, number(properties, "Accuracy").value_or(0), timeOf(properties)};
}

}  // namespace nimbara
