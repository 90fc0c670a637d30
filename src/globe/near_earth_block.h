// The layouts between the batch and its kernels: eight satellites side by side, field by field, so that a
// vector of any width up to eight doubles is one load. Plain data without functions: sources that are
// compiled for other machines than the rest include this header, and must bring no code that the linker could
// pick.
#pragma once

#include <cstddef>

namespace nimbara::SGP4 {

inline constexpr std::size_t kLanes = 8;

/// What a near-earth propagation needs of eight records. Names are those of the record; `sqrtao`, `bcc4` and
/// `bcc5` are √ao, B*·cc4 and B*·cc5. Terms that simplified drag leaves out are zero.
struct alignas(64) NearEarthBlock {
  double mo[kLanes], mdot[kLanes], argpo[kLanes], argpdot[kLanes], nodeo[kLanes], nodedot[kLanes];
  double nodecf[kLanes], no[kLanes], ecco[kLanes], sini[kLanes], cosi[kLanes], ao[kLanes], sqrtao[kLanes];
  double aycof[kLanes], xlcof[kLanes];
  double cc1[kLanes], d2[kLanes], d3[kLanes], d4[kLanes], bcc4[kLanes], bcc5[kLanes];
  double t2cof[kLanes], t3cof[kLanes], t4cof[kLanes], t5cof[kLanes];
  double omgcof[kLanes], xmcof[kLanes], eta[kLanes], delmo[kLanes], sinmao[kLanes];
};

/// Eight states: km, km/s, and the error codes as numbers.
struct alignas(64) StateBlock {
  double x[kLanes], y[kLanes], z[kLanes];
  double vx[kLanes], vy[kLanes], vz[kLanes];
  double error[kLanes];
};

/// The error of a lane that the kernel leaves to the reference path: an orbit that drag has blown up beyond
/// all that is near earth, whose huge angles the two would round differently.
inline constexpr double kLeftToReference = -1;

/// `count` blocks of states at `minutes` (eight for each block) since the records' epochs. Moves on by
/// `stride` blocks of elements for each block of states: 1 for many satellites, 0 for many moments of one.
/// Tells whether a lane was left to the reference path.
using NearEarthKernel = bool (*)(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                                 std::size_t count, StateBlock* states);

bool propagateScalar(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                     std::size_t count, StateBlock* states);
bool propagateBaseline(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                       std::size_t count, StateBlock* states);
bool propagateAvx2(NearEarthBlock const* blocks, std::size_t stride, double const* minutes, std::size_t count,
                   StateBlock* states);
bool propagateAvx512(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                     std::size_t count, StateBlock* states);

}  // namespace nimbara::SGP4
