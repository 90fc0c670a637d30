// The kernel of every 64-bit machine: two doubles a vector, without fused multiplication.
#include "globe/propagation/point_kernel.h"
#include "globe/propagation/propagation_kernel.h"

namespace nimbara::SGP4 {

KernelFunctions const baselineKernel{lanes::propagateBlocks<lanes::Pair<lanes::Two>>,
                                     lanes::completeBlocks<lanes::Pair<lanes::Two>>,
                                     lanes::pointBlocks<lanes::Pair<lanes::Two>>};

}  // namespace nimbara::SGP4
