// The hot loops, by what the processor can do.
//
// Their bodies stand in headers of their own and are compiled once for each instruction set. All of them have internal
// linkage and call no inline function of another header, those of std::array among them: the linker keeps one copy of
// such a function, and must never pick one that was made for another processor.
#pragma once

#include <cstddef>
#include <cstdint>

#include "gwav4/block_kernel.h"
#include "gwav4/lifting_kernel.h"
#include "gwav4/output_kernel.h"

namespace zel::gwav4 {

/// The work on samples that are held as `Lane`.
template <class Lane>
struct LaneKernel {
  /// Takes the next `count` coefficients of an order, 1 to kMostInBlock, from its streams; order.lowestSignificance must
  /// not be above order.top. `out` has room for `count` rounded up to a multiple of 64.
  void (*read)(OrderCursors& order, std::size_t count, BlockScratch& scratch, Lane* out);
  LiftingKernel<Lane> lifting;
  OutputKernel<Lane> output;
};

struct Kernels {
  LaneKernel<std::int16_t> narrow;   ///< for orders whose top is below kNarrowPositions; watches its limits
  LaneKernel<std::int32_t> wide;     ///< samples of 32 bits that wrap
  LaneKernel<std::int32_t> wrapped;  ///< samples of 16 bits that wrap; sums are formed in 32
};

/// The best ones for this processor.
const Kernels& kernels();

const Kernels& portableKernels();
/// Null where the processor or the build lacks them.
const Kernels* avx2Kernels();

}  // namespace zel::gwav4
