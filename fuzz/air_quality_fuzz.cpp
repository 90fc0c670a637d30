// Any bytes as an answer about the air.

#include "feeds/air/air_quality.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static_cast<void>(parseAirQuality(body));
  return 0;
}
