// An HTTP client whose library is loaded with the first request: that takes milliseconds and megabytes, which
// a run that lives from the cache does not have.
#pragma once

#include "platform/http/http_client.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace nimbara {

struct HttpModule;

class LazyHttpClient final : public HttpClient {
 public:
  /// `program` is the running program's file: the library's part lies next to it.
  LazyHttpClient(std::filesystem::path program, std::string userAgent)
      : program_(std::move(program)), userAgent_(std::move(userAgent)) {}

  /// `protocol` for every request when that part is not installed, or is of another build than the program.
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;

  /// An `Es256Signer`; a sentence as well when that part is not installed.
  Result<std::string, std::string> sign(std::string_view keyPem, std::string_view text);

 private:
  void load();
  std::string whyNot() const;

  std::filesystem::path program_;
  std::string userAgent_;
  std::once_flag loaded_;
  bool isForeign_ = false;
  HttpModule const* module_ = nullptr;
  std::unique_ptr<HttpClient> client_;
};

}  // namespace nimbara
