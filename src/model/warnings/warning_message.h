// A message of an official warning as its issuer identifies it, in the words of the Common Alerting Protocol.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// Another message, which this one changes or ends.
struct WarningReference {
  std::string sender;  ///< empty where nobody says
  std::string identifier;
  std::optional<Instant> sent;

  bool operator==(WarningReference const&) const = default;
};

template <>
inline constexpr auto jsonFields<WarningReference> =
    FieldList{field("sender", &WarningReference::sender), field("identifier", &WarningReference::identifier),
              field("sent", &WarningReference::sent)};

/// An area by the name that a registry has for it: "EMMA_ID" and "RS010".
struct WarningCode {
  std::string registry;
  std::string code;

  bool operator==(WarningCode const&) const = default;
};

template <>
inline constexpr auto jsonFields<WarningCode> =
    FieldList{field("registry", &WarningCode::registry), field("code", &WarningCode::code)};

/// Texts to the letter; empty where the source does not pass them on.
struct WarningMessage {
  std::string identifier;
  std::string sender;
  std::optional<Instant> sent;
  std::string status;  ///< "Actual"
  std::string type;    ///< "Alert", "Update" …
  std::vector<WarningReference> references;
  std::vector<WarningCode> codes;  ///< of its areas, each once

  bool operator==(WarningMessage const&) const = default;
};

template <>
inline constexpr auto jsonFields<WarningMessage> = FieldList{field("identifier", &WarningMessage::identifier),
                                                             field("sender", &WarningMessage::sender),
                                                             field("sent", &WarningMessage::sent),
                                                             field("status", &WarningMessage::status),
                                                             field("msgType", &WarningMessage::type),
                                                             field("references", &WarningMessage::references),
                                                             field("codes", &WarningMessage::codes)};

}  // namespace nimbara
