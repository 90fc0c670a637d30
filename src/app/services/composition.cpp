#include "app/services/composition.h"

#include "app/places/place_search.h"
#include "app/settings/configuration.h"

namespace nimbara {

namespace {

AppleWeatherCredentials credentialsOf(Settings const& settings) {
  return {settings.text("appleWeatherKeyFile"), settings.text("appleWeatherKeyID"),
          settings.text("appleWeatherTeamID"), settings.text("appleWeatherServiceID")};
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

template <class Client>
ForecastProvider providerOf(Client& client, bool isConfigured = true) {
  return {[&client](double latitude, double longitude, std::stop_token const& stop) {
            return client.fetchForecast(latitude, longitude, stop);
          },
          isConfigured};
}

}  // namespace

Composition::Composition(Settings const& settings, Clock const& clock, Options const& options)
    : configuration_(configurationOf(settings)),
      services_(configuration_, options.servicesBase),
      network_(options.program, userAgent(configuration_)),
      decorated_(options.aroundNetwork ? options.aroundNetwork(network_) : nullptr),
      http_(decorated_ ? decorated_.get() : &network_),
      appleWeather_(*http_, clock, services_.address(Service::appleWeather), offlineTimeZone,
                    credentialsOf(settings)),
      openMeteo_(*http_, clock, services_.address(Service::openMeteo)),
      yrNo_(*http_, clock, services_.address(Service::yrNo), offlineTimeZone,
            below(options.cacheDirectory, options.servicesBase.empty() ? "yrNo" : "yrNo.stand-in")),
      wttr_(*http_, clock, services_.address(Service::wttrIn), offlineTimeZone),
      cache_(options.cacheDirectory, clock, sourceOf(options.servicesBase)),
      history_(below(options.cacheDirectory, historyFile(options.servicesBase))),
      providers_(clients(), history_, clock),
      forecasts_(providers_, cache_, clock, options.wording),
      feeds_(*http_, clock, services_,
             {contactOf(configuration_), options.cacheDirectory, options.dataDirectory, options.wording.texts,
              options.wording.language}) {
  providers_.setPreferredProvider(options.preferredProvider);
  ServiceAddress const model = services_.address(Service::languageModel);
  if (model.baseUrl.empty()) return;
  languageModel_.emplace(
      *http_, ChatLanguageModel::Options{model.baseUrl, settings.text("languageModelName"), model.apiKey});
}

WeatherProviderManager::Providers Composition::clients() {
  return {providerOf(appleWeather_, appleWeather_.isConfigured()), providerOf(openMeteo_), providerOf(yrNo_),
          providerOf(wttr_)};
}

}  // namespace nimbara
