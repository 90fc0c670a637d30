// Any bytes as an answer of the services that say what falls within the next two hours, and the sentence that
// is made from it.

#include "analysis/precip_predictor.h"
#include "feeds/nowcast/bright_sky_radar.h"
#include "feeds/nowcast/met_nowcast.h"
#include "feeds/nowcast/open_meteo_quarters.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const body(reinterpret_cast<char const*>(data), size);
  for (NowcastParser const parse : {parseMetNowcast, parseBrightSkyRadar, parseOpenMeteoQuarters}) {
    auto const reply = parse(body);
    if (!reply || reply->nowcast.steps.empty()) continue;
    static_cast<void>(PrecipPredictor(reply->nowcast).outlook(reply->nowcast.steps.front().from));
  }
  static_cast<void>(isOutsideBrightSkyRadar(body));
  return 0;
}
