// Any bytes as the document of a warning: through the reader and the choice of what it says of an entry.

#include "feeds/cap/cap_reader.h"
#include "feeds/meteoalarm/meteo_alarm_details.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  auto const document = parseCap({reinterpret_cast<char const*>(data), size});
  if (!document) return 0;
  RawEntry entry;
  entry.areaDesc = "Sumadija";
  entry.otherCodes = {{"EMMA_ID", "RS010"}};
  for (std::optional<std::size_t> const index : {std::optional<std::size_t>(), {0}, {1}, {9}}) {
    entry.infoIndex = index;
    static_cast<void>(detailsOf(*document, entry, "sr_RS.UTF-8"));
    static_cast<void>(languageOfEntry(*document, entry));
  }
  return 0;
}
