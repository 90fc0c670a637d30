// Any bytes as the lists of a public alert server.

#include "feeds/fpas/fpas_lists.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static_cast<void>(nimbara::parseFpasAlertIds(body));
  static_cast<void>(nimbara::parseFpasFeeds(body));
  return 0;
}
