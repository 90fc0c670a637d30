// Any bytes as a list of Canada's weather alerts.

#include "feeds/eccc/eccc_alerts.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static_cast<void>(nimbara::parseEcccAlerts({reinterpret_cast<char const*>(data), size}));
  return 0;
}
