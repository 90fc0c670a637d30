// Any bytes as a forecast answer: through the parser, the join and the processing.

#include "model/process.h"
#include "providers/openmeteo/open_meteo_client.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  Instant const now = *parseIso8601("2026-11-21T09:20:00Z");
  HttpResponse const answer{200, {}, std::string(reinterpret_cast<char const*>(data), size)};
  if (auto const response = readOpenMeteoAnswer(answer, {52.52, 13.41}, now)) {
    process(*response, Calendar::utc(), now);
  }
  return 0;
}
