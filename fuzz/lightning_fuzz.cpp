// Any bytes as a list of lightning strikes.

#include "feeds/storms/lightning_source.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static_cast<void>(parseLightningStrikes(body));
  return 0;
}
