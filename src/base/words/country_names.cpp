#include "base/words/country_names.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace nimbara {

std::string countryName(std::string_view code, std::string_view language) {
  bool const wellFormed = code.size() == 2 && std::ranges::all_of(code, [](char c) {
                            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
                          });
  if (!wellFormed) return {};
  icu::UnicodeString name;
  icu::Locale("", std::string(code).c_str())
      .getDisplayCountry(icu::Locale(std::string(language).c_str()), name);
  std::string utf8;
  return name.toUTF8String(utf8);
}

}  // namespace nimbara
