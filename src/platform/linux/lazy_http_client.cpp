#include "platform/linux/lazy_http_client.h"

#include "platform/linux/http/http_module.h"
#include "platform/linux/module_loader.h"
#include "platform/linux/resident_code.h"

namespace nimbara {

Result<HttpResponse, HttpError> LazyHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  std::call_once(loaded_, [this] {
    auto const* const module =
        static_cast<HttpModule const*>(loadModule(program_, kHttpModuleFile, kHttpModuleSymbol));
    if (module != nullptr) client_ = module->make(userAgent_);
    // Much was run through on the way here that is not needed while the answer is awaited.
    giveBackCode();
  });
  if (client_) return client_->get(request, std::move(stop));
  return std::unexpected(
      HttpError{HttpError::Kind::protocol, "the network component (nimbara-http.so) is not installed"});
}

}  // namespace nimbara
