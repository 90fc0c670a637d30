#include "globe/satellite_layer.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr std::size_t kCoordinates = 3;
constexpr std::size_t kChannels = 4;

SatelliteLayer::Environment computedEnvironment(Instant now) {
  return {sunDirection(SGP4::momentOf(now)), {}};
}

void resize(SatelliteLayer::Frame& frame, std::size_t entries) {
  frame.positions.assign(entries * kCoordinates, 0);
  frame.litFactors.assign(entries, 0);
  frame.colorData.assign(entries * kChannels, 0);
}

}  // namespace

SatelliteLayer::SatelliteLayer(EnvironmentProvider environmentProvider)
    : environmentProvider_(environmentProvider ? std::move(environmentProvider) : computedEnvironment) {
  for (auto const& group : SatelliteCatalog::groups()) enabledColorIndices_.insert(group.colorIndex);
}

SatelliteLayer::~SatelliteLayer() {
  waitForPropagation();
}

void SatelliteLayer::show(std::vector<SatelliteGroupLoad> groups) {
  waitForPropagation();
  finished_ = false;
  hideOrbit();
  batch_.reset();
  entries_.clear();
  baseColors_.clear();
  indicesByGroup_.clear();
  for (SatelliteGroupLoad& load : groups) addGroup(std::move(load));
  records_.clear();
  for (auto const& entry : entries_) records_.push_back(&entry.satrec);
  batch_ = std::make_unique<SGP4::SatelliteBatch>(records_);
  resize(shown_, entries_.size());
  resize(next_, entries_.size());
}

void SatelliteLayer::addGroup(SatelliteGroupLoad&& load) {
  GroupIndices indices{std::string(load.group.id), load.group.colorIndex, {}};
  auto const color = SatelliteCatalog::colors()[static_cast<std::size_t>(load.group.colorIndex)];
  for (auto& entry : load.parsed.entries) {
    indices.indices.push_back(static_cast<std::uint32_t>(entries_.size()));
    entries_.push_back(std::move(entry));
    baseColors_.insert(baseColors_.end(), {color.red, color.green, color.blue});
  }
  indicesByGroup_.push_back(std::move(indices));
}

void SatelliteLayer::deactivate() {
  isActive_ = false;
  hideOrbit();
}

bool SatelliteLayer::tick(Instant now) {
  if (!isActive_ || propagationPaused || entries_.empty() || inFlight_ || finished_) return false;
  inFlight_ = true;
  propQueue_.add([this, now, environment = environmentProvider_(now)] {
    propagate(now, environment);
    finished_ = true;
    inFlight_ = false;
    inFlight_.notify_all();
  });
  return true;
}

bool SatelliteLayer::takeResult() {
  if (inFlight_ || !finished_.exchange(false)) return false;
  std::swap(shown_, next_);
  return true;
}

bool SatelliteLayer::propagateNow(Instant now) {
  if (!tick(now)) return false;
  waitForPropagation();
  return takeResult();
}

void SatelliteLayer::waitForPropagation() {
  inFlight_.wait(true);
}

void SatelliteLayer::propagate(Instant now, Environment const& environment) {
  SGP4::Moment const moment = SGP4::momentOf(now);
  next_.time = now;
  next_.cameraPosition = environment.cameraPosition;
  batch_->propagate(moment);
  auto const rotation = EarthRotation::at(moment);
  for (std::size_t i = 0; i < entries_.size(); ++i) setEntry(i, rotation, environment.sunDirection);
}

void SatelliteLayer::setEntry(std::size_t index, EarthRotation const& rotation, Vector3 const& sun) {
  std::size_t const slot = batch_->slot(index);
  SGP4::StateBlock const& block = batch_->states()[slot / SGP4::kLanes];
  std::size_t const lane = slot % SGP4::kLanes;
  bool const drawn = block.error[lane] == 0;
  Vector3 const position{block.x[lane], block.y[lane], block.z[lane]};
  Vector3 const fixed = rotation.toEarthFixed(position);
  float const lit =
      drawn ? kShadowFactor + (kLitFactor - kShadowFactor) * static_cast<float>(litFraction(position, sun))
            : 0;
  next_.litFactors[index] = lit;
  for (std::size_t k = 0; k < kCoordinates; ++k) {
    next_.positions[index * kCoordinates + k] =
        drawn ? static_cast<float>(fixed[k] * (1 / SGP4::kEarthRadiusKm)) : 0;
    next_.colorData[index * kChannels + k] = baseColors_[index * kCoordinates + k] * lit;
  }
  next_.colorData[index * kChannels + 3] = drawn ? 1 : 0;
}

void SatelliteLayer::setEnabled(int colorIndex, bool enabled) {
  if (enabled) {
    enabledColorIndices_.insert(colorIndex);
  } else {
    enabledColorIndices_.erase(colorIndex);
  }
}

std::string const& SatelliteLayer::groupOf(std::size_t entry) const {
  static std::string const kNone;
  for (auto const& group : indicesByGroup_) {
    if (!group.indices.empty() && group.indices.front() <= entry && entry <= group.indices.back()) {
      return group.groupID;
    }
  }
  return kNone;
}

std::optional<SatelliteInfo> SatelliteLayer::info(std::size_t entry, Instant now) const {
  return satelliteInfo(entries_[entry], groupOf(entry), now);
}

void SatelliteLayer::showOrbit(std::size_t entry, Instant now) {
  orbit_ = orbitPath(entries_[entry].satrec, now);
  orbitSatelliteName_ = entries_[entry].name;
}

void SatelliteLayer::hideOrbit() {
  orbit_.clear();
  orbitSatelliteName_.clear();
}

std::optional<std::size_t> SatelliteLayer::nearest(Vector3 const& direction, double degrees) const {
  double best = std::cos(degrees * std::numbers::pi / 180);
  std::optional<std::size_t> found;
  for (auto const& group : indicesByGroup_) {
    if (!isDrawn(group)) continue;
    for (std::uint32_t const index : group.indices) {
      float const* const p = &shown_.positions[index * kCoordinates];
      Vector3 const position{p[0], p[1], p[2]};
      double const length = std::sqrt(dot(position, position) * dot(direction, direction));
      if (length == 0 || dot(position, direction) < best * length) continue;
      best = dot(position, direction) / length;
      found = index;
    }
  }
  return found;
}

}  // namespace nimbara
