// The kernel for AVX-512, compiled for it alone (see CMakeLists.txt).
#include "globe/near_earth_kernel.h"

namespace nimbara::SGP4 {

bool propagateAvx512(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                     std::size_t count, StateBlock* states) {
  return lanes::propagateBlocks<lanes::Eight>(blocks, stride, minutes, count, states);
}

}  // namespace nimbara::SGP4
