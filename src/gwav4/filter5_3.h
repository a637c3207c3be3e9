#pragma once

#include <cstdint>

#include "gwav4/kernels.h"

namespace zel::gwav4 {

/// Le Gall's 5/3 filter on samples of type T, short or int: sums are formed in 32 bits and wrap, results are stored as
/// T. This is right for any stream; kernels().narrow is a faster way where it is enough.
template <class T>
struct CFilter5_3 {
  static const LaneKernel<std::int32_t>& kernel() {
    return sizeof(T) == sizeof(std::int16_t) ? kernels().wrapped : kernels().wide;
  }
};

}  // namespace zel::gwav4
