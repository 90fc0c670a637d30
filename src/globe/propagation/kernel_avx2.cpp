// The kernel for AVX2 and FMA, compiled for them alone (see CMakeLists.txt).
#include "globe/propagation/point_kernel.h"
#include "globe/propagation/propagation_kernel.h"

namespace nimbara::SGP4 {

KernelFunctions const avx2Kernel{lanes::propagateBlocks<lanes::Pair<lanes::Four>>,
                                 lanes::completeBlocks<lanes::Pair<lanes::Four>>,
                                 lanes::pointBlocks<lanes::Pair<lanes::Four>>};

}  // namespace nimbara::SGP4
