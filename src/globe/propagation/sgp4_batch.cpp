#include "globe/propagation/sgp4_batch.h"

#include "globe/propagation/mean_elements.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace nimbara::SGP4 {

namespace {

/// The element of a lane, for each field of the block.
struct LaneField {
  double (NearEarthBlock::*field)[kLanes];
  double (*value)(SatRec const&);
};

template <double SatRec::* member>
double plain(SatRec const& record) {
  return record.*member;
}

constexpr LaneField kLaneFields[] = {
    {&NearEarthBlock::mo, plain<&SatRec::mo>},
    {&NearEarthBlock::mdot, plain<&SatRec::mdot>},
    {&NearEarthBlock::argpo, plain<&SatRec::argpo>},
    {&NearEarthBlock::argpdot, plain<&SatRec::argpdot>},
    {&NearEarthBlock::nodeo, plain<&SatRec::nodeo>},
    {&NearEarthBlock::nodedot, plain<&SatRec::nodedot>},
    {&NearEarthBlock::nodecf, plain<&SatRec::nodecf>},
    {&NearEarthBlock::no, plain<&SatRec::no>},
    {&NearEarthBlock::ecco, plain<&SatRec::ecco>},
    {&NearEarthBlock::sini, [](SatRec const& r) { return std::sin(r.inclo); }},
    {&NearEarthBlock::cosi, [](SatRec const& r) { return std::cos(r.inclo); }},
    {&NearEarthBlock::ao, plain<&SatRec::a>},
    {&NearEarthBlock::sqrtao, [](SatRec const& r) { return std::sqrt(r.a); }},
    {&NearEarthBlock::aycof, plain<&SatRec::aycof>},
    {&NearEarthBlock::xlcof, plain<&SatRec::xlcof>},
    {&NearEarthBlock::cc1, plain<&SatRec::cc1>},
    {&NearEarthBlock::d2, plain<&SatRec::d2>},
    {&NearEarthBlock::d3, plain<&SatRec::d3>},
    {&NearEarthBlock::d4, plain<&SatRec::d4>},
    {&NearEarthBlock::bcc4, [](SatRec const& r) { return r.bstar * r.cc4; }},
    {&NearEarthBlock::bcc5, [](SatRec const& r) { return r.isimp ? 0 : r.bstar * r.cc5; }},
    {&NearEarthBlock::t2cof, plain<&SatRec::t2cof>},
    {&NearEarthBlock::t3cof, plain<&SatRec::t3cof>},
    {&NearEarthBlock::t4cof, plain<&SatRec::t4cof>},
    {&NearEarthBlock::t5cof, plain<&SatRec::t5cof>},
    {&NearEarthBlock::omgcof, [](SatRec const& r) { return r.isimp ? 0 : r.omgcof; }},
    {&NearEarthBlock::xmcof, [](SatRec const& r) { return r.isimp ? 0 : r.xmcof; }},
    {&NearEarthBlock::eta, plain<&SatRec::eta>},
    {&NearEarthBlock::delmo, plain<&SatRec::delmo>},
    {&NearEarthBlock::sinmao, plain<&SatRec::sinmao>},
};
static_assert(kernelRadiusKm == kEarthRadiusKm);
static_assert(std::size(kLaneFields) * kLanes * sizeof(double) == sizeof(NearEarthBlock));

void setLane(NearEarthBlock& block, std::size_t lane, SatRec const& record) {
  for (auto const& [field, value] : kLaneFields) (block.*field)[lane] = value(record);
}

/// Records whose elements cannot be propagated at all are left to the reference path, which says so.
bool takesKernel(SatRec const& record) {
  return !record.isDeepSpace && record.no > 0 && std::isfinite(record.mdot);
}

StateVector stateOf(StateBlock const& block, std::size_t lane) {
  StateVector state;
  state.error = static_cast<int>(block.error[lane]);
  if (state.error != errorCode::kNone && state.error != errorCode::kDecayed) return state;
  state.position = {block.x[lane], block.y[lane], block.z[lane]};
  state.velocity = {block.vx[lane], block.vy[lane], block.vz[lane]};
  return state;
}

void setState(StateBlock& block, std::size_t lane, StateVector const& state) {
  block.x[lane] = state.position[0];
  block.y[lane] = state.position[1];
  block.z[lane] = state.position[2];
  block.vx[lane] = state.velocity[0];
  block.vy[lane] = state.velocity[1];
  block.vz[lane] = state.velocity[2];
  block.error[lane] = state.error;
}

StateVector failed(int code) {
  StateVector state;
  state.error = code;
  return state;
}

/// Puts a moment's mean elements into a lane; tells their error.
int setMeanLane(MeanBlock& block, std::size_t lane, SatRec const& record, double minutes,
                ResonanceState& resonance) {
  auto const [m, am, error] = meanElementsAt(record, minutes, resonance);
  double const sini = std::sin(m.inclm), cosi = std::cos(m.inclm);
  auto const [aycof, xlcof] =
      record.isDeepSpace ? longPeriod(sini, cosi) : LongPeriod{record.aycof, record.xlcof};
  block.am[lane] = am;
  block.em[lane] = m.em;
  block.argpm[lane] = m.argpm;
  block.nodem[lane] = m.nodem;
  block.u[lane] = m.mm + m.argpm;
  block.sini[lane] = sini;
  block.cosi[lane] = cosi;
  block.aycof[lane] = aycof;
  block.xlcof[lane] = xlcof;
  return error;
}

std::vector<SatRec const*> pointersTo(std::span<SatRec const> records) {
  std::vector<SatRec const*> pointers;
  for (SatRec const& record : records) pointers.push_back(&record);
  return pointers;
}

/// Lanes of the blocks that kernels take at once.
constexpr std::size_t kLanesAtOnce = kLanes * kBlocksAtOnce;

std::size_t blocksFor(std::size_t count) {
  return (count + kLanesAtOnce - 1) / kLanesAtOnce * kBlocksAtOnce;
}

/// Moments in portions that fill the blocks of a kernel.
template <class Portion>
void inPortions(std::size_t count, Portion const& portion) {
  for (std::size_t first = 0; first < count; first += kLanesAtOnce) {
    portion(first, std::min(kLanesAtOnce, count - first));
  }
}

void propagateNearMany(SatRec const& record, std::span<double const> minutes, std::span<StateVector> states,
                       KernelFunctions const& kernel) {
  NearEarthBlock block;
  for (std::size_t lane = 0; lane < kLanes; ++lane) setLane(block, lane, record);
  std::array<StateBlock, kBlocksAtOnce> out;
  std::array<double, kLanesAtOnce> moments{};
  inPortions(minutes.size(), [&](std::size_t first, std::size_t count) {
    std::ranges::copy(minutes.subspan(first, count), moments.begin());
    kernel.propagate(&block, 0, moments.data(), kBlocksAtOnce, out.data());
    for (std::size_t i = 0; i < count; ++i) {
      StateBlock const& ofLane = out[i / kLanes];
      bool const left = ofLane.error[i % kLanes] == kLeftToReference;
      states[first + i] = left ? propagate(record, moments[i]) : stateOf(ofLane, i % kLanes);
    }
  });
}

void propagateDeepMany(SatRec const& record, std::span<double const> minutes, std::span<StateVector> states,
                       KernelFunctions const& kernel) {
  ResonanceState resonance = resonanceStart(record);
  std::array<MeanBlock, kBlocksAtOnce> means{};
  std::array<StateBlock, kBlocksAtOnce> out;
  std::array<int, kLanesAtOnce> errors{};
  inPortions(minutes.size(), [&](std::size_t first, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      errors[i] = setMeanLane(means[i / kLanes], i % kLanes, record, minutes[first + i], resonance);
    }
    kernel.complete(means.data(), kBlocksAtOnce, out.data());
    for (std::size_t i = 0; i < count; ++i) {
      states[first + i] =
          errors[i] == errorCode::kNone ? stateOf(out[i / kLanes], i % kLanes) : failed(errors[i]);
    }
  });
}

}  // namespace

