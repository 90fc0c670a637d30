// One table of what the user's own rules can measure: unit, sound, and where the value stands in a forecast's
// hour. Texts and evaluation read it; nothing else knows the kinds apart.
#pragma once

#include "feeds/stations/station_reading.h"
#include "model/weather_data.h"
#include "notifications/custom_notification.h"

#include <optional>
#include <span>
#include <string_view>

namespace nimbara {

enum class ConditionUnit { percent, celsius, kmh, mm, km, hPa, index, microgram, magnitude, minutes };

struct ConditionKind {
  using Type = ConditionType;

  Type type;
  ConditionUnit unit;
  std::string_view sound;
  /// The value of an hour; null of kinds that no forecast holds. Of events it is their chance in %, 100 when
  /// the hour's condition is the event.
  double (*ofHour)(HourlyForecast const&) = nullptr;
  std::optional<WeatherDetailField> detail;     ///< that a provider must have given
  std::optional<ForecastValue> value;           ///< as well
  std::optional<StationQuantity> station = {};  // NOLINT(readability-redundant-member-init): what it measures

  /// It occurs or does not: compared by `any` alone.
  bool isEvent() const { return type == Type::snow || type == Type::fog || type == Type::thunder; }
  /// It comes within its limit.
  bool isWithin() const { return type == Type::rainWithin; }
  /// Of the user's weather station, now.
  bool isOfStation() const { return station.has_value(); }
  /// `any` says something: also of rain, and of earthquakes of whatever size.
  bool canBeAny() const { return isEvent() || type == Type::earthquake || type == Type::precipitation; }
};

std::span<ConditionKind const> conditionKinds();
ConditionKind const& kindOf(ConditionType type);

}  // namespace nimbara
