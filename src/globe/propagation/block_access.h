// Vectors out of the batch's blocks and into them: parts of one block, or pairs that span two.
#pragma once

#include "globe/propagation/kernel_blocks.h"
#include "globe/propagation/vector_math.h"

namespace nimbara::SGP4::lanes {

template <class V>
inline constexpr std::size_t kBlocksSpanned = (kWidth<V> + kLanes - 1) / kLanes;
template <class V>
inline constexpr bool spansBlocks = kBlocksSpanned<V> == 2;

/// The lanes from `lane` on of a block; of it and the block `apart` blocks further when V spans two.
template <class V, class Block>
struct BlockLanes {
  Block& block;
  std::size_t lane = 0;
  std::size_t apart = 1;

  template <class Plain>
  NIMBARA_INLINE V get(double (Plain::*field)[kLanes]) const {
    if constexpr (spansBlocks<V>) {
      return {load<decltype(V::low)>(block.*field), load<decltype(V::high)>((&block)[apart].*field)};
    } else {
      return load<V>(block.*field + lane);
    }
  }
  template <class Plain>
  NIMBARA_INLINE void set(double (Plain::*field)[kLanes], V const& value) const {
    if constexpr (spansBlocks<V>) {
      store(block.*field, value.low);
      store((&block)[apart].*field, value.high);
    } else {
      store(block.*field + lane, value);
    }
  }
  template <class Plain>
  NIMBARA_INLINE void set(float (Plain::*field)[kLanes], V const& value) const {
    if constexpr (spansBlocks<V>) {
      storeFloats(block.*field, value.low);
      storeFloats((&block)[apart].*field, value.high);
    } else {
      storeFloats(block.*field + lane, value);
    }
  }
};

/// Calls `work` with the block and the lane that each V begins with.
template <class V, class Work>
NIMBARA_INLINE void forEachVector(std::size_t blocks, Work const& work) {
  for (std::size_t i = 0; i < blocks; i += kBlocksSpanned<V>) {
    for (std::size_t lane = 0; lane < kLanes; lane += kWidth<V>) work(i, lane);
  }
}

}  // namespace nimbara::SGP4::lanes
