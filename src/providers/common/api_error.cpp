#include "providers/common/api_error.h"

namespace nimbara {

namespace {

constexpr std::string_view kRefusal = "every provider failed less than five minutes ago";

}  // namespace

APIError APIError::refusal(std::optional<std::chrono::seconds> wait) {
  APIError error = network({HttpError::Kind::timedOut, std::string(kRefusal)});
  error.retryAfter = wait;
  return error;
}

bool APIError::isRefusal() const {
  return transport == HttpError::Kind::timedOut && detail == kRefusal;
}

APIError APIError::network(HttpError const& error) {
  return {Case::networkError, 0, error.message, error.kind, {}};
}

APIError APIError::decoding(DecodeError const& error) {
  return {Case::decodingError, 0, error.text(), {}, {}};
}

APIError APIError::http(int statusCode, std::string reason) {
  return {Case::httpError, statusCode, std::move(reason), {}, {}};
}

std::string APIError::description() const {
  switch (kind) {
    case Case::networkError:
      return "Network error: " + detail;
    case Case::decodingError:
      return "Failed to decode response: " + detail;
    case Case::httpError:
      return "Server returned HTTP " + std::to_string(statusCode);
    case Case::invalidURL:
      return "The URL could not be constructed.";
    case Case::noData:
      return "The server returned an empty response.";
    case Case::noResults:
      return "No results found for the given location.";
  }
  return {};
}

std::string APIError::text() const {
  bool const hasReason = kind == Case::httpError && !detail.empty();
  return hasReason ? description() + ": " + detail : description();
}

}  // namespace nimbara
