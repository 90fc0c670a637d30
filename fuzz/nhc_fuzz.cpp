// Any bytes as each of the documents about storms.

#include "feeds/storms/tropical_storm.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static Instant const kUpdate = *parseIso8601("2026-09-29T15:00:00Z");
  static_cast<void>(parseTropicalStorms(body));
  static_cast<void>(parseTropicalTrack(body, kUpdate));
  if (auto const layers = parseMapLayers(body)) trackLayerOf("AT4", *layers);
  return 0;
}
