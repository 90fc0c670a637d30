#include "providers/common/service_answer.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/http_date.h"

namespace nimbara {

Result<HttpResponse, APIError> ask(HttpClient& http, HttpRequest const& request, std::stop_token stop) {
  auto answer = http.get(request, std::move(stop));
  if (answer) return std::move(*answer);
  if (answer.error().kind == HttpError::Kind::invalidUrl) {
    return std::unexpected(APIError::of(APIError::Case::invalidURL));
  }
  return std::unexpected(APIError::network(answer.error()));
}

std::optional<APIError> refusalIn(HttpResponse const& answer) {
  if (answer.status < 200 || answer.status > 299) {
    APIError error = APIError::http(answer.status, errorReason(answer.body));
    error.retryAfter = retryAfterOf(answer);
    return error;
  }
  if (trimmed(answer.body).empty()) return APIError::of(APIError::Case::noData);
  return std::nullopt;
}

std::optional<std::chrono::seconds> retryAfterOf(HttpResponse const& answer) {
  using std::chrono::seconds;
  constexpr seconds kLongest = std::chrono::hours(24);
  auto const header = answer.header("Retry-After");
  if (!header) return std::nullopt;
  if (auto const count = parseInteger(trimmed(*header))) {
    return *count < 0 ? std::nullopt : std::optional(std::min(seconds(*count), kLongest));
  }
  auto const until = parseHttpDate(trimmed(*header));
  auto const sent = parseHttpDate(trimmed(answer.header("Date").value_or("")));
  if (!until || !sent || *until < *sent) return std::nullopt;
  return std::min(std::chrono::ceil<seconds>(*until - *sent), kLongest);
}

std::string errorReason(std::string_view body) {
  auto const document = json_detail::parseDocument(body);
  std::string_view reason;
  if (!document || document->at_key("reason").get(reason) != simdjson::SUCCESS) return {};
  return oneLine(reason);
}

}  // namespace nimbara
