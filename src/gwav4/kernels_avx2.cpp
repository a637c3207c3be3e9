// Compiled for processors with AVX2, BMI and BMI2: nothing here may run before they were asked for.
#include "gwav4/kernels.h"

#define EI4_AVX2 1
#include "gwav4/block_kernel_body.h"
#include "gwav4/lifting_kernel_body.h"
#include "gwav4/output_kernel_body.h"

namespace zel::gwav4 {

extern const Kernels kAvx2Kernels;
constexpr Kernels kAvx2Kernels = {
    {readBlock<NarrowNumbers>, Lifting<NarrowLanes>::kernel(), Output<std::int16_t>::kernel()},
    {readBlock<WideNumbers>, Lifting<WideLanes>::kernel(), Output<std::int32_t>::kernel()},
    {readBlock<WrappedNumbers>, Lifting<WrappedLanes>::kernel(), Output<std::int32_t>::kernel()}};

}  // namespace zel::gwav4
