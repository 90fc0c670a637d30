// The port of HTTP: one request value in, one response value or error out. The caller decides what a status
// means; the client only promises that a body it returns is whole and no longer than was allowed.
#pragma once

#include "base/enum_names.h"
#include "base/result.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbara {

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct HttpRequest {
  std::string url;
  HttpHeaders headers;  ///< beside User-Agent and Accept-Encoding, which the client sets
  std::chrono::milliseconds timeout{15'000};        ///< for the whole exchange, redirects included
  std::size_t maxBodyBytes = std::size_t{4} << 20;  ///< after decompression
  std::optional<std::string> body = std::nullopt;   ///< with one the request is a POST of it
  /// Timed out when for so long hardly anything comes, be it before the answer or within it. The timeout is
  /// for slow lines; where somebody else can be asked, a server that hangs must not use it up.
  std::optional<std::chrono::seconds> longestSilence = std::nullopt;

  bool operator==(HttpRequest const&) const = default;
};

struct HttpResponse {
  int status = 0;
  HttpHeaders headers;
  std::string body;

  /// The value of the last header of that name, whatever its letter case.
  std::optional<std::string_view> header(std::string_view name) const;
};

struct HttpError {
  enum class Kind {
    invalidUrl,
    unresolvedHost,
    connectionFailed,
    tlsFailed,
    timedOut,
    cancelled,
    bodyTooLarge,
    truncated,
    refusedRedirect,
    protocol
  };
  Kind kind = Kind::protocol;
  std::string message;  ///< for people, without a full stop; never holds a query string
};

template <>
inline constexpr auto enumNames<HttpError::Kind> = std::to_array<std::string_view>(
    {"invalidUrl", "unresolvedHost", "connectionFailed", "tlsFailed", "timedOut", "cancelled", "bodyTooLarge",
     "truncated", "refusedRedirect", "protocol"});
static_assert(enumNamesComplete(HttpError::Kind::protocol));

class HttpClient {
 public:
  virtual ~HttpClient() = default;
  /// A GET, or a POST of the request's body. Blocks until the answer is whole, an error is known or `stop` is
  /// asked for. Any thread may call.
  virtual Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) = 0;
};

}  // namespace nimbara
