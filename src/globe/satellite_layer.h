// The satellites of the globe as data for whoever draws them: flat arrays of positions and colours, indices
// for each group, one orbit. Knows no renderer. Everything but the propagation belongs to one thread, the
// owner's; the propagation runs on the layer's own queue and hands its result over by one swap.
#pragma once

#include "globe/propagation/propagation_queue.h"
#include "globe/propagation/sgp4_batch.h"
#include "globe/satellite_feed.h"
#include "globe/satellite_info.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace nimbara {

class SatelliteLayer {
 public:
  /// What the scene tells for a moment. The sun's direction is in the propagator's frame.
  struct Environment {
    Vector3 sunDirection{};
    Vector3 cameraPosition{};
  };
  using EnvironmentProvider = std::function<Environment(Instant)>;

  struct GroupIndices {
    std::string groupID;
    int colorIndex = 0;
    std::vector<std::uint32_t> indices;  ///< into the entries
  };

  /// One moment of all entries. An entry that cannot be propagated stands in the earth's centre, black and
  /// transparent; there is never anything but finite numbers.
  struct Frame {
    Instant time;
    std::vector<float> positions;   ///< earth-fixed x, y, z in equatorial radii; x through 0°, 0°
    std::vector<float> litFactors;  ///< by which the base colour is dimmed; 0 for entries not drawn
    std::vector<float> colorData;   ///< red, green, blue, opacity
    Vector3 cameraPosition{};
  };

  /// How bright an entry is in the sun and in the earth's shadow.
  static constexpr float kLitFactor = 1.0F;
  static constexpr float kShadowFactor = 0.35F;
  /// What the owner's timer ticks at.
  static constexpr std::chrono::milliseconds kInterval{1000};

  /// Without a provider the sun's direction is computed.
  explicit SatelliteLayer(EnvironmentProvider environmentProvider = {});
  ~SatelliteLayer();

  /// Replaces everything that is shown. Waits for a propagation that is going on.
  void show(std::vector<SatelliteGroupLoad> groups);

  void activate() { isActive_ = true; }
  /// Forgets the orbit; the entries stay.
  void deactivate();
  bool isActive() const { return isActive_; }

  bool isLoading = false;          ///< set and read by the owner while groups are fetched
  bool propagationPaused = false;  ///< set by the owner, while the globe is hidden

  /// Starts one propagation, unless the layer is inactive, paused, empty or still busy with the last one.
  /// Tells whether it did.
  bool tick(Instant now);
  bool propagationInFlight() const { return inFlight_; }
  /// Takes the result of a finished propagation in; tells whether there was one.
  bool takeResult();
  /// For callers without a loop: a tick and its result.
  bool propagateNow(Instant now);

  std::vector<SatelliteCatalog::Entry> const& entries() const { return entries_; }
  Frame const& frame() const { return shown_; }
  std::vector<float> const& baseColors() const { return baseColors_; }
  std::vector<GroupIndices> const& indicesByGroup() const { return indicesByGroup_; }

  /// Groups of one colour are switched together.
  void setEnabled(int colorIndex, bool enabled);
  std::set<int> const& enabledColorIndices() const { return enabledColorIndices_; }
  bool isDrawn(GroupIndices const& group) const { return enabledColorIndices_.contains(group.colorIndex); }

  std::optional<SatelliteInfo> info(std::size_t entry, Instant now) const;
  /// The entry's way over one period becomes the layer's orbit.
  void showOrbit(std::size_t entry, Instant now);
  void hideOrbit();
  std::vector<OrbitPoint> const& orbit() const { return orbit_; }
  std::string const& orbitSatelliteName() const { return orbitSatelliteName_; }

  /// The entry that stands nearest to a direction from the earth's centre (earth-fixed) among those drawn,
  /// within `degrees`; for taps.
  std::optional<std::size_t> nearest(Vector3 const& direction, double degrees) const;

 private:
  void addGroup(SatelliteGroupLoad&& load);
  void propagate();
  void setEntry(std::size_t index, SGP4::PointBlock const& block, std::size_t lane);
  void waitForPropagation();
  std::string const& groupOf(std::size_t entry) const;

  EnvironmentProvider environmentProvider_;
  bool isActive_ = false;
  std::vector<SatelliteCatalog::Entry> entries_;
  std::vector<float> baseColors_;
  std::vector<GroupIndices> indicesByGroup_;
  std::set<int> enabledColorIndices_;
  std::vector<OrbitPoint> orbit_;
  std::string orbitSatelliteName_;
  Frame shown_;

  // Of the propagation while `inFlight_` is set, of the owner else.
  std::vector<SGP4::SatRec const*> records_;
  std::unique_ptr<SGP4::SatelliteBatch> batch_;
  Environment environment_;
  Frame next_;

  std::atomic<bool> inFlight_ = false;
  std::atomic<bool> finished_ = false;
  PropagationQueue propQueue_;  ///< last, so that its thread ends before what it uses
};

}  // namespace nimbara
