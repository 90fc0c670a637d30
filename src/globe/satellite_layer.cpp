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
  environment_ = environmentProvider_(now);
  next_.time = now;
  inFlight_ = true;
  propQueue_.add([this] {
    propagate();
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

void SatelliteLayer::propagate() {
  SGP4::Moment const moment = SGP4::momentOf(next_.time);
  next_.cameraPosition = environment_.cameraPosition;
  batch_->propagate(moment);
  auto const [sine, cosine] = EarthRotation::at(moment);
  auto const [sunX, sunY, sunZ] = environment_.sunDirection;
  auto const [umbra, penumbra] = shadowSlopes();
  auto const points = batch_->points({sine, cosine, sunX, sunY, sunZ, umbra, penumbra});
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    std::size_t const slot = batch_->slot(i);
    setEntry(i, points[slot / SGP4::kLanes], slot % SGP4::kLanes);
  }
}

void SatelliteLayer::setEntry(std::size_t index, SGP4::PointBlock const& block, std::size_t lane) {
  float const lit = block.drawn[lane] * (kShadowFactor + (kLitFactor - kShadowFactor) * block.lit[lane]);
  next_.litFactors[index] = lit;
  float* const position = &next_.positions[index * kCoordinates];
  position[0] = block.x[lane];
  position[1] = block.y[lane];
  position[2] = block.z[lane];
  float const* const base = &baseColors_[index * kCoordinates];
  float* const color = &next_.colorData[index * kChannels];
  for (std::size_t k = 0; k < kCoordinates; ++k) color[k] = base[k] * lit;
  color[3] = block.drawn[lane];
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
