#include "feeds/imagery/radar/radar_service.h"

#include "feeds/fetching/feed_exchange.h"

#include <cmath>

namespace nimbara {

namespace {

using Kind = ServiceFailure::Kind;

constexpr std::size_t kLargestList = std::size_t{8} << 20;

ServiceFailure unreadable(DecodeError const& error) {
  return ServiceFailure::of(Kind::unreadable,
                            "the response is not a valid list of radar pictures (" + error.text() + ")");
}

/// No connection says nothing about the supplier.
bool isOfNetwork(ServiceFailure const& failure) {
  return failure.kind == Kind::network && (failure.transport == HttpError::Kind::unresolvedHost ||
                                           failure.transport == HttpError::Kind::connectionFailed);
}

/// Of half a degree, within which coverage is taken for the same.
std::pair<int, int> cellOf(Coordinate place) {
  return {static_cast<int>(std::floor(place.latitude * 2)),
          static_cast<int>(std::floor(place.longitude * 2))};
}

}  // namespace

RadarService::RadarService(ImageryRequests& requests, Clock const& clock, Bases bases)
    : requests_(requests), clock_(clock), bases_(std::move(bases)) {}

RadarReading RadarService::frames(Coordinate centre, std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  auto sources = radarSourcesAt(centre);
  std::erase_if(sources, [&](RadarSource source) { return isUncovered(source, centre); });
  return firstOf(sources, stop);
}

RadarReading RadarService::frames(MapView const& view, std::set<RadarSource> const& without,
                                  std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  auto sources = radarSourcesFor(view);
  std::erase_if(sources, [&](RadarSource source) { return without.contains(source); });
  return firstOf(sources, stop);
}

RadarReading RadarService::firstOf(std::vector<RadarSource> const& sources, std::stop_token const& stop) {
  RadarReading reading;
  for (RadarSource const source : sources) {
    if (stop.stop_requested()) break;
    RadarSupplier const& supplier = supplierOf(source);
    Kept const& kept = ask(supplier, stop);
    if (kept.failure) {
      reading.misses.push_back({source, *kept.failure});
      continue;
    }
    reading.state = RadarReading::State::current;
    reading.source = source;
    reading.frames = kept.list->frames;
    if (!supplier.coverage.empty()) reading.coverage = kept.list->host + std::string(supplier.coverage);
    reading.checkedAt = kept.checkedAt;
    return reading;
  }
  if (!reading.misses.empty()) reading.state = RadarReading::State::failed;
  return reading;
}

void RadarService::refuse(RadarSource source, ServiceFailure failure) {
  std::lock_guard const turn(turn_);
  pause(kept_[source], std::move(failure));
}

void RadarService::noteUncovered(RadarSource source, Coordinate place) {
  std::lock_guard const turn(turn_);
  uncovered_[{source, cellOf(place)}] = clock_.now();
}

/// A list, or a failure.
RadarService::Kept const& RadarService::ask(RadarSupplier const& supplier, std::stop_token const& stop) {
  Kept& kept = kept_[supplier.source];
  bool const isPaused = kept.pausedUntil && clock_.steadyNow() < *kept.pausedUntil;
  if (kept.failure && isPaused) return kept;
  if (!kept.failure && kept.list && isYounger(kept.checkedAt, kRest, clock_.now())) return kept;
  auto list = fetch(supplier, stop);
  if (!list) {
    pause(kept, std::move(list.error()));
    return kept;
  }
  kept = {std::move(*list), clock_.now(), {}, {}};
  return kept;
}

Result<FrameList, ServiceFailure> RadarService::fetch(RadarSupplier const& supplier,
                                                      std::stop_token const& stop) {
  ListContext const context{supplier, bases_[supplier.source], clock_.now()};
  if (supplier.list == TimeList::offsets) return framesByOffsets(context);
  auto const measured = requests_.get(context.base + std::string(supplier.listPath), kLargestList, stop);
  if (!measured) return std::unexpected(measured.error());
  std::string forecast;
  if (!supplier.forecastListPath.empty()) {
    auto const answer =
        requests_.get(context.base + std::string(supplier.forecastListPath), kLargestList, stop);
    if (answer) forecast = answer->body;
  }
  auto list = readFrameList(context, measured->body, forecast);
  if (!list) return std::unexpected(unreadable(list.error()));
  return std::move(*list);
}

void RadarService::pause(Kept& kept, ServiceFailure failure) {
  auto const rest = isOfNetwork(failure) ? kRestWithoutNetwork : kRestAfterFailure;
  // A question that was ended, or a host that had its requests, may be asked as soon as it can be.
  bool const isOwn = failure.kind == Kind::noAnswer || failure.kind == Kind::leftAlone ||
                     failure.transport == HttpError::Kind::cancelled;
  kept.pausedUntil = isOwn ? std::nullopt : std::optional(clock_.steadyNow() + rest);
  kept.failure = std::move(failure);
}

bool RadarService::isUncovered(RadarSource source, Coordinate place) {
  auto const noted = uncovered_.find({source, cellOf(place)});
  return noted != uncovered_.end() && isYounger(noted->second, kCoverageLife, clock_.now());
}

}  // namespace nimbara
