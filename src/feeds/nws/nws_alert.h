// The alerts of the United States National Weather Service as its public interface gives them, and the parser
// from bytes to them. Pure; any bytes may be given. Decides nothing about what is shown.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"
#include "feeds/cap/warning_shape.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Ascending: a comparison of two severities is a comparison of enumerators.
enum class NWSAlertSeverity { unknown, minor, moderate, severe, extreme };

template <>
inline constexpr auto enumNames<NWSAlertSeverity> =
    std::to_array<std::string_view>({"unknown", "minor", "moderate", "severe", "extreme"});
static_assert(enumNamesComplete(NWSAlertSeverity::extreme));

/// The service's own words, exactly ("Severe"); `unknown` for all others.
NWSAlertSeverity nwsSeverity(std::string_view text);

/// An older message that an update or a cancellation follows.
struct NWSReference {
  std::string identifier;
  std::optional<Instant> sent;
  std::string sender = {};  ///< no part of the record for scripts

  bool operator==(NWSReference const&) const = default;
};

template <>
inline constexpr auto jsonFields<NWSReference> =
    FieldList{field("identifier", &NWSReference::identifier), field("sent", &NWSReference::sent)};

struct NWSAlert {
  std::string id;  ///< of the message; every update has its own
  std::string event;
  std::string headline;
  std::string description;
  std::string instruction;
  NWSAlertSeverity severity = NWSAlertSeverity::unknown;
  std::string senderName;
  std::string areaDesc;
  std::optional<Instant> onset;
  std::optional<Instant> expires;  ///< of the message, not of the event
  std::optional<Instant> ends;     ///< of the event
  std::optional<Instant> sent;
  std::string status;       ///< "Actual", "Test" …; empty when the service did not say
  std::string messageType;  ///< "Alert", "Update", "Cancel"; empty when the service did not say
  std::vector<NWSReference> references;
  /// Office, phenomenon, significance and number of the event ("KLOT.WS.A.0001"), the same in all of its
  /// messages; empty for products that have none.
  std::string vtec;
  std::vector<std::string> zones;  ///< codes of zones and counties: "ILZ014", "LMZ741"
  /// Outlines of warnings that hold elsewhere than in whole zones; no part of the record for scripts.
  std::vector<WarningPolygon> polygons = {};
  std::string sender = {};  ///< address of the service; no part of that record either

  bool operator==(NWSAlert const&) const = default;
};

template <>
inline constexpr auto jsonFields<NWSAlert> = FieldList{
    field("id", &NWSAlert::id),
    field("event", &NWSAlert::event),
    field("headline", &NWSAlert::headline),
    field("description", &NWSAlert::description),
    field("instruction", &NWSAlert::instruction),
    field("severity", &NWSAlert::severity),
    field("senderName", &NWSAlert::senderName),
    field("areaDesc", &NWSAlert::areaDesc),
    field("onset", &NWSAlert::onset),
    field("expires", &NWSAlert::expires),
    field("ends", &NWSAlert::ends),
    field("sent", &NWSAlert::sent),
    fieldOr("status", &NWSAlert::status),
    fieldOr("messageType", &NWSAlert::messageType),
    fieldOr("references", &NWSAlert::references),
    fieldOr("vtec", &NWSAlert::vtec),
    fieldOr("zones", &NWSAlert::zones),
};

struct NWSAlertList {
  std::vector<NWSAlert> alerts;  ///< in the answer's order
  std::size_t unreadable = 0;    ///< further features that are no alerts
};

/// The error is that of a document that is not a list of features at all.
Result<NWSAlertList, DecodeError> parseNwsAlerts(std::string_view body);

}  // namespace nimbara
