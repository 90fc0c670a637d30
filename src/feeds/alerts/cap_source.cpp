#include "feeds/alerts/cap_source.h"

#include "feeds/alerts/events/cap_events.h"

namespace nimbara {

GovAlertSource capAlertSource(std::string name,
                              std::function<CapListing(GovAlertPlace const&, std::stop_token const&)> list,
                              Clock const& clock, std::string language) {
  auto const fetch = [name, list = std::move(list), &clock, language = std::move(language)](
                         GovAlertPlace const& place, EventMemory& memory,
                         std::stop_token const& stop) -> Result<GovSourceAnswer, GovSourceFailure> {
    CapListing listing = list(place, stop);
    Instant const now = clock.now();
    GovSourceAnswer answer;
    memory.update(now, [&](KnownEvents& known) {
      answer = capEvents(listing.messages, {name, place.coordinate, place.countryCode, language, now}, known);
    });
    if (listing.failure) {
      return std::unexpected(GovSourceFailure{std::move(*listing.failure), std::move(answer.alerts),
                                              std::move(answer.unplaced), std::move(answer.calledOff)});
    }
    answer.isBlind = listing.isBlind;
    return answer;
  };
  return {std::move(name), [](GovAlertPlace const&) { return true; }, fetch, true};
}

}  // namespace nimbara
