#include "app/engine/engine_globe.h"

#include "feeds/fetching/feed_exchange.h"
#include "feeds/quakes/earthquake_service.h"

#include <algorithm>

namespace nimbara {

namespace {

GlobeCatalogue catalogueOf(SatelliteLayer const& layer) {
  GlobeCatalogue catalogue;
  catalogue.groups = layer.indicesByGroup();
  catalogue.names.reserve(layer.entries().size());
  for (SatelliteCatalog::Entry const& entry : layer.entries()) {
    if (entry.isNamed) catalogue.named.push_back(static_cast<std::uint32_t>(catalogue.names.size()));
    catalogue.names.push_back(entry.name);
  }
  return catalogue;
}

GlobeGroup::State stateOf(SatelliteGroupLoad const& load) {
  bool const isStale = load.source == SatelliteGroupLoad::Source::staleFile;
  return isStale ? GlobeGroup::State::stale : GlobeGroup::State::fresh;
}

std::string_view groupKeyOf(GlobeCatalogue const& catalogue, std::uint32_t entry) {
  for (auto const& group : catalogue.groups) {
    if (std::ranges::binary_search(group.indices, entry))
      return SatelliteCatalog::group(group.groupID)->display;
  }
  return {};
}

}  // namespace

EngineGlobe::EngineGlobe(Parts parts, std::string_view hiddenSetting) : parts_(std::move(parts)) {
  state_.hidden = hiddenRows(hiddenSetting);
  for (SatelliteCatalog::Group const& group : SatelliteCatalog::groups()) {
    state_.groups.push_back({group, GlobeGroup::State::waiting, 0, {}, {}});
  }
}

void EngineGlobe::setShown(bool isShown) {
  std::lock_guard const lock(mutex_);
  isShown_ = isShown;
  if (isShown && !layer_) layer_.emplace().activate();
  if (!layer_) return;
  layer_->propagationPaused = !isShown;
  if (isShown) askForMore(parts_.clock.now());
}

bool EngineGlobe::isLoadDue(Instant now) const {
  if (!loaded_) return true;
  bool const areFresh = std::ranges::all_of(state_.groups, [now](GlobeGroup const& group) {
    return group.state == GlobeGroup::State::fresh && isYounger(group.fetched, SatelliteFeed::kFreshFor, now);
  });
  return !areFresh && !isYounger(*loaded_, kRetry, now);
}

void EngineGlobe::askForMore(Instant now) {
  if (!state_.isLoading && isLoadDue(now)) {
    state_.isLoading = layer_->isLoading = true;
    parts_.work.run([this](std::stop_token const& stop) { loadGroups(stop); });
  }
  if (!areEarthquakesAsked_ &&
      (!earthquakesLoaded_ || !isYounger(*earthquakesLoaded_, kEarthquakesAfter, now))) {
    areEarthquakesAsked_ = true;
    parts_.work.run([this](std::stop_token const& stop) { loadEarthquakes(stop); });
  }
}

void EngineGlobe::loadGroups(std::stop_token const& stop) {
  auto const groups = SatelliteCatalog::groups();
  for (std::size_t i = 0; i < groups.size(); ++i) {
    auto loaded = parts_.feed.load(groups[i], stop);
    if (stop.stop_requested()) return;
    take(i, std::move(loaded));
    parts_.onChange();
  }
  {
    std::lock_guard const lock(mutex_);
    showLoaded(true);
    state_.isLoading = layer_->isLoading = false;
    isFirstLoad_ = false;
    loaded_ = parts_.clock.now();
  }
  parts_.onChange();
}

void EngineGlobe::take(std::size_t group, Result<SatelliteGroupLoad, ServiceFailure> loaded) {
  std::lock_guard const lock(mutex_);
  GlobeGroup& shown = state_.groups[group];
  if (!loaded) {
    shown = {shown.group, GlobeGroup::State::failed, 0, {}, loaded.error()};
    return;
  }
  shown = {shown.group, stateOf(*loaded), loaded->parsed.entries.size(), loaded->fetched, loaded->failure};
  loads_.push_back(std::move(*loaded));
  // Later loads replace what is shown at one stroke.
  if (isFirstLoad_) showLoaded(false);
}

void EngineGlobe::showLoaded(bool isLast) {
  layer_->show(isLast ? std::exchange(loads_, {}) : loads_);
  state_.catalogue = std::make_shared<GlobeCatalogue const>(catalogueOf(*layer_));
  Instant const now = parts_.clock.now();
  layer_->propagateNow(now);
  state_.frame = std::make_shared<SatelliteLayer::Frame const>(layer_->frame());
  chooseAgain(now);
}

void EngineGlobe::loadEarthquakes(std::stop_token const& stop) {
  auto quakes = parts_.earthquakes()->fetchEarthquakes(stop);
  if (stop.stop_requested()) return;
  {
    std::lock_guard const lock(mutex_);
    state_.earthquakes = std::make_shared<std::vector<EarthquakeEvent> const>(std::move(quakes.data));
    state_.earthquakeFailure = std::move(quakes.failure);
    state_.hasEarthquakes = true;
    earthquakesLoaded_ = parts_.clock.now();
    areEarthquakesAsked_ = false;
  }
  parts_.onChange();
}

std::shared_ptr<GlobeState const> EngineGlobe::tick() {
  std::unique_lock const lock(mutex_, std::try_to_lock);
  if (!lock) return nullptr;
  Instant const now = parts_.clock.now();
  if (layer_ && isShown_) {
    if (layer_->takeResult()) state_.frame = std::make_shared<SatelliteLayer::Frame const>(layer_->frame());
    layer_->tick(now);
    askForMore(now);
    if (state_.chosen) {
      auto const info = layer_->info(state_.chosen->entry, now);
      if (info) state_.chosen->info = *info;
    }
  }
  return stateNow();
}

std::shared_ptr<GlobeState const> EngineGlobe::state() const {
  std::lock_guard const lock(mutex_);
  return stateNow();
}

std::shared_ptr<GlobeState const> EngineGlobe::stateNow() const {
  auto state = std::make_shared<GlobeState>(state_);
  state->now = parts_.clock.now();
  SGP4::Moment const moment = SGP4::momentOf(state->now);
  state->sun = EarthRotation::at(moment).toEarthFixed(sunDirection(moment));
  return state;
}

void EngineGlobe::choose(std::optional<std::uint32_t> entry) {
  std::lock_guard const lock(mutex_);
  if (!layer_) return;
  bool const isKnown = entry && *entry < layer_->entries().size();
  chosenNumber_ = isKnown ? std::optional(layer_->entries()[*entry].satrec.tle.satnum) : std::nullopt;
  chooseAgain(parts_.clock.now());
}

/// Entries are numbered again by each load, so the chosen one is looked up by its number in the catalogue.
void EngineGlobe::chooseAgain(Instant now) {
  state_.chosen.reset();
  layer_->hideOrbit();
  if (!chosenNumber_) return;
  auto const& entries = layer_->entries();
  auto const found = std::ranges::find(
      entries, *chosenNumber_, [](SatelliteCatalog::Entry const& each) { return each.satrec.tle.satnum; });
  if (found == entries.end()) return;
  auto const entry = static_cast<std::uint32_t>(found - entries.begin());
  auto const info = layer_->info(entry, now);
  if (!info) return;  // decayed
  layer_->showOrbit(entry, now);
  state_.chosen = ChosenSatellite{entry, groupKeyOf(*state_.catalogue, entry), *info, layer_->orbit()};
}

void EngineGlobe::setHidden(std::string_view row, bool isHidden) {
  std::string setting;
  {
    std::lock_guard const lock(mutex_);
    if (isHidden) {
      state_.hidden.emplace(row);
    } else if (auto const found = state_.hidden.find(row); found != state_.hidden.end()) {
      state_.hidden.erase(found);
    }
    setting = hiddenSetting(state_.hidden);
  }
  parts_.saveHidden(std::move(setting));
}

}  // namespace nimbara
