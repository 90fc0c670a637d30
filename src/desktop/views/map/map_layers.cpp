#include "desktop/views/map/map_layers.h"

#include "app/words/hazards/hazard_text.h"
#include "app/words/hazards/storm_text.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

HazardWords wordsAt(Coordinate place, ViewContext const& context) {
  Calendar const calendar = Calendar::forZone(std::string(timeZoneAt(place))).value_or(context.fallback);
  return {context.texts, context.units, calendar, context.now};
}

void addPoint(MapTrack& track, Coordinate at, std::optional<double> galesKm) {
  if (!isValid(at)) return;
  track.points.push_back(at);
  track.galesKm.push_back(galesKm.value_or(0));
}

/// Of the forecast, what was to come when it was made.
MapTrack trackOf(TropicalStorm const& storm) {
  MapTrack track;
  for (TropicalTrackPoint const& point : storm.past) {
    if (!storm.lastUpdate || point.time < *storm.lastUpdate)
      addPoint(track, point.coordinate, point.galeRadiusKm);
  }
  addPoint(track, storm.coordinate, storm.galeRadiusKm);
  track.firstForecast = track.points.size();
  for (TropicalTrackPoint const& point : storm.track) {
    if (!storm.lastUpdate || point.time > *storm.lastUpdate)
      addPoint(track, point.coordinate, point.galeRadiusKm);
  }
  track.category = static_cast<int>(storm.category);
  track.label = storm.name.empty() ? storm.id : storm.name;
  return track;
}

/// A hot spot of a few megawatts is a small fire, one of several hundred a very large one.
double fireStrength(double megawatts) {
  return std::clamp(std::log10(std::max(1.0, megawatts)) / 3, 0.0, 1.0);
}

}  // namespace

std::uint32_t stormColour(int category) {
  constexpr std::array<std::uint32_t, 7> kColours{0x4f9bd9, 0x2aa876, 0xe0b020, 0xe88a1a,
                                                  0xe0531f, 0xc9213a, 0x9c1f8c};
  return kColours[static_cast<std::size_t>(std::clamp(category, 0, int(kColours.size()) - 1))];
}

std::vector<MapTrack> mapTracks(SupplementState const& state, ViewContext const& context) {
  HazardWords const words = wordsAt(state.place.coordinate, context);
  std::vector<MapTrack> tracks;
  for (TropicalStorm const& storm : state.activeStorms.data.storms) {
    if (!isValid(storm.coordinate)) continue;
    MapTrack& track = tracks.emplace_back(trackOf(storm));
    HazardLine line = stormLine(storm, state.place.coordinate, words);
    track.title = std::move(line.title);
    track.note = std::move(line.detail);
  }
  std::ranges::stable_sort(tracks, {}, &MapTrack::category);
  return tracks;
}

std::vector<MapMark> mapMarks(SupplementState const& state, ViewContext const& context) {
  Coordinate const place = state.place.coordinate;
  HazardWords const words = wordsAt(place, context);
  std::vector<MapMark> marks;
  marks.reserve(state.activeFires.data.size() + state.lightning.data.size());
  for (FireDetection const& fire : state.activeFires.data) {
    HazardLine line = fireLine(fire, place, words);
    marks.push_back({fire.coordinate, MapMarkKind::fire, fireStrength(fire.frp), std::move(line.title),
                     std::move(line.detail)});
  }
  for (LightningStrike const& strike : state.lightning.data) {
    HazardLine line = strikeLine(strike, place, words);
    double const age = std::chrono::duration<double>(context.now - strike.time) / SupplementState::kStrikesOf;
    marks.push_back({strike.coordinate, MapMarkKind::lightning, std::clamp(1 - age, 0.0, 1.0),
                     std::move(line.title), std::move(line.detail)});
  }
  std::erase_if(marks, [](MapMark const& mark) { return !isValid(mark.at); });
  std::ranges::stable_sort(marks, {},
                           [](MapMark const& mark) { return std::pair(mark.kind, mark.strength); });
  return marks;
}

std::string layerNote(MapLayerKind layer, SupplementState const& state, ViewContext const& context) {
  HazardWords const words = wordsAt(state.place.coordinate, context);
  if (layer == MapLayerKind::storms && state.activeStorms.isSettled()) {
    std::size_t const count = state.activeStorms.data.storms.size();
    return stormStateText(hazardCheck(state.activeStorms, count > 0), count, words);
  }
  if (layer == MapLayerKind::fires && state.activeFires.isSettled()) {
    std::size_t const count = state.activeFires.data.size();
    return fireStateText(hazardCheck(state.activeFires, count > 0), count, SupplementState::kFireRadiusKm,
                         words);
  }
  if (layer == MapLayerKind::lightning && state.lightning.isSettled()) {
    std::size_t const count = state.lightning.data.size();
    return lightningStateText(hazardCheck(state.lightning, count > 0), count,
                              SupplementState::kLightningRadiusKm, words);
  }
  return {};
}

}  // namespace nimbara
