// One satellite at a time: for machines without vectors, and to test the template.
#include "globe/point_kernel.h"
#include "globe/propagation_kernel.h"

namespace nimbara::SGP4 {

KernelFunctions const scalarKernel{lanes::propagateBlocks<double>, lanes::completeBlocks<double>,
                                   lanes::pointBlocks<double>};

}  // namespace nimbara::SGP4
