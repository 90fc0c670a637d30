// Any bytes as a planetary K-index product.

#include "feeds/space/planetary_k_index.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  nimbara::newestKp({reinterpret_cast<char const*>(data), size});
  return 0;
}
