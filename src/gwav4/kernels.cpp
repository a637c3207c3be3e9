#include "gwav4/kernels.h"

#define EI4_AVX2 0
#include "gwav4/block_kernel_body.h"
#include "gwav4/lifting_kernel_body.h"
#include "gwav4/output_kernel_body.h"

namespace zel::gwav4 {
namespace {

constexpr Kernels kPortable = {
    {readBlock<NarrowNumbers>, Lifting<NarrowLanes>::kernel(), Output<std::int16_t>::kernel()},
    {readBlock<WideNumbers>, Lifting<WideLanes>::kernel(), Output<std::int32_t>::kernel()},
    {readBlock<WrappedNumbers>, Lifting<WrappedLanes>::kernel(), Output<std::int32_t>::kernel()}};

}  // namespace

const Kernels& portableKernels() { return kPortable; }

const Kernels& kernels() {
  static const Kernels* const special = avx2Kernels();
  return special != nullptr ? *special : kPortable;
}

#if EI4_HAVE_AVX2_KERNELS
extern const Kernels kAvx2Kernels;
const Kernels* avx2Kernels() {
  // All that its file is compiled for: a virtual machine may hide one of them.
  const bool able = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                    __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  return able ? &kAvx2Kernels : nullptr;
}
#else
const Kernels* avx2Kernels() { return nullptr; }
#endif

}  // namespace zel::gwav4
