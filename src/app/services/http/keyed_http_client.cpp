#include "app/services/http/keyed_http_client.h"

#include "app/settings/service_keys.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

constexpr auto kPrefix = ServiceKeys::kReferencePrefix;

std::string plain(std::string const& key) {
  return key;
}

/// `text` with keys in place of references, each as `written` writes it.
template <class Written>
Result<std::string, std::string> withKeys(std::string text, FindKey const& find, Written written) {
  for (auto at = text.find(kPrefix); at != std::string::npos; at = text.find(kPrefix, at)) {
    std::string const reference = text.substr(at, ServiceKeys::kReferenceLength);
    auto key = ServiceKeys::isReference(reference) ? find(reference) : reference;
    if (!key) return key;
    std::string const inPlace = *key == reference ? reference : written(*key);
    text.replace(at, reference.size(), inPlace);
    at += inPlace.size();
  }
  return text;
}

bool hasReference(HttpRequest const& request) {
  bool has = request.url.find(kPrefix) != std::string::npos;
  for (auto const& [name, value] : request.headers) has = has || value.find(kPrefix) != std::string::npos;
  return has;
}

Result<HttpRequest, std::string> withKeys(HttpRequest request, FindKey const& find) {
  auto url =
      withKeys(std::move(request.url), find, [](std::string const& key) { return percentEncoded(key); });
  if (!url) return std::unexpected(url.error());
  request.url = std::move(*url);
  for (auto& [name, value] : request.headers) {
    auto whole = withKeys(std::move(value), find, &plain);
    if (!whole) return std::unexpected(whole.error());
    value = std::move(*whole);
  }
  return request;
}

}  // namespace

Result<HttpResponse, HttpError> KeyedHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  if (!find_ || !hasReference(request)) return network_.get(request, std::move(stop));
  auto const keyed = withKeys(request, find_);
  if (!keyed) return std::unexpected(HttpError{HttpError::Kind::protocol, keyed.error()});
  return network_.get(*keyed, std::move(stop));
}

}  // namespace nimbara
