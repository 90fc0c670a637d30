// Any bytes as each of the documents about storms.

#include "feeds/storms/gdacs.h"
#include "feeds/storms/jtwc.h"
#include "feeds/storms/storm_merge.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  static Instant const kUpdate = *parseIso8601("2026-09-29T15:00:00Z");
  static_cast<void>(parseTropicalStorms(body));
  static_cast<void>(parseTropicalTrack(body, kUpdate));
  static_cast<void>(parseJtwcList(body));
  if (auto const storm = parseJtwcWarning(body, "wp2526")) closestApproach(*storm, {35, 139}, kUpdate);
  if (auto storms = parseGdacsStorms(body)) addStorms(*storms, *storms);
  if (auto const layers = parseMapLayers(body)) trackLayerOf("AT4", *layers);
  return 0;
}
