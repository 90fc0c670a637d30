#include "feeds/feed_exchange.h"

namespace nimbara {

Result<HttpResponse, std::string> exchange(HttpClient& http, HttpRequest const& request,
                                           std::stop_token stop) {
  auto answer = http.get(request, std::move(stop));
  if (!answer) return std::unexpected(std::move(answer.error().message));
  return std::move(*answer);
}

std::string statusProblem(int status) {
  return "the service answered with status " + std::to_string(status);
}

}  // namespace nimbara