SatelliteBatch::SatelliteBatch(std::span<SatRec const> records, Kernel kernel)
    : SatelliteBatch(pointersTo(records), kernel) {}

SatelliteBatch::SatelliteBatch(std::span<SatRec const* const> records, Kernel kernel)
    : records_(records.begin(), records.end()), kernel_(kernel) {
  auto const near = static_cast<std::size_t>(
      std::ranges::count_if(records_, [](SatRec const* record) { return takesKernel(*record); }));
  blocks_.resize(blocksFor(near));
  std::size_t nextNear = 0;
  std::size_t nextDeep = blocks_.size() * kLanes;
  slots_.reserve(records_.size());
  for (SatRec const* const pointer : records_) {
    SatRec const& record = *pointer;
    if (takesKernel(record)) {
      setLane(blocks_[nextNear / kLanes], nextNear % kLanes, record);
      epochs_.push_back({record.tle.epochDay, record.tle.epochFraction});
      slots_.push_back(static_cast<std::uint32_t>(nextNear++));
    } else {
      deep_.push_back({&record, resonanceStart(record), errorCode::kNone});
      slots_.push_back(static_cast<std::uint32_t>(nextDeep++));
    }
  }
  // The other lanes of the last blocks repeat the first one there.
  for (std::size_t const first = nextNear / kLanesAtOnce * kLanesAtOnce; nextNear % kLanesAtOnce != 0;
       ++nextNear) {
    for (auto const& [field, value] : kLaneFields) {
      (blocks_[nextNear / kLanes].*field)[nextNear % kLanes] = (blocks_[first / kLanes].*field)[0];
    }
    epochs_.push_back(epochs_[first]);
  }
  minutes_.resize(epochs_.size());
  states_.resize(blocksFor(nextDeep));
  means_.resize(states_.size() - blocks_.size());
  points_.resize(states_.size());
}

