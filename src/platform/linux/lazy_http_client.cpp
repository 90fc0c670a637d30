#include "platform/linux/lazy_http_client.h"

#include "platform/linux/http/http_module.h"
#include "platform/linux/module_loader.h"
#include "platform/linux/resident_code.h"

namespace nimbara {

Result<HttpResponse, HttpError> LazyHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  std::call_once(loaded_, [this] {
    auto const* const module =
        static_cast<HttpModule const*>(loadModule(program_, kHttpModuleFile, kHttpModuleSymbol));
    isForeign_ = module != nullptr && module->layout != HttpLayout{};
    if (module != nullptr && !isForeign_) client_ = module->make(userAgent_);
    // Much was run through on the way here that is not needed while the answer is awaited.
    giveBackCode();
  });
  if (client_) return client_->get(request, std::move(stop));
  constexpr std::string_view kComponent = "the network component (nimbara-http.so) is ";
  std::string_view const why = isForeign_ ? "of another version; restart Nimbara" : "not installed";
  return std::unexpected(HttpError{HttpError::Kind::protocol, std::string(kComponent) + std::string(why)});
}

}  // namespace nimbara
