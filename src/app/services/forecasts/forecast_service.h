// The forecast of one place: from the cache while it is fresh, else from the providers, else the last good
// one with its age. Names the place, processes the answer, derives its alerts and keeps it. What it returns
// is a value; any thread may call.
#pragma once

#include "analysis/weather_analysis_engine.h"
#include "app/places/place.h"
#include "app/services/wording.h"
#include "model/weather_cache.h"
#include "platform/clock.h"
#include "providers/provider_manager.h"

#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace nimbara {

struct ForecastAnswer {
  std::optional<WttrResponse> response;  ///< present when the provider answered in this call
  WeatherData data;
  std::optional<WeatherProviderOption> provider;  ///< the one that answered
  Instant answeredAt;                             ///< when it did
  bool fromCache = false;
  bool stale = false;                       ///< older than the cache's limit
  std::optional<APIError> failure;          ///< why nothing newer was available
  std::vector<WeatherAlert> alerts;         ///< those made from the forecast, for the moment of the call
  std::vector<SupersededAlert> superseded;  ///< of these
};

class ForecastService {
 public:
  ForecastService(WeatherProviderManager& providers, WeatherCache& cache, Clock const& clock,
                  Wording wording);

  /// What the cache holds of the place, however old.
  std::optional<ForecastAnswer> cached(Place const& place);
  /// Asks the providers and keeps the answer.
  Result<ForecastAnswer, APIError> fetch(Place const& place, std::stop_token const& stop = {});
  /// The cached forecast while it is fresh and comes from `wanted`, whoever of the user's programs has
  /// fetched it or is about to; else a new one; else, with `failure` set, the last good one.
  Result<ForecastAnswer, APIError> get(Place const& place, WeatherProviderOption wanted,
                                       std::stop_token const& stop = {});

  /// Holds for what is answered from now on.
  void setWording(Wording wording);

  WeatherProviderManager& providers() { return providers_; }
  WeatherCache& cache() { return cache_; }

 private:
  ForecastAnswer answerOf(Place const& place, WttrResponse response, Instant answeredAt) const;
  void finish(Place const& place, ForecastAnswer& answer) const;
  Wording wording() const;

  WeatherProviderManager& providers_;
  WeatherCache& cache_;
  Clock const& clock_;
  mutable std::mutex mutex_;  // guards the next
  Wording wording_;
  WeatherAnalysisEngine analysis_;
};

}  // namespace nimbara
