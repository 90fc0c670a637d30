#include "feeds/fetching/feed_exchange.h"

namespace nimbara {

Result<HttpResponse, std::string> exchange(HttpClient& http, HttpRequest const& request,
                                           std::stop_token stop) {
  auto answer = http.get(request, std::move(stop));
  if (!answer) return std::unexpected(networkProblem(answer.error()));
  return std::move(*answer);
}

}  // namespace nimbara
