// Any bytes as an answer of MET Norway's service of warnings.

#include "feeds/metalerts/met_alerts_list.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static_cast<void>(nimbara::parseMetAlerts({reinterpret_cast<char const*>(data), size}));
  return 0;
}
