#include "regions/region_code.h"

#include <algorithm>

namespace nimbara {

RegionCode regionCodeOf(std::string_view text) {
  auto const colon = text.find(':');
  if (colon == std::string_view::npos) return {std::string(kNuts3Registry), std::string(text)};
  return {std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

bool hasLandCodeOf(PlaceRegions const& regions, std::string_view registry) {
  return std::ranges::any_of(regions.codes, [&](RegionCode const& code) {
    return code.registry == registry && std::ranges::find(regions.seaCodes, code) == regions.seaCodes.end();
  });
}

}  // namespace nimbara
