// The kernel for AVX-512, compiled for it alone (see CMakeLists.txt).
#include "globe/propagation/point_kernel.h"
#include "globe/propagation/propagation_kernel.h"

namespace nimbara::SGP4 {

KernelFunctions const avx512Kernel{lanes::propagateBlocks<lanes::Pair<lanes::Eight>>,
                                   lanes::completeBlocks<lanes::Pair<lanes::Eight>>,
                                   lanes::pointBlocks<lanes::Pair<lanes::Eight>>};

}  // namespace nimbara::SGP4
