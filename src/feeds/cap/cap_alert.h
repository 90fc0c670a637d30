// A message of the Common Alerting Protocol 1.2, whoever issued it: what is warned of in one or more
// languages and where. Plain values, nothing judged and nothing chosen; texts are the issuer's own, to the
// letter.
#pragma once

#include "base/time/instant.h"
#include "feeds/cap/warning_shape.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// A value under a name that the issuer or a registry chose: "awareness_type" and "3; thunderstorm".
struct CapValue {
  std::string name;
  std::string value;

  auto operator<=>(CapValue const&) const = default;
};

/// Of polygons, in their order: what is computed once so that most of them need not be looked at again. No
/// part of the value.
struct PolygonBoxes {
  std::vector<ShapeBox> list;

  bool operator==(PolygonBoxes const&) const { return true; }
};

struct CapArea {
  std::string areaDesc;
  std::vector<WarningPolygon> polygons;
  std::vector<WarningCircle> circles;
  std::vector<CapValue> geocodes;  ///< by registry: "EMMA_ID" and "RS010"
  PolygonBoxes boxes = {};         ///< none, or those of all polygons (`noteBoxes`)

  bool operator==(CapArea const&) const = default;
};

/// What a message says in one language of one event.
struct CapInfo {
  std::string language;  ///< "en-GB"; empty when not stated
  std::string event;
  std::string headline;
  std::string description;
  std::string instruction;
  std::string urgency;
  std::string severity;
  std::string certainty;
  std::vector<std::string> responseTypes;
  std::optional<Instant> effective;
  std::optional<Instant> onset;
  std::optional<Instant> expires;
  std::string senderName;
  std::string web;
  std::vector<CapValue> parameters;  ///< several may have one name
  std::vector<CapValue> eventCodes;
  std::vector<CapArea> areas;

  bool operator==(CapInfo const&) const = default;
};

/// Another message that this one has to do with; it may name itself.
struct CapReference {
  std::string sender;
  std::string identifier;
  std::optional<Instant> sent;

  bool operator==(CapReference const&) const = default;
};

struct CapAlert {
  std::string identifier;
  std::string sender;
  std::optional<Instant> sent;
  std::string status;   ///< "Actual", "Test" …
  std::string msgType;  ///< "Alert", "Update", "Cancel" …
  std::vector<CapReference> references;
  std::vector<CapInfo> infos;

  bool operator==(CapAlert const&) const = default;
};

/// The first value under that name; nothing when there is none.
inline std::optional<std::string_view> valueOf(std::vector<CapValue> const& values, std::string_view name) {
  auto const found = std::ranges::find(values, name, &CapValue::name);
  return found == values.end() ? std::nullopt : std::optional<std::string_view>(found->value);
}

}  // namespace nimbara
