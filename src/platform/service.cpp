#include "platform/service.h"

#include "base/text/text.h"

namespace nimbara {

std::optional<std::string> normalizedBase(std::string_view address) {
  address = trimmed(address);
  bool const plain = address.starts_with("http://");
  if (!plain && !address.starts_with("https://")) return std::nullopt;
  while (address.ends_with('/')) address.remove_suffix(1);
  bool const hasHost = address.size() > std::string_view(plain ? "http://" : "https://").size();
  if (!hasHost || address.find_first_of(" ?#") != std::string_view::npos) return std::nullopt;
  return std::string(address);
}

}  // namespace nimbara
