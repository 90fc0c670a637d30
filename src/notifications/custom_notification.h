// A notification rule that the user wrote: what is measured, how it is compared, when and where. Its JSON
// keys are a file format; thresholds are metric whatever the user's units.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/uuid.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

enum class ConditionType {
  precipitation,  ///< mm
  precipChance,   ///< %
  temperature,    ///< this and the next two: °C
  feelsLike,
  dewPoint,
  uvIndex,
  windSpeed,  ///< this and the next: km/h
  windGust,
  humidity,  ///< %
  snow,
  fog,
  thunder,
  cloudCover,          ///< %
  visibility,          ///< km
  pressure,            ///< hPa
  airQuality,          ///< PM2.5, µg/m³
  earthquake,          ///< magnitude
  rainWithin,          ///< minutes, by radar or a 15-minute model
  stationTemperature,  ///< this and the next three: what the user's own station measures now; °C
  stationHumidity,     ///< %
  stationWind,         ///< km/h
  stationRain          ///< mm in the last hour
};
enum class ConditionOperator {
  any,  ///< of events: it occurs at all
  above,
  below
};
enum class DayOfWeek { sunday, monday, tuesday, wednesday, thursday, friday, saturday };

template <>
inline constexpr auto enumNames<ConditionType> = std::to_array<std::string_view>(
    {"precipitation",      "precipChance",    "temperature", "feelsLike",  "dewPoint",   "uvIndex",
     "windSpeed",          "windGust",        "humidity",    "snow",       "fog",        "thunder",
     "cloudCover",         "visibility",      "pressure",    "airQuality", "earthquake", "rainWithin",
     "stationTemperature", "stationHumidity", "stationWind", "stationRain"});
static_assert(enumNamesComplete(ConditionType::stationRain));

template <>
inline constexpr auto enumNames<ConditionOperator> =
    std::to_array<std::string_view>({"any", "above", "below"});
static_assert(enumNamesComplete(ConditionOperator::below));

template <>
inline constexpr auto enumNames<DayOfWeek> = std::to_array<std::string_view>(
    {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"});
static_assert(enumNamesComplete(DayOfWeek::saturday));

struct CustomNotification {
  using ConditionType = nimbara::ConditionType;
  using ConditionOperator = nimbara::ConditionOperator;
  using DayOfWeek = nimbara::DayOfWeek;

  static constexpr int kImmediately = -1;         ///< in `checkHour`
  static constexpr int kFarthestHours = 240;      ///< no provider's forecast goes further
  static constexpr double kLeastRainMinutes = 5;  ///< of rain in the next minutes
  static constexpr double kMostRainMinutes = 120;

  Uuid id;
  std::string title;
  bool isEnabled = true;
  int checkHour = kImmediately;  ///< 0-23 in the place's time, or `kImmediately`
  ConditionType conditionType = ConditionType::temperature;
  ConditionOperator conditionOperator = ConditionOperator::above;
  double threshold = 0;
  int lookaheadHours = 0;          ///< 0: the present conditions
  std::optional<Uuid> locationID;  ///< of a saved place; without it the selected place
  EnumSet<DayOfWeek> scheduledDays;

  /// What its notification is called by the engine.
  std::string identifier() const { return "custom_" + id.text(); }
  bool isImmediate() const { return checkHour == kImmediately; }
  bool operator==(CustomNotification const&) const = default;
};

template <>
inline constexpr auto jsonFields<CustomNotification> = FieldList{
    field("id", &CustomNotification::id),
    field("title", &CustomNotification::title),
    field("isEnabled", &CustomNotification::isEnabled),
    field("checkHour", &CustomNotification::checkHour),
    field("conditionType", &CustomNotification::conditionType),
    field("conditionOperator", &CustomNotification::conditionOperator),
    field("threshold", &CustomNotification::threshold),
    field("lookaheadHours", &CustomNotification::lookaheadHours),
    field("locationID", &CustomNotification::locationID),
    field("scheduledDays", &CustomNotification::scheduledDays),
};

/// Why a rule makes no sense: a sentence without a full stop; nothing when it does.
std::optional<std::string> faultOf(CustomNotification const& rule);

/// The rules of a stored list, and what of it is no rule that this version knows.
struct CustomNotificationList {
  std::vector<CustomNotification> rules;
  std::vector<std::string> unread;    ///< JSON, kept as it stands whenever the list is written again
  std::vector<std::string> warnings;  ///< one sentence for each of them

  bool operator==(CustomNotificationList const&) const = default;
};

/// The error says why the text is no JSON list.
Result<CustomNotificationList, std::string> parseCustomNotifications(std::string_view text);
std::string encodeCustomNotifications(CustomNotificationList const& list);

}  // namespace nimbara