void SatelliteBatch::propagate(Moment moment) {
  for (std::size_t i = 0; i < epochs_.size(); ++i) {
    minutes_[i] = ((moment.day - epochs_[i].day) + (moment.fraction - epochs_[i].fraction)) * 1440.0;
  }
  propagateNear();
  propagateDeep([&](SatRec const& record) { return minutesSince(record.tle, moment); });
}

void SatelliteBatch::propagateSinceEpochs(double minutes) {
  std::ranges::fill(minutes_, minutes);
  propagateNear();
  propagateDeep([&](SatRec const&) { return minutes; });
}

void SatelliteBatch::propagateNear() {
  bool const left =
      kernelFunctions(kernel_).propagate(blocks_.data(), 1, minutes_.data(), blocks_.size(), states_.data());
  if (left) propagateLeft();
}

void SatelliteBatch::propagateLeft() {
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    std::size_t const slot = slots_[i];
    StateBlock& block = states_[slot / kLanes];
    if (slot < minutes_.size() && block.error[slot % kLanes] == kLeftToReference) {
      setState(block, slot % kLanes, SGP4::propagate(*records_[i], minutes_[slot]));
    }
  }
}

template <class Minutes>
void SatelliteBatch::propagateDeep(Minutes const& minutesOf) {
  for (std::size_t i = 0; i < deep_.size(); ++i) {
    Deep& deep = deep_[i];
    deep.error =
        setMeanLane(means_[i / kLanes], i % kLanes, *deep.record, minutesOf(*deep.record), deep.resonance);
  }
  StateBlock* const states = states_.data() + blocks_.size();
  kernelFunctions(kernel_).complete(means_.data(), means_.size(), states);
  for (std::size_t i = 0; i < deep_.size(); ++i) {
    if (int const error = deep_[i].error) setState(states[i / kLanes], i % kLanes, failed(error));
  }
}

std::span<PointBlock const> SatelliteBatch::points(PointScene const& scene) {
  kernelFunctions(kernel_).points(states_.data(), scene, states_.size(), points_.data());
  return points_;
}

StateVector SatelliteBatch::state(std::size_t index) const {
  return stateOf(states_[slots_[index] / kLanes], slots_[index] % kLanes);
}

void propagateMany(SatRec const& record, std::span<double const> minutes, std::span<StateVector> states,
                   Kernel kernel) {
  auto const many = takesKernel(record) ? propagateNearMany : propagateDeepMany;
  many(record, minutes, states, kernelFunctions(kernel));
}

}  // namespace nimbara::SGP4
