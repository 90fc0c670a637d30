// The error of the forecast clients: a case, its payload and the text that the user reads.
#pragma once

#include "base/json/json.h"
#include "platform/http/http_client.h"

#include <chrono>
#include <optional>
#include <string>

namespace nimbara {

struct APIError {
  enum class Case { networkError, decodingError, httpError, invalidURL, noData, noResults };

  Case kind = Case::noData;
  int statusCode = 0;  ///< of `httpError`
  std::string detail;  ///< of `networkError` and `decodingError`; the service's reason of `httpError`
  std::optional<HttpError::Kind> transport;  ///< of `networkError`: what happened below
  /// Of `httpError`: the pause that the service asked for; of a refusal: until a provider may be asked.
  std::optional<std::chrono::seconds> retryAfter;

  static APIError network(HttpError const& error);
  static APIError decoding(DecodeError const& error);
  static APIError http(int statusCode, std::string reason = {});
  static APIError of(Case kind) { return {kind, 0, {}, {}, {}}; }

  /// Nobody was asked, since every provider failed a moment ago.
  static APIError refusal(std::optional<std::chrono::seconds> wait = {});
  bool isRefusal() const;

  /// The fixed text of the case with its payload.
  std::string description() const;
  /// The description and, where the service gave one, its reason.
  std::string text() const;

  bool operator==(APIError const&) const = default;
};

template <>
inline constexpr auto enumNames<APIError::Case> = std::to_array<std::string_view>(
    {"networkError", "decodingError", "httpError", "invalidURL", "noData", "noResults"});
static_assert(enumNamesComplete(APIError::Case::noResults));

}  // namespace nimbara
