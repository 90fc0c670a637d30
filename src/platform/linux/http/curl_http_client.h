// The HTTP client on libcurl: keeps connections between calls, speaks HTTP/2 and every compression that
// libcurl knows, takes proxies from the environment and always verifies TLS. Calls of several threads run
// side by side, each in a session of its own; a call that is asked to stop ends at once, whatever the network
// does.
#pragma once

#include "platform/http/http_client.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace nimbara {

struct CurlOptions {
  std::string userAgent;
  std::string caFile;  ///< trusted certificates instead of the system's; for tests
};

class CurlHttpClient final : public HttpClient {
 public:
  explicit CurlHttpClient(CurlOptions options);
  ~CurlHttpClient() override;

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;

 private:
  class Session;

  std::unique_ptr<Session> takeSession();
  void giveBack(std::unique_ptr<Session> session);

  CurlOptions options_;
  std::mutex mutex_;
  std::vector<std::unique_ptr<Session>> idle_;  // the last used one on top: its connections are the warmest
};

}  // namespace nimbara
