// Any bytes as the document of a warning: through the reader, the choice of what it says of an entry, and
// what it means for places.

#include "feeds/alerts/events/cap_events.h"
#include "feeds/cap/cap_reader.h"
#include "feeds/meteoalarm/meteo_alarm_details.h"

#include <cstdint>

namespace {

/// Twice, the second time as what earlier lists had to do with.
void judge(nimbara::CapAlert const& document) {
  using namespace nimbara;
  KnownEvents known;
  CapMessage message{std::make_shared<CapAlert const>(document), {}, "RS", false, {}};
  for (Coordinate const place : {Coordinate{44.2, 20.7}, {67, 180}, {-90, 0}}) {
    for (std::string_view const country : {"RS", "US", ""}) {
      message.isHit = !message.isHit;
      static_cast<void>(capEvents(
          {&message, 1}, {"wmo", place, country, "sr_RS.UTF-8", Instant{std::chrono::seconds(1755500000)}},
          known));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  auto const document = parseCap({reinterpret_cast<char const*>(data), size});
  if (!document) return 0;
  judge(*document);
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
