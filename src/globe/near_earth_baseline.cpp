// The kernel of every 64-bit machine: two doubles a vector, without fused multiplication.
#include "globe/near_earth_kernel.h"

namespace nimbara::SGP4 {

bool propagateBaseline(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                       std::size_t count, StateBlock* states) {
  return lanes::propagateBlocks<lanes::Two>(blocks, stride, minutes, count, states);
}

}  // namespace nimbara::SGP4
