// Any bytes as a WeatherKit answer: through the parser, the join and the processing.

#include "model/process.h"
#include "providers/weatherkit/apple_weather_client.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  Instant const now = *parseIso8601("2023-09-08T22:03:04Z");
  Calendar const calendar = Calendar::fixedOffset(std::chrono::hours(9));
  HttpResponse const answer{200, {}, std::string(reinterpret_cast<char const*>(data), size)};
  if (auto const record = readAppleWeatherAnswer(answer, {35.47, 135.75}, calendar, now)) {
    process(*record, calendar, now);
  }
  return 0;
}
