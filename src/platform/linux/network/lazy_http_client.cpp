#include "platform/linux/network/lazy_http_client.h"

#include "platform/linux/http/http_module.h"
#include "platform/linux/module_loader.h"
#include "platform/linux/resident_code.h"

namespace nimbara {

void LazyHttpClient::load() {
  std::call_once(loaded_, [this] {
    // Much was run through on the way here that is not needed while three dozen libraries are loaded,
    giveBackCode();
    auto const* const module =
        static_cast<HttpModule const*>(loadModule(program_, kHttpModuleFile, kHttpModuleSymbol));
    isForeign_ = module != nullptr && module->layout != HttpLayout{};
    if (module != nullptr && !isForeign_) {
      module_ = module;
      client_ = module->make(userAgent_);
    }
    // and much of these that is not needed while the answer is awaited.
    giveBackCode();
  });
}

std::string LazyHttpClient::whyNot() const {
  constexpr std::string_view kComponent = "the network component (nimbara-http.so) is ";
  std::string_view const why = isForeign_ ? "of another version; restart Nimbara" : "not installed";
  return std::string(kComponent) + std::string(why);
}

Result<HttpResponse, HttpError> LazyHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  load();
  if (client_) return client_->get(request, std::move(stop));
  return std::unexpected(HttpError{HttpError::Kind::protocol, whyNot()});
}

Result<std::string, std::string> LazyHttpClient::sign(std::string_view keyPem, std::string_view text) {
  load();
  if (module_ != nullptr) return module_->sign(keyPem, text);
  return std::unexpected(whyNot());
}

}  // namespace nimbara
