// The services that one program works with, made of its surroundings and settings and bound to each other;
// the one place that knows which parts there are. Made by the engine, and made anew when settings change that
// the services were made with. What nobody asks for is not made. Any thread may ask.
#pragma once

#include "app/services/http/keyed_http_client.h"
#include "app/services/in_use.h"
#include "app/services/wording.h"
#include "base/geodesy.h"
#include "model/provider_option.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace nimbara {

class Clock;
class FeedServices;
class ForecastService;
class HttpClient;
class LanguageModel;
class ProviderHistory;
class SecondForecasts;
class ServiceDirectory;
class Settings;
class WeatherCache;
class WeatherProviderManager;

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
    /// See `FeedServices::Options`.
    std::function<std::string(Coordinate)> chosenSource = {};
    FindKey findKey = {};  ///< the user's keys for services
  };

  Composition(Settings const& settings, Clock const& clock, Options const& options);
  ~Composition();
  Composition(Composition const&) = delete;
  Composition& operator=(Composition const&) = delete;

  HttpClient& http();
  ServiceDirectory const& services() const;
  WeatherCache& cache();
  ProviderHistory& history();
  WeatherProviderManager& providers();
  ForecastService& forecasts();
  SecondForecasts& secondForecasts();
  bool isAppleWeatherConfigured() const;
  FeedServices& feeds();
  /// Null unless the user has named an address.
  LanguageModel* languageModel();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

/// Each by itself, held together with all that it stands on.
InUse<ForecastService> forecastsOf(InUse<Composition> const& services);
InUse<FeedServices> feedsOf(InUse<Composition> const& services);

}  // namespace nimbara
