#include "feeds/region_code.h"

namespace nimbara {

RegionCode regionCodeOf(std::string_view text) {
  auto const colon = text.find(':');
  if (colon == std::string_view::npos) return {std::string(kNuts3Registry), std::string(text)};
  return {std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

}  // namespace nimbara
