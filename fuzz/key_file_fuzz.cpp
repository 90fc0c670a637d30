// Any bytes as the private key of WeatherKit: a token or a sentence, and nothing of the file in the sentence.

#include "platform/linux/http/es256.h"
#include "providers/weatherkit/apple_weather_token.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  std::string_view const file(reinterpret_cast<char const*>(data), size);
  AppleWeatherCredentials const credentials{"key.p8", "KEY", "TEAM", "SERVICE", signEs256};
  auto const token = signAppleWeatherToken(credentials, file, Instant(std::chrono::hours(490'000)));
  // The sentences' own words have few digits.
  std::string_view const telling = file.substr(0, 16);
  auto const isDigit = [](char c) { return c >= '0' && c <= '9'; };
  bool const isTold = !token && std::ranges::count_if(telling, isDigit) > 4 &&
                      token.error().find(telling) != std::string::npos;
  if (isTold) std::abort();
  return 0;
}
