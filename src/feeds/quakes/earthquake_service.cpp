#include "feeds/quakes/earthquake_service.h"

#include "feeds/fetching/feed_exchange.h"
#include "feeds/fetching/kept_record.h"

namespace nimbara {

namespace {

ServiceFailure unreadableList(DecodeError const& error) {
  return ServiceFailure::of(ServiceFailure::Kind::unreadable,
                            "the response is not a valid list of earthquakes (" + error.text() + ")");
}

}  // namespace

EarthquakeService::EarthquakeService(FeedSource& source, Clock const& clock, Options options)
    : source_(source), clock_(clock), options_(std::move(options)) {}

FeedReading<std::vector<EarthquakeEvent>> EarthquakeService::fetchEarthquakes(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  loadOnce();
  bool const fresh =
      lastFetchDate_ && isYounger(*lastFetchDate_, kTTL, clock_.now()) && !cachedEvents_.empty();
  auto failure = fresh ? std::nullopt : renew(stop);
  failedSince_ = failure ? std::optional(failedSince_.value_or(clock_.now())) : std::nullopt;
  return {failure ? FeedState::failed : FeedState::current, cachedEvents_, lastFetchDate_, failedSince_,
          std::move(failure)};
}

/// Gives what went wrong; then everything is as it was.
std::optional<ServiceFailure> EarthquakeService::renew(std::stop_token const& stop) {
  auto const answer = source_.get({}, stop);
  if (!answer) return answer.error();
  auto events = parseEarthquakes(answer->body);
  if (!events) return unreadableList(events.error());
  lastFetchDate_ = answer->fetchedAt;
  cachedEvents_ = recentEarthquakes(std::move(*events), clock_.now());
  save();
  return std::nullopt;
}

std::filesystem::path EarthquakeService::file() const {
  return options_.cacheDirectory / "earthquakes.json";
}

std::filesystem::path EarthquakeService::standInMark() const {
  return options_.cacheDirectory / "earthquakes.stand-in";
}

void EarthquakeService::loadOnce() {
  constexpr std::size_t kLargestFile = std::size_t{8} << 20;
  if (std::exchange(loaded_, true) || options_.cacheDirectory.empty()) return;
  std::error_code ignored;
  if (!options_.isStandIn && std::filesystem::exists(standInMark(), ignored)) return;
  auto events = keptRecord<std::vector<EarthquakeEvent>>(file(), kLargestFile);
  if (events) cachedEvents_ = recentEarthquakes(std::move(*events), clock_.now());
}

/// A disk that cannot be written to costs no more than the list after a restart.
void EarthquakeService::save() const {
  if (options_.cacheDirectory.empty()) return;
  // The mark stands before a stand-in's list does and goes after it has gone, so none is ever mistaken.
  if (options_.isStandIn && !writeFileAtomically(standInMark(), "")) return;
  bool const written = writeFileAtomically(file(), encodeJson(cachedEvents_)).has_value();
  std::error_code ignored;
  if (written && !options_.isStandIn) std::filesystem::remove(standInMark(), ignored);
}

}  // namespace nimbara
