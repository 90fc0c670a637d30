// Any bytes as a compiled file of the tz database and as a POSIX TZ text.

#include "base/time/zone_rules.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  auto const zone = parsePosixZone(bytes);
  auto const rules = ZoneRules::fromTzif(bytes);
  for (int year = 1900; year < 2100; year += 7) {
    std::chrono::sys_seconds const moment = std::chrono::sys_days(std::chrono::year(year) / 3 / 29);
    if (zone) static_cast<void>(zone->offset(moment));
    if (rules) static_cast<void>(rules->offset(moment));
  }
  return 0;
}
