#include "app/services/official_services.h"

#include "app/settings/service_directory.h"
#include "base/words/texts.h"
#include "feeds/alerts/official_sources.h"
#include "feeds/alerts/warning_route.h"
#include "feeds/meteoalarm/meteo_alarm_source.h"
#include "feeds/regions/regions.h"

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
      alerts_(clock, sources(clock), directoryOf(services, options),
              {warningRoute, possibleSources, options.chosenSource}) {}

std::vector<GovAlertSource> OfficialServices::sources(Clock const& clock) {
  return {nwsAlertSource(nws_, clock, &nwsWaters_), meteoAlarmSource(meteoAlarm_)};
}

}  // namespace nimbara
