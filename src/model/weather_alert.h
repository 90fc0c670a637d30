// The one alert record of the program: alerts made from the forecast, official warnings and travel
// advisories.
#pragma once

#include "base/instant.h"
#include "base/json.h"
#include "base/uuid.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nimbara {

/// Ascending: a comparison of two severities is a comparison of enumerators.
enum class AlertSeverity { info, advisory, warning, critical };

template <>
inline constexpr auto enumNames<AlertSeverity> =
    std::to_array<std::string_view>({"info", "advisory", "warning", "critical"});
static_assert(enumNamesComplete(AlertSeverity::critical));

struct WeatherAlert {
  using AlertSeverity = nimbara::AlertSeverity;

  Uuid id = Uuid::random();
  AlertSeverity severity = AlertSeverity::info;
  std::string title;
  std::string message;
  std::string icon;  ///< a system symbol's name
  std::optional<std::string> description;
  std::optional<std::string> instruction;
  std::optional<std::string> source;
  std::optional<std::string> areaDesc;
  bool isGovAlert = false;
  bool isTravelAdvisory = false;
  std::optional<Instant> onset;
  std::optional<Instant> expires;
  std::optional<std::string> link;  ///< to the original of an official warning
  /// Of the place from the warned area, where the place is outside and only the margin reaches it in which
  /// warnings are taken for near; absent within.
  std::optional<double> distanceKm;
  std::optional<Instant> issued;  ///< when the newest message of an official warning was sent

  bool operator==(WeatherAlert const&) const = default;
};

template <>
inline constexpr auto jsonFields<WeatherAlert> = std::tuple{
    field("id", &WeatherAlert::id),
    field("severity", &WeatherAlert::severity),
    field("title", &WeatherAlert::title),
    field("message", &WeatherAlert::message),
    field("icon", &WeatherAlert::icon),
    field("description", &WeatherAlert::description),
    field("instruction", &WeatherAlert::instruction),
    field("source", &WeatherAlert::source),
    field("areaDesc", &WeatherAlert::areaDesc),
    field("isGovAlert", &WeatherAlert::isGovAlert),
    field("isTravelAdvisory", &WeatherAlert::isTravelAdvisory),
    field("onset", &WeatherAlert::onset),
    field("expires", &WeatherAlert::expires),
    field("link", &WeatherAlert::link),
    field("_nimbaraDistanceKm", &WeatherAlert::distanceKm),
    field("_nimbaraIssued", &WeatherAlert::issued),
};

/// Most severe first, and of equal severity those of the place itself before those that are only near;
/// otherwise alerts keep their order.
inline void sortMostSevereFirst(std::vector<WeatherAlert>& alerts) {
  std::ranges::stable_sort(alerts, std::ranges::greater{}, [](WeatherAlert const& alert) {
    return std::pair(alert.severity, !alert.distanceKm);
  });
}

}  // namespace nimbara
