#include "platform/http/http_client.h"

#include "base/text/text.h"

namespace nimbara {

std::optional<std::string_view> HttpResponse::header(std::string_view name) const {
  std::string const wanted = asciiLowered(name);
  std::optional<std::string_view> found;
  for (auto const& [key, value] : headers) {
    if (asciiLowered(key) == wanted) found = value;
  }
  return found;
}

}  // namespace nimbara
