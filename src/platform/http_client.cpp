#include "platform/http_client.h"

#include "base/text.h"

namespace nimbara {

std::optional<std::string_view> HttpResponse::header(std::string_view name) const {
  std::string const wanted = asciiLowered(name);
  for (auto entry = headers.rbegin(); entry != headers.rend(); ++entry) {
    if (asciiLowered(entry->first) == wanted) return entry->second;
  }
  return std::nullopt;
}

}  // namespace nimbara
