// Any bytes as outlines in GeoJSON, through the packing to a look-up; and as a packed file.

#include "regions/region_map.h"

#include <cstdint>
#include <cstdlib>

namespace {

void lookAround(nimbara::RegionMap const& map) {
  for (nimbara::Coordinate const place : {nimbara::Coordinate{52.5, 13.4}, {0, 0}, {90, 180}, {-90, -180}}) {
    map.at(place);
    map.at(place, "DE");
  }
  map.outlines();
  map.knows({"EMMA_ID", "DE202"});
  map.countByCountry();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  if (auto const map = RegionMap::over(bytes)) lookAround(*map);
  if (auto const set = readOutlineText(bytes)) regionMapOf(*set);
  auto const reading = readOutlines(bytes);
  if (!reading) return 0;
  std::string const packed = regionMapOf(outlineSetOf(reading->outlines));
  auto const map = RegionMap::over(packed);
  if (!map) std::abort();
  lookAround(*map);
  return 0;
}
