// From states to points that can be drawn: the turn of the earth, and the light between umbra and penumbra.
// The same arithmetic as EarthRotation::toEarthFixed and litFraction (earth_frame.h), over vectors.
#pragma once

#include "globe/propagation/block_access.h"

namespace nimbara::SGP4::lanes {

template <class V>
NIMBARA_INLINE void pointLanes(BlockLanes<V, StateBlock const> const& in, PointScene const& scene,
                               BlockLanes<V, PointBlock> const& out) {
  V const x = in.get(&StateBlock::x), y = in.get(&StateBlock::y), z = in.get(&StateBlock::z);
  auto const hidden = in.get(&StateBlock::error) != 0;
  V const none{}, one = none + 1;
  V const behind = -(x * scene.sunX + y * scene.sunY + z * scene.sunZ);
  V const fromAxisSquared = x * x + y * y + z * z - behind * behind;
  V const fromAxis = squareRoot(select(fromAxisSquared > 0, fromAxisSquared, none));
  V const umbra = kernelRadiusKm - behind * scene.umbraSlope;
  V const grown = (fromAxis - umbra) / (behind * (scene.umbraSlope + scene.penumbraSlope));
  V const partly = select(grown < 1, select(grown > 0, grown, none), one);
  V const lit = select(behind > 0, partly, one);
  constexpr double kPerRadius = 1 / kernelRadiusKm;
  V const fixedX = (scene.cosine * x + scene.sine * y) * kPerRadius;
  V const fixedY = (scene.cosine * y - scene.sine * x) * kPerRadius;
  out.set(&PointBlock::x, select(hidden, none, fixedX));
  out.set(&PointBlock::y, select(hidden, none, fixedY));
  out.set(&PointBlock::z, select(hidden, none, z * kPerRadius));
  out.set(&PointBlock::lit, select(hidden, none, lit));
  out.set(&PointBlock::drawn, select(hidden, none, one));
}

template <class V>
void pointBlocks(StateBlock const* states, PointScene const& scene, std::size_t count, PointBlock* points) {
  forEachVector<V>(count, [&](std::size_t i, std::size_t lane) __attribute__((always_inline)) {
    pointLanes<V>({states[i], lane}, scene, {points[i], lane});
  });
}

}  // namespace nimbara::SGP4::lanes
