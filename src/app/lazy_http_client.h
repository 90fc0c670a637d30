// An HTTP client that is made at its first use: the library under it takes milliseconds to start, which a run
// that lives from the cache does not have.
#pragma once

#include "platform/http_client.h"
#include "platform/linux/curl_http_client.h"
#include "platform/linux/resident_code.h"

#include <memory>
#include <mutex>

namespace nimbara {

class LazyHttpClient final : public HttpClient {
 public:
  explicit LazyHttpClient(CurlOptions options) : options_(std::move(options)) {}

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override {
    std::call_once(made_, [this] {
      // What was needed so far is not needed while the answer is awaited.
      giveBackCode();
      client_ = std::make_unique<CurlHttpClient>(options_);
    });
    return client_->get(request, std::move(stop));
  }

 private:
  CurlOptions options_;
  std::once_flag made_;
  std::unique_ptr<CurlHttpClient> client_;
};

}  // namespace nimbara
