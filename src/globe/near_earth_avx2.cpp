// The kernel for AVX2 and FMA, compiled for them alone (see CMakeLists.txt).
#include "globe/near_earth_kernel.h"

namespace nimbara::SGP4 {

bool propagateAvx2(NearEarthBlock const* blocks, std::size_t stride, double const* minutes, std::size_t count,
                   StateBlock* states) {
  return lanes::propagateBlocks<lanes::Four>(blocks, stride, minutes, count, states);
}

}  // namespace nimbara::SGP4
