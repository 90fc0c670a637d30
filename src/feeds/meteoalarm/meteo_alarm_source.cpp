#include "feeds/meteoalarm/meteo_alarm_source.h"

#include "feeds/regions/meteo_alarm_countries.h"

namespace nimbara {

GovAlertSource meteoAlarmSource(MeteoAlarmService& service) {
  auto const covers = [](GovAlertPlace const& place) {
    return meteoAlarmFeedName(isoCountryCode(place.countryCode)).has_value();
  };
  auto const fetch = [&service](GovAlertPlace const& place, EventMemory&,
                                std::stop_token const& stop) -> Result<GovSourceAnswer, GovSourceFailure> {
    MeteoAlarmAnswer answer = service.fetch(place.coordinate, place.countryCode, place.regions, stop);
    if (answer.failure)
      return std::unexpected(
          GovSourceFailure{*answer.failure, std::move(answer.alerts), std::move(answer.unplaced)});
    return GovSourceAnswer{std::move(answer.alerts), std::move(answer.unplaced)};
  };
  return {"meteoalarm", covers, fetch};
}

}  // namespace nimbara
