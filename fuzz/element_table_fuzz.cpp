// Any bytes as a table of orbital elements.

#include "feeds/space/element_text.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static_cast<void>(nimbara::elementText({reinterpret_cast<char const*>(data), size}));
  return 0;
}
