#include "app/services/forecasts/second_forecast.h"

#include "model/process.h"
#include "providers/provider_manager.h"

namespace nimbara {

std::optional<SecondForecast> SecondForecasts::kept(std::string const& key, WeatherProviderOption shown) {
  auto entry = cache_.load(key);
  bool const suits = entry && entry->provider && entry->provider != shown &&
                     isFresh(entry->responseTimestamp, clock_.now(), cache_.ttl());
  if (!suits) return std::nullopt;
  return SecondForecast{entry->provider, std::move(entry->data), entry->responseTimestamp, {}};
}

SecondForecast SecondForecasts::fetch(Place const& place, WeatherProviderOption shown,
                                      std::stop_token const& stop) {
  std::string const key = cacheKey(place.coordinate);
  if (auto known = kept(key, shown)) return std::move(*known);
  auto const records = history_.records();
  for (Provider const& provider : providers_) {
    auto const record = records.find(enumName(provider.option));
    bool const rests = record != records.end() && isCoolingDown(record->second, clock_.now());
    if (provider.option == shown || rests) continue;
    auto const response = provider.fetch(place.coordinate, stop);
    Instant const now = clock_.now();
    if (!response) return {provider.option, {}, now, response.error()};
    SecondForecast answer{provider.option, process(*response, Calendar::utc(), now), now, {}};
    cache_.store(key, ParsedCacheEntry{now, *answer.data, {}, provider.option, {}});
    return answer;
  }
  return {};
}

}  // namespace nimbara
