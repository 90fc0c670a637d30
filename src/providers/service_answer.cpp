#include "providers/service_answer.h"

#include "base/json_codec.h"
#include "base/text.h"

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
    return APIError::http(answer.status, errorReason(answer.body));
  }
  if (trimmed(answer.body).empty()) return APIError::of(APIError::Case::noData);
  return std::nullopt;
}

std::string errorReason(std::string_view body) {
  auto const document = json_detail::parseDocument(body);
  std::string_view reason;
  if (!document || document->at_key("reason").get(reason) != simdjson::SUCCESS) return {};
  return oneLine(reason);
}

}  // namespace nimbara
