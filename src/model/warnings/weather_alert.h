// The one alert record of the program: alerts made from the forecast, official warnings and travel
// advisories.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"
#include "base/uuid.h"
#include "model/warnings/warning_kind.h"
#include "model/warnings/warning_message.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// Ascending: a comparison of two severities is a comparison of enumerators.
enum class AlertSeverity { info, advisory, warning, critical };

template <>
inline constexpr auto enumNames<AlertSeverity> =
    std::to_array<std::string_view>({"info", "advisory", "warning", "critical"});
static_assert(enumNamesComplete(AlertSeverity::critical));

/// An area of an official warning that does not have the place in it, and what the warning says there. An
/// area with several levels or periods stands there several times, one after the other.
struct NearArea {
  std::string area;
  double distanceKm = 0;
  std::optional<AlertSeverity> severity = std::nullopt;
  std::optional<std::string> colour = std::nullopt;
  std::optional<Instant> onset = std::nullopt;
  std::optional<Instant> expires = std::nullopt;

  bool operator==(NearArea const&) const = default;
};

template <>
inline constexpr auto jsonFields<NearArea> =
    FieldList{field("area", &NearArea::area),         field("distanceKm", &NearArea::distanceKm),
              field("severity", &NearArea::severity), field("colour", &NearArea::colour),
              field("onset", &NearArea::onset),       field("expires", &NearArea::expires)};

struct WeatherAlert {
  using AlertSeverity = nimbara::AlertSeverity;

  Uuid id = Uuid::random();
  AlertSeverity severity = AlertSeverity::info;
  std::string title;
  std::string message;
  WarningKind kind = WarningKind::other;
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
  /// What an official warning is about, the same for all of its messages: "HR|wind|EMMA_ID:HR001". Together
  /// with the period it tells one event from another; absent where the issuer's own chain of messages does.
  std::optional<std::string> event;
  /// Of the awareness level by which the issuer grades an official warning: "yellow", "orange" or "red".
  std::optional<std::string> colour;
  std::optional<std::string> issuer;  ///< the service that issued it, where `source` is who passes it on
  /// What the issuer says, to the letter, and in which language. Where the full text is offered but is not at
  /// hand, the issuer's name of the event stands for it and `isFullText` is false.
  std::optional<std::string> text;
  std::optional<std::string> language;
  std::optional<bool> isFullText;
  /// Areas of the warning near the place; they count for level and period only where there are no others.
  std::optional<std::vector<NearArea>> near;
  /// False where the issuer names no level; `severity` is then what it is taken for.
  std::optional<bool> levelStated;
  /// Of waters only, be it those off the place's shore.
  std::optional<bool> onWater;
  /// Where an official warning holds, as its issuer draws it: corners as "latitude,longitude" pairs parted by
  /// blanks, and circles as "latitude,longitude radius" with kilometres. Absent where nothing is drawn.
  std::optional<std::vector<std::string>> polygons;
  std::optional<std::vector<std::string>> circles;
  /// Those messages of an official warning that hold.
  std::optional<std::vector<WarningMessage>> messages;
  std::optional<int> updates;  ///< of an official warning: messages that changed it since the first

  bool operator==(WeatherAlert const&) const = default;
};

template <>
inline constexpr auto jsonFields<WeatherAlert> = FieldList{
    field("id", &WeatherAlert::id),
    field("severity", &WeatherAlert::severity),
    field("title", &WeatherAlert::title),
    field("message", &WeatherAlert::message),
    field("icon", &WeatherAlert::kind),
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
    field("_nimbaraEvent", &WeatherAlert::event),
    field("_nimbaraColour", &WeatherAlert::colour),
    field("_nimbaraIssuer", &WeatherAlert::issuer),
    field("_nimbaraText", &WeatherAlert::text),
    field("_nimbaraLanguage", &WeatherAlert::language),
    field("_nimbaraFullText", &WeatherAlert::isFullText),
    field("_nimbaraNear", &WeatherAlert::near),
    field("_nimbaraLevelStated", &WeatherAlert::levelStated),
    field("_nimbaraOnWater", &WeatherAlert::onWater),
    field("_nimbaraPolygons", &WeatherAlert::polygons),
    field("_nimbaraCircles", &WeatherAlert::circles),
    field("_nimbaraMessages", &WeatherAlert::messages),
    field("_nimbaraUpdates", &WeatherAlert::updates),
};

/// Most severe first, of equal severity those of a stated level before those that are only taken for it, and
/// those of the place itself before those that are only near; otherwise alerts keep their order.
void sortMostSevereFirst(std::vector<WeatherAlert>& alerts);

}  // namespace nimbara
