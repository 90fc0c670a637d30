// One satellite at a time: for machines without vectors, and to test the template.
#include "globe/near_earth_kernel.h"

namespace nimbara::SGP4 {

bool propagateScalar(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                     std::size_t count, StateBlock* states) {
  return lanes::propagateBlocks<double>(blocks, stride, minutes, count, states);
}

}  // namespace nimbara::SGP4
