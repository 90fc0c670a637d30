// Which kernels this program holds, which of them this machine can run, and which is the best.
#pragma once

#include "base/enum_names.h"
#include "globe/propagation/kernel_blocks.h"

#include <vector>

namespace nimbara::SGP4 {

enum class Kernel { scalar, baseline, avx2, avx512 };

/// Those that this machine can run, slowest first.
std::vector<Kernel> const& runnableKernels();

/// The fastest that this machine can run; chosen once.
Kernel bestKernel();

KernelFunctions const& kernelFunctions(Kernel kernel);

}  // namespace nimbara::SGP4

namespace nimbara {
template <>
inline constexpr auto enumNames<SGP4::Kernel> =
    std::to_array<std::string_view>({"scalar", "baseline", "avx2", "avx512"});
static_assert(enumNamesComplete(SGP4::Kernel::avx512));
}  // namespace nimbara
