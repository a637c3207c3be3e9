#define EI4_DEPOSIT 0
#include "gwav4/bit_plane_row.h"

#include <algorithm>

#include "gwav4/bit_plane_row_body.h"

namespace zel::gwav4 {
namespace {

const RowKernel kPortableRows = {readRow, store16, store32};

const RowKernel& rowKernel() {
  static const RowKernel* const special = bmi2RowKernel();
  return special != nullptr ? *special : kPortableRows;
}

}  // namespace

const RowKernel& portableRowKernel() { return kPortableRows; }

#if EI4_HAVE_BMI2_ROWS
extern const RowKernel kBmi2Rows;
const RowKernel* bmi2RowKernel() {
  // All that its file is compiled for: a virtual machine may hide one of them.
  const bool able = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                    __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
  return able ? &kBmi2Rows : nullptr;
}
#else
const RowKernel* bmi2RowKernel() { return nullptr; }
#endif

BitPlaneRow::BitPlaneRow(int longest, int positions)
    : wordsPerRow((static_cast<std::size_t>(longest) + 63) / 64),
      masks(wordsPerRow * (2 + static_cast<std::size_t>(positions))) {}

template <class T>
void BitPlaneRow::decode(const OrderStreams& streams, int count, T* out, int step) {
  if (count <= 0 || streams.lowestSignificance > streams.top) return;
  const std::size_t words = (static_cast<std::size_t>(count) + 63) / 64;
  const int positions = streams.top + 1;
  std::fill_n(masks.begin(), words * (2 + static_cast<std::size_t>(positions)), 0);
  const RowMasks row = {words, masks.data(), masks.data() + words, masks.data() + 2 * words};
  const RowKernel& kernel = rowKernel();
  kernel.readRow(streams, count, row);
  if constexpr (sizeof(T) == sizeof(short)) {
    kernel.store16(row, count, positions, out, step);
  } else {
    kernel.store32(row, count, positions, out, step);
  }
}

template void BitPlaneRow::decode(const OrderStreams& streams, int count, short* out, int step);
template void BitPlaneRow::decode(const OrderStreams& streams, int count, int* out, int step);

}  // namespace zel::gwav4
