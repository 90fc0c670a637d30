// Any bytes as a table of hot spots, through to the fires.

#include "feeds/fires/fire_detection.h"

#include <algorithm>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static Instant const kNow = *parseIso8601("2022-04-04T00:00:00Z");
  auto spots = parseHotSpots(body);
  if (!spots) return 0;
  // Comparing all pairs of a long table would leave no time for other tables.
  spots->resize(std::min<std::size_t>(spots->size(), 200));
  auto fires = firesNear(*spots, {-14, 134}, 20'100, kNow);
  keepFireIds(fires, fires);
  return 0;
}
