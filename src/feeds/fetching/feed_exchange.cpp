#include "feeds/fetching/feed_exchange.h"

namespace nimbara {

namespace {

constexpr int kNotModified = 304;

bool isSuccess(int status) {
  return status >= 200 && status <= 299;
}

}  // namespace

Validators Validators::of(HttpResponse const& answer) {
  auto const header = [&](std::string_view name) { return std::string(answer.header(name).value_or("")); };
  return {header("ETag"), header("Last-Modified")};
}

Result<std::optional<HttpResponse>, ServiceFailure> exchange(HttpClient& http, HttpRequest request,
                                                             std::optional<Validators> const& kept,
                                                             std::stop_token stop, HttpResponse* other) {
  if (kept && !kept->etag.empty()) request.headers.emplace_back("If-None-Match", kept->etag);
  if (kept && !kept->lastModified.empty())
    request.headers.emplace_back("If-Modified-Since", kept->lastModified);
  auto answer = http.get(request, std::move(stop));
  if (!answer) return std::unexpected(ServiceFailure::network(answer.error()));
  if (isSuccess(answer->status)) return std::move(*answer);
  int const status = answer->status;
  if (other != nullptr) *other = std::move(*answer);
  if (status == kNotModified && kept) return std::nullopt;
  return std::unexpected(ServiceFailure::answered(status));
}

}  // namespace nimbara
