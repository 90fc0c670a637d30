#include "feeds/cap/cap_language.h"

#include "base/text/text.h"

#include <algorithm>

namespace nimbara {

std::string primaryLanguage(std::string_view tag) {
  std::string const primary = asciiLowered(tag.substr(0, tag.find_first_of("-_.@")));
  return primary == "nb" || primary == "nn" ? "no" : primary;
}

std::string languageTag(std::string_view tag) {
  std::string lowered = asciiLowered(tag.substr(0, tag.find_first_of(".@")));
  std::ranges::replace(lowered, '_', '-');
  return lowered;
}

int languageRank(std::string_view text, std::string_view language) {
  std::string const primary = primaryLanguage(text);
  if (primary.empty()) return 2;
  return primary == primaryLanguage(language) ? 0 : primary == "en" ? 1 : 2;
}

}  // namespace nimbara
