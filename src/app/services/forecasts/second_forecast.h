// What another provider than the shown forecast's says of the same place, to see how far they agree. Asked
// for only when somebody wants to know, and kept for hours. Any thread may call.
#pragma once

#include "app/places/place.h"
#include "model/weather_cache.h"
#include "providers/common/api_error.h"
#include "providers/provider_history.h"

#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace nimbara {

struct SecondForecast {
  std::optional<WeatherProviderOption> provider;  ///< whose; nothing where nobody could be asked
  std::optional<WeatherData> data;                ///< absent where it did not answer
  Instant answeredAt{};
  std::optional<APIError> failure;  ///< why it did not

  bool operator==(SecondForecast const&) const = default;
};

class SecondForecasts {
 public:
  static constexpr std::chrono::hours kLife{3};

  struct Provider {
    WeatherProviderOption option;
    std::function<Result<WttrResponse, APIError>(Coordinate place, std::stop_token const& stop)> fetch;
  };

  /// `providers` in the order of preference; the cache has their life.
  SecondForecasts(std::vector<Provider> providers, ProviderHistory& history, WeatherCache& cache,
                  Clock const& clock)
      : providers_(std::move(providers)), history_(history), cache_(cache), clock_(clock) {}

  /// Of the first provider that is not `shown` and has not failed just now. Blocks for the request where one
  /// is due.
  SecondForecast fetch(Place const& place, WeatherProviderOption shown, std::stop_token const& stop = {});

 private:
  std::optional<SecondForecast> kept(std::string const& key, WeatherProviderOption shown);

  std::vector<Provider> providers_;
  ProviderHistory& history_;
  WeatherCache& cache_;
  Clock const& clock_;
};

}  // namespace nimbara
