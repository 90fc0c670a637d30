// Puts the user's keys into requests at the last moment: what asks services knows only references, so neither
// a log nor a recording has a key, and a run that asks nobody never asks for one. Any thread may call.
#pragma once

#include "platform/http/http_client.h"

#include <functional>

namespace nimbara {

/// The key behind a reference; or why there is none, a sentence without a full stop. Any other text is its
/// own.
using FindKey = std::function<Result<std::string, std::string>(std::string const& reference)>;

class KeyedHttpClient final : public HttpClient {
 public:
  /// Without `find`, requests go as they are. The network outlives the client.
  KeyedHttpClient(HttpClient& network, FindKey find) : network_(network), find_(std::move(find)) {}

  /// `protocol` for a request whose key cannot be had: it does not leave this machine.
  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;

 private:
  HttpClient& network_;
  FindKey find_;
};

}  // namespace nimbara
