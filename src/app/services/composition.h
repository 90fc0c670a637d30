// The services that one program works with, made from its environment and settings and bound to each other.
// Owned by the program's entry (a command, the background service); the one place that knows which parts
// there are.
#pragma once

#include "app/services/chat_language_model.h"
#include "app/services/feed_services.h"
#include "app/services/forecast_service.h"
#include "app/settings/environment.h"
#include "app/settings/service_directory.h"
#include "model/provider_option.h"
#include "model/weather_cache.h"
#include "platform/clock.h"
#include "platform/linux/lazy_http_client.h"
#include "platform/settings.h"
#include "providers/metnorway/yr_no_client.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/provider_history.h"
#include "providers/provider_manager.h"
#include "providers/weatherkit/apple_weather_client.h"
#include "providers/wttr/wttr_client.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace nimbara {

/// Gives a client that may use the network's. It must not outlive that.
using DecorateHttp = std::function<std::unique_ptr<HttpClient>(HttpClient& network)>;

class Composition {
 public:
  struct Options {
    std::string servicesBase;  ///< stands in for the services; empty for the services themselves
    Wording wording;
    WeatherProviderOption preferredProvider = WeatherProviderOption::automatic;
    std::filesystem::path program;         ///< this program's own file
    std::filesystem::path dataDirectory;   ///< of what the user has fetched
    std::filesystem::path cacheDirectory;  ///< empty: nothing outlives the process
    DecorateHttp aroundNetwork;            ///< makes what stands before the network; empty: nothing does
  };

  Composition(Settings const& settings, Clock const& clock, Options const& options);

  HttpClient& http() { return *http_; }
  ServiceDirectory const& services() const { return services_; }
  WeatherCache& cache() { return cache_; }
  ProviderHistory& history() { return history_; }
  WeatherProviderManager& providers() { return providers_; }
  ForecastService& forecasts() { return forecasts_; }
  bool isAppleWeatherConfigured() const { return appleWeather_.isConfigured(); }
  FeedServices& feeds() { return feeds_; }
  /// Null unless the user has named an address.
  LanguageModel* languageModel() { return languageModel_ ? &*languageModel_ : nullptr; }

 private:
  WeatherProviderManager::Providers clients();

  Configuration configuration_;
  ServiceDirectory services_;
  LazyHttpClient network_;
  std::unique_ptr<HttpClient> decorated_;
  HttpClient* http_;
  AppleWeatherClient appleWeather_;
  OpenMeteoClient openMeteo_;
  YrNoClient yrNo_;
  WttrAPIClient wttr_;
  WeatherCache cache_;
  ProviderHistory history_;
  WeatherProviderManager providers_;
  ForecastService forecasts_;
  FeedServices feeds_;
  std::optional<ChatLanguageModel> languageModel_;
};

}  // namespace nimbara
