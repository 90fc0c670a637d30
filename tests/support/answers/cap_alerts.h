// Messages of the Common Alerting Protocol of a test's making, as values.
#pragma once

#include "feeds/cap/cap_message.h"
#include "support/instants.h"

#include <string>
#include <vector>

namespace nimbara::test {

inline constexpr char kOffice[] = "office@weather.example";

/// "Square" around 10° north, 20° east, of half a degree to each side.
inline CapArea square(std::string name = "Square", double latitude = 10, double longitude = 20) {
  double const half = 0.5;
  WarningPolygon const ring{{latitude - half, longitude - half},
                            {latitude + half, longitude - half},
                            {latitude + half, longitude + half},
                            {latitude - half, longitude + half}};
  return {std::move(name), {ring}, {}, {}};
}

/// A block in English of a strong wind in the square, from the 22nd, noon, to the 23rd.
inline CapInfo windBlock() {
  CapInfo info;
  info.language = "en";
  info.event = "Wind";
  info.description = "Strong wind.";
  info.urgency = "Future";
  info.severity = "Severe";
  info.onset = at("2026-11-22T12:00:00Z");
  info.expires = at("2026-11-23T00:00:00Z");
  info.senderName = "Weather Service";
  info.areas = {square()};
  return info;
}

/// Sent on the 22nd at that time; `references` are identifiers of the same office.
inline CapAlert capAlert(std::string identifier, std::string const& time, std::string type = "Alert",
                         std::vector<std::string> const& references = {},
                         std::vector<CapInfo> infos = {windBlock()}) {
  CapAlert alert{
      std::move(identifier), kOffice, at("2026-11-22T" + time + ":00Z"), "Actual", std::move(type), {}, {}};
  for (std::string const& older : references) alert.references.push_back({kOffice, older, {}});
  alert.infos = std::move(infos);
  return alert;
}

inline CapMessage listed(CapAlert alert, std::string country = "XX") {
  return {std::make_shared<CapAlert const>(std::move(alert)), {}, std::move(country), false, {}};
}

inline std::vector<CapMessage> listOf(std::vector<CapAlert> alerts) {
  std::vector<CapMessage> messages;
  messages.reserve(alerts.size());
  for (CapAlert& alert : alerts) messages.push_back(listed(std::move(alert)));
  return messages;
}

}  // namespace nimbara::test
