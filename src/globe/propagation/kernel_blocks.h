// The layouts between the batch and its kernels: eight satellites side by side, field by field, so that a
// vector of any width up to eight doubles is one load. Plain data without functions: sources that are
// compiled for other machines than the rest include this header, and must bring no code that the linker could
// pick.
#pragma once

#include <cstddef>

namespace nimbara::SGP4 {

inline constexpr std::size_t kLanes = 8;
/// Blocks come in twos, for the kernels that take two at a time.
inline constexpr std::size_t kBlocksAtOnce = 2;

/// The earth's radius in km as in sat_rec.h, which brings more than a kernel may include.
inline constexpr double kernelRadiusKm = 6378.135;

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

/// Mean elements of eight orbits at a moment, from where near earth and deep space go the same way; `u` is
/// the mean argument of latitude.
struct alignas(64) MeanBlock {
  double am[kLanes], em[kLanes], argpm[kLanes], nodem[kLanes], u[kLanes];
  double sini[kLanes], cosi[kLanes], aycof[kLanes], xlcof[kLanes];
};

/// Eight states: km, km/s, and the error codes as numbers.
struct alignas(64) StateBlock {
  double x[kLanes], y[kLanes], z[kLanes];
  double vx[kLanes], vy[kLanes], vz[kLanes];
  double error[kLanes];
};

/// What the points of a moment have in common: how far the earth has turned, where the sun stands, and how
/// the earth's shadow opens and closes behind it.
struct PointScene {
  double sine, cosine;
  double sunX, sunY, sunZ;
  double umbraSlope, penumbraSlope;
};

/// Eight points to draw: earth-fixed positions in equatorial radii, the sun's fraction that is seen, and 1,
/// or 0 for all of them where a state has an error.
struct alignas(32) PointBlock {
  float x[kLanes], y[kLanes], z[kLanes];
  float lit[kLanes], drawn[kLanes];
};

/// The error of a lane that the kernel leaves to the reference path: an orbit that drag has blown up beyond
/// all that is near earth, whose huge angles the two would round differently.
inline constexpr double kLeftToReference = -1;

/// What a kernel does, each with `count` blocks of results, an even number.
struct KernelFunctions {
  /// States at `minutes` (eight for each block) since the records' epochs. Moves on by `stride` blocks of
  /// elements for each block of states: 1 for many satellites, 0 for many moments of one. Tells whether a
  /// lane was left to the reference path.
  bool (*propagate)(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                    std::size_t count, StateBlock* states);
  void (*complete)(MeanBlock const* means, std::size_t count, StateBlock* states);
  void (*points)(StateBlock const* states, PointScene const& scene, std::size_t count, PointBlock* points);
};

extern KernelFunctions const scalarKernel;
extern KernelFunctions const baselineKernel;
extern KernelFunctions const avx2Kernel;
extern KernelFunctions const avx512Kernel;

}  // namespace nimbara::SGP4
