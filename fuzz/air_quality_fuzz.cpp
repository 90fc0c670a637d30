// Any bytes as an answer about the air or about the temperatures of many days.

#include "feeds/air/air_index.h"
#include "feeds/climate/climate_normals.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  if (auto const air = parseAirQuality(body); air && !air->hours.empty()) {
    uvOutlook(*air, air->hours.front().time);
    pollenOutlook(*air, {50, 10}, air->hours.front().time);
    airIndexOf(air->now, AirScale::us);
  }
  if (auto const days = parseDayTemperatures(body)) climateNormals(*days);
  return 0;
}
