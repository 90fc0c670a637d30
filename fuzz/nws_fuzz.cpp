// Any bytes as an answer of the National Weather Service: through the parser and the choice of live events.

#include "feeds/alerts/gov_alerts.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  auto const list = parseNwsAlerts({reinterpret_cast<char const*>(data), size});
  KnownEvents roots;
  if (list) liveEvents(list->alerts, *parseIso8601("2024-01-12T12:00:00Z"), roots);
  return 0;
}
