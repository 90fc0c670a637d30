#include "feeds/storms/tropical_storm_service.h"

#include "feeds/fetching/feed_exchange.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::chrono::seconds kMapTimeout{10};
constexpr std::chrono::seconds kTrackPause{600};
constexpr std::size_t kLargestStormList = std::size_t{4} << 20;
constexpr double kFarthestBeginKm = 500;
constexpr std::string_view kMapPath = "/tropical/rest/services/tropical/NHC_tropical_weather/MapServer";

FeedQuestion listQuestion(std::string const& baseUrl) {
  constexpr std::chrono::seconds kTimeout{15};
  FeedQuestion question;
  question.request.url = baseUrl + "/CurrentStorms.json";
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestStormList;
  question.expected = "list of storms";
  question.life = TropicalStormService::kLife;
  return question;
}

std::string trackPath(int layer) {
  return "/" + std::to_string(layer) + "/query?where=1%3D1&outFields=*&f=geojson";
}

/// The maps follow the list by some minutes, and another storm may have had the same place on them before.
bool beginsAt(std::vector<TropicalTrackPoint> const& track, Coordinate place) {
  return !track.empty() && haversineKm(track.front().coordinate, place) <= kFarthestBeginKm;
}

}  // namespace

TropicalStormService::TropicalStormService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

FeedReading<std::vector<TropicalStorm>> TropicalStormService::fetchStorms(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  auto reading = list_.read(http_, clock_, listQuestion(options_.baseUrl), parseTropicalStorms, stop);
  if (reading.isCurrent()) renewTracks(reading.data, stop);
  for (TropicalStorm& storm : reading.data) {
    if (hasTrackOf(storm)) storm.track = tracks_[storm.id].points;
  }
  return reading;
}

/// Only of storms with a report of a known time: without it a point's time cannot be told.
bool TropicalStormService::hasTrackOf(TropicalStorm const& storm) const {
  auto const kept = tracks_.find(storm.id);
  return kept != tracks_.end() && storm.lastUpdate && kept->second.lastUpdate == *storm.lastUpdate;
}

void TropicalStormService::renewTracks(std::vector<TropicalStorm> const& storms,
                                       std::stop_token const& stop) {
  forgetOldTracks(storms);
  auto const isWanted = [this](TropicalStorm const& storm) {
    return storm.lastUpdate && !storm.bin.empty() && !hasTrackOf(storm);
  };
  bool const isTooSoon = tracksTriedAt_ && isYounger(*tracksTriedAt_, kTrackPause, clock_.now());
  if (isTooSoon || std::ranges::none_of(storms, isWanted)) return;
  tracksTriedAt_ = clock_.now();
  auto const mapLayers = layers(stop);
  for (TropicalStorm const& storm : storms) {
    auto const layer = isWanted(storm) ? trackLayerOf(storm.bin, mapLayers) : std::nullopt;
    if (!layer) continue;
    auto const body = mapAnswer(trackPath(*layer), stop);
    // A service that has stopped to answer would cost its whole time limit for each storm.
    if (!body) return;
    auto track = parseTropicalTrack(*body, *storm.lastUpdate);
    if (track && beginsAt(*track, storm.coordinate)) {
      tracks_[storm.id] = {*storm.lastUpdate, std::move(*track)};
    }
  }
}

void TropicalStormService::forgetOldTracks(std::vector<TropicalStorm> const& storms) {
  std::erase_if(tracks_, [&](auto const& kept) {
    return std::ranges::find(storms, kept.first, &TropicalStorm::id) == storms.end();
  });
}

std::vector<MapLayer> TropicalStormService::layers(std::stop_token const& stop) const {
  auto const body = mapAnswer("?f=json", stop);
  if (!body) return {};
  return parseMapLayers(*body).value_or(std::vector<MapLayer>());
}

std::optional<std::string> TropicalStormService::mapAnswer(std::string const& path,
                                                           std::stop_token const& stop) const {
  HttpRequest request;
  request.url = options_.mapBaseUrl + std::string(kMapPath) + path;
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kMapTimeout;
  request.maxBodyBytes = kLargestStormList;
  auto answer = exchange(http_, std::move(request), {}, stop);
  if (!answer || !*answer) return std::nullopt;
  return std::move((*answer)->body);
}

}  // namespace nimbara
