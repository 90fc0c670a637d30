// Any bytes as an answer of Bright Sky, and as a refusal of it.

#include "feeds/brightsky/bright_sky_alerts.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static_cast<void>(nimbara::parseBrightSkyAlerts(body));
  static_cast<void>(nimbara::isBrightSkyUncovered(body));
  return 0;
}
