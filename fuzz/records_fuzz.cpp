// Any bytes as each persisted record; what is read must be written and read again to the same value.

#include "base/json/json.h"
#include "model/process.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_cache.h"
#include "model/weather_data.h"
#include "providers/geocoder.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

template <class T>
void roundTrip(std::string_view bytes) {
  auto const record = nimbara::decodeJson<T>(bytes);
  if (!record) return;
  auto const again = nimbara::decodeJson<T>(nimbara::encodeJson(*record));
  if (!again || !(*again == *record)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  roundTrip<nimbara::WttrResponse>(bytes);
  roundTrip<nimbara::WeatherData>(bytes);
  roundTrip<nimbara::WeatherAlert>(bytes);
  roundTrip<nimbara::ParsedCacheEntry>(bytes);
  auto const places = nimbara::parseGeocoding(bytes);
  static_cast<void>(places);
  return 0;
}
