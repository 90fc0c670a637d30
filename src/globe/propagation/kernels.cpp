#include "globe/propagation/kernels.h"

#include <array>

namespace nimbara::SGP4 {

namespace {

constexpr std::array<KernelFunctions const*, enumNames<Kernel>.size()> kFunctions{
    &scalarKernel, &baselineKernel, &avx2Kernel, &avx512Kernel};

std::vector<Kernel> findRunnable() {
  std::vector<Kernel> kernels{Kernel::scalar, Kernel::baseline};
#if defined(__x86_64__)
  bool const avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  if (avx2) kernels.push_back(Kernel::avx2);
  if (avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
      __builtin_cpu_supports("avx512vl")) {
    kernels.push_back(Kernel::avx512);
  }
#endif
  return kernels;
}

}  // namespace

std::vector<Kernel> const& runnableKernels() {
  static std::vector<Kernel> const kernels = findRunnable();
  return kernels;
}

Kernel bestKernel() {
  return runnableKernels().back();
}

KernelFunctions const& kernelFunctions(Kernel kernel) {
  return *kFunctions[static_cast<std::size_t>(kernel)];
}

}  // namespace nimbara::SGP4
