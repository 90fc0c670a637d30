// Many satellites at one moment, and one satellite at many moments. Near-earth orbits go through a vector
// kernel, eight at a time; deep-space orbits take the reference path as far as their mean elements, each from
// where its resonance stood, and the kernel from there. What the kernel cannot do to the last digit it leaves
// to the reference path wholly. One thread at a time may use a batch.
#pragma once

#include "globe/propagation/kernels.h"
#include "globe/propagation/sat_rec.h"

#include <span>
#include <vector>

namespace nimbara::SGP4 {

class SatelliteBatch {
 public:
  /// The records must stay where they are while the batch is used.
  explicit SatelliteBatch(std::span<SatRec const* const> records, Kernel kernel = bestKernel());
  explicit SatelliteBatch(std::span<SatRec const> records, Kernel kernel = bestKernel());

  std::size_t size() const { return slots_.size(); }
  Kernel kernel() const { return kernel_; }

  /// The states of all records at one moment; allocates nothing.
  void propagate(Moment moment);
  /// The same at equal minutes since each record's own epoch.
  void propagateSinceEpochs(double minutes);

  /// Of the last propagation.
  StateVector state(std::size_t index) const;
  /// The same, eight side by side, in an order of the batch's own; `slot` tells where a record stands:
  /// block slot / kLanes, lane slot % kLanes. Lanes that belong to nobody hold copies.
  std::span<StateBlock const> states() const { return states_; }
  /// The states as points in the same order; allocates nothing.
  std::span<PointBlock const> points(PointScene const& scene);
  std::size_t slot(std::size_t index) const { return slots_[index]; }

 private:
  struct Deep {
    SatRec const* record;
    ResonanceState resonance;
    int error = 0;  ///< of the mean elements
  };
  struct Epoch {
    double day, fraction;
  };

  void propagateNear();
  void propagateLeft();
  /// By the minutes since a record's epoch.
  template <class Minutes>
  void propagateDeep(Minutes const& minutesOf);

  std::vector<SatRec const*> records_;
  Kernel kernel_;
  std::vector<NearEarthBlock> blocks_;
  std::vector<Epoch> epochs_;    ///< of the near-earth slots
  std::vector<double> minutes_;  ///< of the near-earth slots
  std::vector<Deep> deep_;       ///< their slots follow those of the near-earth blocks
  std::vector<MeanBlock> means_;
  std::vector<StateBlock> states_;
  std::vector<PointBlock> points_;
  std::vector<std::uint32_t> slots_;
};

/// One record at many moments, in minutes since its epoch; as many states as moments.
void propagateMany(SatRec const& record, std::span<double const> minutes, std::span<StateVector> states,
                   Kernel kernel = bestKernel());

}  // namespace nimbara::SGP4
