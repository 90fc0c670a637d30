#include "app/services/composition.h"

#include "app/places/place_search.h"
#include "app/services/chat_language_model.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/forecasts/second_forecast.h"
#include "app/services/http/budgeted_http_client.h"
#include "app/settings/configuration.h"
#include "app/settings/service_directory.h"
#include "app/settings/settings_registry.h"
#include "model/weather_cache.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/network/lazy_http_client.h"
#include "platform/settings/settings.h"
#include "providers/metnorway/yr_no_client.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/provider_history.h"
#include "providers/provider_manager.h"
#include "providers/weatherkit/apple_weather_client.h"
#include "providers/wttr/wttr_client.h"

#include <mutex>
#include <optional>

namespace nimbara {

namespace {

AppleWeatherCredentials credentialsOf(Settings const& settings, LazyHttpClient& network) {
  return {settings.text("appleWeatherKeyFile"), settings.text("appleWeatherKeyID"),
          settings.text("appleWeatherTeamID"), settings.text("appleWeatherServiceID"),
          [&network](std::string_view keyPem, std::string_view text) { return network.sign(keyPem, text); }};
}

/// Below the cache's folder; nowhere without one.
std::filesystem::path below(std::filesystem::path const& folder, std::string_view name) {
  return folder.empty() ? folder : folder / name;
}

/// Failures that a stand-in was told to show say nothing of the services themselves.
std::string_view historyFile(std::string const& servicesBase) {
  return servicesBase.empty() ? "_providers.json" : "_providers.stand-in.json";
}

WeatherCache::Source sourceOf(std::string const& servicesBase) {
  return servicesBase.empty() ? WeatherCache::Source::services : WeatherCache::Source::standIn;
}

/// What a stand-in takes for a secret has no place among the user's.
MakeSecretStore secretsOf(Composition::Options const& options) {
  if (!options.servicesBase.empty() || options.program.empty()) return {};
  return [program = options.program] { return desktopSecretStore(busesOfSession(program)); };
}

template <class Client>
ForecastProvider providerOf(Client& client, bool isConfigured = true) {
  return {[&client](double latitude, double longitude, std::stop_token const& stop) {
            return client.fetchForecast(latitude, longitude, stop);
          },
          isConfigured};
}

SecondForecasts::Provider secondOf(WeatherProviderOption option, ForecastClient& client) {
  return {option, [&client](Coordinate place, std::stop_token const& stop) {
            return client.fetchForecast(place.latitude, place.longitude, stop);
          }};
}

}  // namespace

struct Composition::Parts {
  Parts(Settings const& settings, Clock const& theClock, Options const& options)
      : clock(theClock),
        configuration(configurationOf(settings)),
        services(configuration, options.servicesBase),
        network(options.program, userAgent(configuration)),
        keyed(network, options.findKey),
        decorated(options.aroundNetwork ? options.aroundNetwork(keyed) : nullptr),
        budgeted(decorated ? *decorated : keyed, clock,
                 below(options.cacheDirectory, "_openMeteoCalls.json")),
        http(budgeted),
        appleWeather(http, clock, services.address(Service::appleWeather), offlineTimeZone,
                     credentialsOf(settings, network)),
        openMeteo(http, clock, services.address(Service::openMeteo)),
        yrNo(http, clock, services.address(Service::yrNo), offlineTimeZone,
             below(options.cacheDirectory, options.servicesBase.empty() ? "yrNo" : "yrNo.stand-in")),
        wttr(http, clock, services.address(Service::wttrIn), offlineTimeZone),
        cache(options.cacheDirectory, clock, sourceOf(options.servicesBase)),
        history(below(options.cacheDirectory, historyFile(options.servicesBase))),
        providers({providerOf(appleWeather, appleWeather.isConfigured()), providerOf(openMeteo),
                   providerOf(yrNo), providerOf(wttr)},
                  history, clock),
        forecasts(providers, cache, clock, options.wording),
        secondCache(below(options.cacheDirectory, "second"), clock, sourceOf(options.servicesBase),
                    SecondForecasts::kLife),
        secondForecasts({secondOf(WeatherProviderOption::openMeteo, openMeteo),
                         secondOf(WeatherProviderOption::yrNo, yrNo)},
                        history, secondCache, clock),
        feedOptions{contactOf(configuration),
                    options.cacheDirectory,
                    options.dataDirectory,
                    options.wording.texts,
                    options.wording.language,
                    options.chosenSource,
                    settings.text(kAdvisorySourceSetting),
                    secretsOf(options)} {
    providers.setPreferredProvider(options.preferredProvider);
    ServiceAddress const model = services.address(Service::languageModel);
    if (model.baseUrl.empty()) return;
    languageModel.emplace(
        http, ChatLanguageModel::Options{model.baseUrl, settings.text("languageModelName"), model.apiKey});
  }

  Clock const& clock;
  Configuration configuration;
  ServiceDirectory services;
  LazyHttpClient network;
  KeyedHttpClient keyed;
  std::unique_ptr<HttpClient> decorated;
  BudgetedHttpClient budgeted;
  HttpClient& http;
  AppleWeatherClient appleWeather;
  OpenMeteoClient openMeteo;
  YrNoClient yrNo;
  WttrAPIClient wttr;
  WeatherCache cache;
  ProviderHistory history;
  WeatherProviderManager providers;
  ForecastService forecasts;
  WeatherCache secondCache;
  SecondForecasts secondForecasts;
  FeedServices::Options feedOptions;
  std::once_flag feedsAsked;
  std::optional<FeedServices> feeds;
  std::optional<ChatLanguageModel> languageModel;
};

Composition::Composition(Settings const& settings, Clock const& clock, Options const& options)
    : parts_(std::make_unique<Parts>(settings, clock, options)) {}

Composition::~Composition() = default;

HttpClient& Composition::http() {
  return parts_->http;
}

ServiceDirectory const& Composition::services() const {
  return parts_->services;
}

WeatherCache& Composition::cache() {
  return parts_->cache;
}

ProviderHistory& Composition::history() {
  return parts_->history;
}

WeatherProviderManager& Composition::providers() {
  return parts_->providers;
}

ForecastService& Composition::forecasts() {
  return parts_->forecasts;
}

SecondForecasts& Composition::secondForecasts() {
  return parts_->secondForecasts;
}

bool Composition::isAppleWeatherConfigured() const {
  return parts_->appleWeather.isConfigured();
}

FeedServices& Composition::feeds() {
  std::call_once(parts_->feedsAsked, [this] {
    parts_->feeds.emplace(parts_->http, parts_->clock, parts_->services, parts_->feedOptions);
  });
  return *parts_->feeds;
}

LanguageModel* Composition::languageModel() {
  return parts_->languageModel ? &*parts_->languageModel : nullptr;
}

InUse<ForecastService> forecastsOf(InUse<Composition> const& services) {
  return [services] {
    auto const all = services();
    return std::shared_ptr<ForecastService>(all, &all->forecasts());
  };
}

InUse<FeedServices> feedsOf(InUse<Composition> const& services) {
  return [services] {
    auto const all = services();
    return std::shared_ptr<FeedServices>(all, &all->feeds());
  };
}

}  // namespace nimbara
