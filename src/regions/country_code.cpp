#include "regions/country_code.h"

#include "base/text/text.h"

namespace nimbara {

std::string isoCountryCode(std::string_view code) {
  std::string iso = asciiUppered(code);
  if (iso == "UK") return "GB";
  if (iso == "EL") return "GR";
  return iso;
}

}  // namespace nimbara
