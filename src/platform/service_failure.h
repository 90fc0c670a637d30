// Why a service gave nothing newer: a value that crosses all layers. Faces say it in the user's language;
// logs and the output for scripts have its English sentence. Pure.
#pragma once

#include "base/json/json.h"
#include "base/time/instant.h"
#include "platform/http/http_client.h"

#include <optional>
#include <string>

namespace nimbara {

struct ServiceFailure {
  enum class Kind {
    network,        ///< no whole answer came; `transport` says what happened
    status,         ///< the service answered with `status`
    unreadable,     ///< the answer is not what was asked for
    incomplete,     ///< parts of the answer cannot be read
    noSuchPlace,    ///< there is no such place on the globe, so nobody was asked
    notConfigured,  ///< the user has named no key or address
    noAnswer,       ///< the last question was ended, or none was asked yet
    othersAsk,      ///< another process of the user's is asking
    leftAlone,      ///< after a failure it is not asked before `nextTry`
    notAskedLately
  };

  Kind kind = Kind::network;
  std::optional<HttpError::Kind> transport = std::nullopt;
  int status = 0;
  std::string detail = {};                        ///< in English, without a full stop
  std::optional<Instant> nextTry = std::nullopt;  ///< the service is not asked before
  bool isOfWaters = false;                        ///< of what it was asked for the waters off a shore

  static ServiceFailure network(HttpError const& error) {
    return {.kind = Kind::network, .transport = error.kind, .detail = error.message};
  }
  static ServiceFailure answered(int status) { return {.kind = Kind::status, .status = status}; }
  /// `detail` is a whole sentence: "the response is not a valid list of storms".
  static ServiceFailure of(Kind kind, std::string detail = {}) {
    return {.kind = kind, .detail = std::move(detail)};
  }

  bool operator==(ServiceFailure const&) const = default;
};

template <>
inline constexpr auto enumNames<ServiceFailure::Kind> = std::to_array<std::string_view>(
    {"network", "status", "unreadable", "incomplete", "noSuchPlace", "notConfigured", "noAnswer", "othersAsk",
     "leftAlone", "notAskedLately"});
static_assert(enumNamesComplete(ServiceFailure::Kind::notAskedLately));

template <>
inline constexpr auto jsonFields<ServiceFailure> =
    FieldList{field("kind", &ServiceFailure::kind),       field("transport", &ServiceFailure::transport),
              fieldOr("status", &ServiceFailure::status), fieldOr("detail", &ServiceFailure::detail),
              field("nextTry", &ServiceFailure::nextTry), fieldOr("waters", &ServiceFailure::isOfWaters)};

/// "the network cannot be reached (could not resolve host example.org)", "the service returned status
/// 503": English, without a full stop.
std::string sentenceOf(ServiceFailure const& failure);

}  // namespace nimbara
