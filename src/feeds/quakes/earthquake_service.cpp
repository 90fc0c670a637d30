#include "feeds/quakes/earthquake_service.h"

#include "base/files/file.h"
#include "feeds/fetching/feed_exchange.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestFile = std::size_t{8} << 20;

}  // namespace

EarthquakeService::EarthquakeService(FeedSource& source, Clock const& clock, Options options)
    : source_(source), clock_(clock), options_(std::move(options)) {}

std::vector<EarthquakeEvent> EarthquakeService::fetchEarthquakes(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  loadOnce();
  bool const fresh =
      lastFetchDate_ && isYounger(*lastFetchDate_, kTTL, clock_.now()) && !cachedEvents_.empty();
  if (!fresh) problem_ = renew(stop).value_or("");
  return cachedEvents_;
}

std::string EarthquakeService::problem() const {
  std::lock_guard const turn(turn_);
  return problem_;
}

std::optional<Instant> EarthquakeService::checkedAt() const {
  std::lock_guard const turn(turn_);
  return lastFetchDate_;
}

/// Gives what went wrong; then everything is as it was.
std::optional<std::string> EarthquakeService::renew(std::stop_token const& stop) {
  auto const answer = source_.get({}, stop);
  if (!answer) return answer.error();
  auto events = parseEarthquakes(answer->body);
  if (!events) return "the response is not a valid list of earthquakes (" + events.error().text() + ")";
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
  if (std::exchange(loaded_, true) || options_.cacheDirectory.empty()) return;
  std::error_code ignored;
  if (!options_.isStandIn && std::filesystem::exists(standInMark(), ignored)) return;
  auto const content = readFile(file(), kLargestFile);
  if (!content) return;
  auto events = decodeJson<std::vector<EarthquakeEvent>>(*content);
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
