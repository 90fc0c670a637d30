// One satellite at a time: for machines without vectors, and to test the template.
#include "globe/propagation/point_kernel.h"
#include "globe/propagation/propagation_kernel.h"

namespace nimbara::SGP4 {

KernelFunctions const scalarKernel{lanes::propagateBlocks<double>, lanes::completeBlocks<double>,
                                   lanes::pointBlocks<double>};

}  // namespace nimbara::SGP4
