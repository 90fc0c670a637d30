#include "app/services/official_services.h"

#include "app/settings/service_directory.h"
#include "base/words/texts.h"
#include "feeds/alerts/cap_source.h"
#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/routing/warning_route.h"
#include "feeds/meteoalarm/meteo_alarm_source.h"
#include "feeds/regions/regions.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Below the cache's folder, apart from that where a stand-in makes the warnings up: those must never be
/// taken for official ones. Empty where nothing is kept.
std::filesystem::path directoryOf(ServiceDirectory const& services, FeedServices::Options const& options,
                                  char const* name = "") {
  if (options.cacheDirectory.empty()) return {};
  auto const directory =
      services.standIn().empty() ? options.cacheDirectory : options.cacheDirectory / "stand-in";
  return *name == '\0' ? directory : directory / name;
}

MeteoAlarmService::Options meteoAlarmOptions(ServiceDirectory const& services,
                                             FeedServices::Options const& options) {
  return {services.address(Service::meteoAlarm).baseUrl, directoryOf(services, options, "WarningDocuments"),
          options.language, directoryOf(services, options, "WarningFeeds")};
}

std::string languageOf(FeedServices::Options const& options) {
  return options.language.empty() ? std::string(options.texts->language()) : options.language;
}

/// With the name and the rest of the row of `service`.
template <class Client>
GovAlertSource capSource(Service service, Client& client, Clock const& clock, std::string const& language) {
  OfficialSource const& row = *std::ranges::find(officialSources(), service, &OfficialSource::row);
  auto const list = [&client](GovAlertPlace const& place, std::stop_token const& stop) {
    return client.fetch(place.coordinate, place.countryCode, stop);
  };
  GovAlertSource source = capAlertSource(std::string(row.name), list, clock, language);
  source.rest = row.rest;
  return source;
}

}  // namespace

OfficialServices::OfficialServices(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                                   FeedServices::Options const& options, Regions const& regions)
    : nws_(http, clock, {services.address(Service::nws).baseUrl, options.contact}),
      nwsWaters_(http, clock, {services.address(Service::nws).baseUrl, options.contact}),
      meteoAlarm_(
          http, clock, meteoAlarmOptions(services, options), *options.texts,
          [&regions](Coordinate place) { return regions.at(place); },
          [this, &regions](std::string_view country, RawEntry const& entry) {
            return knownAreas_.has(country, entry, regions.outlines().get());
          }),
      wmoDocuments_(http, clock, directoryOf(services, options, "WarningDocuments")),
      fpasDocuments_(http, clock, directoryOf(services, options, "WarningDocuments")),
      wmo_(http, clock, wmoDocuments_,
           {services.address(Service::wmoWarnings).baseUrl, directoryOf(services, options, "WarningLists")}),
      fpas_(http, clock, fpasDocuments_,
            {services.address(Service::fpas).baseUrl, directoryOf(services, options, "WarningLists")}),
      eccc_(http, clock, services.address(Service::eccc).baseUrl),
      metAlerts_(http, clock, {services.address(Service::metAlerts).baseUrl, languageOf(options)}),
      brightSky_(http, services.address(Service::brightSky).baseUrl),
      alerts_(clock, sources(clock, languageOf(options)), directoryOf(services, options),
              {warningRoute, possibleSources, options.chosenSource}) {}

std::vector<GovAlertSource> OfficialServices::sources(Clock const& clock, std::string const& language) {
  return {nwsAlertSource(nws_, clock, &nwsWaters_),
          meteoAlarmSource(meteoAlarm_),
          capSource(Service::eccc, eccc_, clock, language),
          capSource(Service::metAlerts, metAlerts_, clock, language),
          capSource(Service::wmoWarnings, wmo_, clock, language),
          capSource(Service::fpas, fpas_, clock, language),
          capSource(Service::brightSky, brightSky_, clock, language)};
}

}  // namespace nimbara
