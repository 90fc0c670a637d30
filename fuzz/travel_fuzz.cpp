// Any bytes as a list of advisories, and as a text in HTML.

#include "feeds/fetching/plain_text.h"
#include "feeds/travel/travel_advisory.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static_cast<void>(parseTravelAdvisories(body));
  if (plainTextOfHtml(body, 1000).size() > 1000) __builtin_trap();
  return 0;
}
