// Any bytes as an answer of a weather station, of its service, or as what the program keeps of it.

#include "feeds/stations/netatmo_reader.h"
#include "feeds/stations/public_stations.h"
#include "feeds/stations/station_document.h"
#include "feeds/stations/station_link.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  Instant const now{};
  static_cast<void>(netatmoRefusal(200, body));
  static_cast<void>(parseNetatmoTokens(body));
  static_cast<void>(parseNetatmoStations(body));
  static_cast<void>(parseStationDocument(body, now));
  static_cast<void>(decodeJson<StationLink>(body));
  if (auto stations = parseNetatmoPublic(body))
    static_cast<void>(publicStations(std::move(*stations), {50.2, 8.8}, {}, now));
  return 0;
}
