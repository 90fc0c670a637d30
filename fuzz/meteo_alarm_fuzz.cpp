// Any bytes as a country's feed: through the parser, the selection and the merging.

#include "feeds/meteoalarm/meteo_alarm_merge.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  static Texts const kTexts = Texts::load("en");
  MeteoAlarmAtomParser parser;
  static_cast<void>(parser.parse({reinterpret_cast<char const*>(data), size}));
  MeteoAlarmFeed const feed = feedOf(parser.takeEntries());
  PlaceRegions const regions{"DE", {"Koblenz"}, {{"EMMA_ID", "DE100"}}};
  for (Coordinate const place : {Coordinate{50.36, 7.59}, {90, 180}, {-90, -180}}) {
    mergedAlerts(selectedEntries(feed, place, regions), {"DE", regions, "en", kTexts});
  }
  return 0;
}
