// The National Weather Service as a source of official warnings.
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/alerts/routing/us_waters.h"
#include "feeds/nws/nws_territory.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

namespace nimbara {

namespace {

/// A person watches a few places.
constexpr std::size_t kMostPlaces = 64;

/// The National Weather Service as the issuer of a place's warnings.
class NwsSource {
 public:
  NwsSource(NWSAlertService& land, NWSAlertService* waters, Clock const& clock)
      : land_(land), waters_(waters), clock_(clock) {}

  Result<GovSourceAnswer, GovSourceFailure> fetch(GovAlertPlace const& asked, EventMemory& memory,
                                                  std::stop_token const& stop) {
    Coordinate const place = asked.coordinate;
    auto answer = land_.fetchAlerts(place.latitude, place.longitude, stop);
    // How far its waters reach is an estimate; the service knows.
    bool const isBeyond = answer.isOutside && asked.countryCode.empty();
    if (isBeyond) return GovSourceAnswer{.isBlind = true};
    auto failure = answer.ok ? addWaters(answer.alerts, place, stop) : answer.failure;
    auto found = events(answer.ok ? answer.alerts : answer.readable.value_or(answer.alerts), memory);
    if (!failure) return found;
    return std::unexpected(
        GovSourceFailure{std::move(*failure), std::move(found.alerts), {}, std::move(found.calledOff)});
  }

 private:
  /// What went wrong, if anything did.
  std::optional<ServiceFailure> addWaters(std::vector<NWSAlert>& messages, Coordinate place,
                                          std::stop_token const& stop) {
    auto const point = waters_ == nullptr ? std::nullopt : waterPoint(place);
    if (!point) return {};
    auto answer = waters_->fetchAlerts(point->latitude, point->longitude, stop);
    std::set<std::string_view> known;
    for (NWSAlert const& message : messages) known.insert(message.id);
    std::vector<NWSAlert> added;
    for (NWSAlert const& message : answer.readable.value_or(answer.alerts)) {
      // The point may after all be on land, and that another district's.
      bool const isMarine = std::ranges::any_of(message.zones, isMarineZone);
      if (isMarine && !known.contains(message.id)) added.push_back(message);
    }
    std::ranges::move(added, std::back_inserter(messages));
    if (answer.ok || answer.isOutside) return std::nullopt;
    answer.failure->isOfWaters = true;
    return std::move(answer.failure);
  }

  std::optional<Coordinate> waterPoint(Coordinate place) {
    std::lock_guard const lock(mutex_);
    if (points_.size() >= kMostPlaces) points_.clear();
    auto const [entry, isNew] = points_.try_emplace(formatCoordinate(place));
    if (isNew) entry->second = usWatersOff(place);
    return entry->second;
  }

  GovSourceAnswer events(std::vector<NWSAlert> const& messages, EventMemory& memory) {
    GovSourceAnswer found;
    Instant const now = clock_.now();
    memory.update(now, [&](KnownEvents& known) {
      found.alerts = liveEvents(messages, now, known);
      found.calledOff = calledOffEvents(messages, found.alerts, now, known);
    });
    return found;
  }

  NWSAlertService& land_;
  NWSAlertService* waters_;
  Clock const& clock_;
  std::mutex mutex_;  // guards the one below
  std::map<std::string, std::optional<Coordinate>> points_;
};

}  // namespace

GovAlertSource nwsAlertSource(NWSAlertService& service, Clock const& clock, NWSAlertService* waters) {
  auto const source = std::make_shared<NwsSource>(service, waters, clock);
  return {"nws",
          [](GovAlertPlace const& place) { return isNwsTerritory(place.countryCode, place.coordinate); },
          [source](GovAlertPlace const& place, EventMemory& memory, std::stop_token const& stop) {
            return source->fetch(place, memory, stop);
          },
          true};
}

}  // namespace nimbara
