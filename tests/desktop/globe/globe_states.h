// States of the globe in tests: satellites at places that a test knows, in two groups of one entry and of
// many.
#pragma once

#include "app/state/globe_state.h"
#include "desktop/states/states.h"
#include "desktop/views/globe/globe_camera.h"

namespace nimbara::test {

/// Groups of satellites, each at a place and in radii from the earth's centre.
class GlobeStateMaker {
 public:
  GlobeStateMaker() {
    state_.now = kNow;
    for (auto const& group : SatelliteCatalog::groups())
      state_.groups.push_back({group, GlobeGroup::State::fresh, 0, kNow, {}});
  }

  GlobeStateMaker& group(std::string_view id) {
    auto const* const known = SatelliteCatalog::group(id);
    catalogue_.groups.push_back({std::string(id), known->colorIndex, {}});
    return *this;
  }

  GlobeStateMaker& satellite(std::string name, Coordinate above, double radii, bool isNamed = false) {
    auto const entry = static_cast<std::uint32_t>(catalogue_.names.size());
    Vector3 const up = directionTo(above);
    for (double const part : up) frame_.positions.push_back(static_cast<float>(part * radii));
    frame_.colorData.insert(frame_.colorData.end(), {0.5F, 0.6F, 0.7F, 1.0F});
    catalogue_.names.push_back(std::move(name));
    catalogue_.groups.back().indices.push_back(entry);
    if (isNamed) catalogue_.named.push_back(entry);
    for (GlobeGroup& group : state_.groups) group.count += group.group.id == catalogue_.groups.back().groupID;
    return *this;
  }

  GlobeState& state() { return state_; }

  std::shared_ptr<GlobeState const> made() {
    auto state = std::make_shared<GlobeState>(state_);
    state->catalogue = std::make_shared<GlobeCatalogue const>(catalogue_);
    state->frame = std::make_shared<SatelliteLayer::Frame const>(frame_);
    return state;
  }

 private:
  GlobeState state_;
  GlobeCatalogue catalogue_;
  SatelliteLayer::Frame frame_;
};

/// As many points as there are satellites in use, and one of them chosen.
std::shared_ptr<GlobeState const> crowdedGlobe();

EarthquakeEvent quakeOf(double magnitude, Coordinate at, Instant time = kNow);

}  // namespace nimbara::test
