// Any bytes as a collection of earthquakes.

#include "feeds/quakes/emsc.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  auto events = parseEarthquakes({reinterpret_cast<char const*>(data), size});
  auto const emsc = parseEmscEarthquakes({reinterpret_cast<char const*>(data), size});
  if (events && emsc) mergedEarthquakes(*events, *emsc);
  if (events) encodeJson(recentEarthquakes(std::move(*events), *parseIso8601("2022-04-04T12:00:00Z")));
  return 0;
}
