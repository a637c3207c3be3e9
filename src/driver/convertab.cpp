#include "driver/convertab.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "driver/to_int.h"
#include "types/wrapping.h"

namespace {

// Stored values from `lo` on rise to `lo + span`. `step` is the signed distance from
// `below` to the other end.
struct Ramp {
  int lo;
  int span;
  int step;
  int below;
};

// Writes the ramp's entries for the stored values start .. end - 1, of which there must be at least one.
//
// span is then not 0: 0 <= start < end means lo < hi, and the distance of two different ints is no multiple
// of 2^32. The division is done in double: with operands of 32 bits the rounded quotient never reaches the
// next whole number, so truncating it is exact, and several of them are done at once. -1 is set apart, as
// INT_MIN / -1 has to wrap.
template <typename Entry>
void fillRamp(Entry* table, int start, int end, Ramp ramp) {
  const double divisor = ramp.span;
  for (int i = start; i < end; ++i) {
    // Quirk table-product-wraps: an ordinary 16-bit window of 65536 with 16 output bits passes 2^31 halfway up
    // its ramp, which then continues with the wrapped values.
    const int product = wrappedProduct<int>(wrappedDifference<int>(i, ramp.lo), ramp.step);
    const int quotient = ramp.span == -1 ? wrappedDifference<int>(0, product)
                                         : static_cast<int>(static_cast<double>(product) / divisor);
    table[i] = static_cast<Entry>(wrappedSum<int>(quotient, ramp.below));
  }
}

// The order matters where the edges cross (start > end): there the entries get `above`.
template <typename Entry>
void fillTable(Entry* table, int count, int start, int end, Ramp ramp, int above) {
  std::fill(table, table + start, static_cast<Entry>(ramp.below));
  if (start < end) fillRamp(table, start, end, ramp);
  std::fill(table + end, table + count, static_cast<Entry>(above));
}

}  // namespace

int FieldhounsLevel(int value, double intercept, double slope, int shift) {
  const double scale = std::ldexp(slope, shift);
  const int stored = wrappedDifference<int>(value, ei4::toInt(intercept));
  if (scale == 1.0 || scale == 0.0) return stored;  // Quirk zero-slope-is-one
  return ei4::toInt(stored / scale);
}

Convertab CreateConvertab(double intercept, double slope, int window, int level, int invert, int inBits,
                          int shift, int outBits, int tableBits) {
  const int indexBits = std::max(inBits, tableBits);
  if (indexBits < 0 || indexBits > 24 || outBits < 0 || outBits > 16) return nullptr;
  const int count = 1 << indexBits;
  const bool bytes = outBits <= 8;
  Convertab table(
      std::malloc(static_cast<std::size_t>(count) * (bytes ? sizeof(std::uint8_t) : sizeof(std::uint16_t))));
  if (!table) return nullptr;

  const int width = window < 0 ? wrappedDifference<int>(0, window) : window;  // INT_MIN stays INT_MIN
  const int low = wrappedDifference<int>(level, width / 2);
  int lo = FieldhounsLevel(low, intercept, slope, shift);
  int hi = FieldhounsLevel(wrappedSum<int>(low, width), intercept, slope, shift);
  if (slope < 0) std::swap(lo, hi);

  const int start = std::clamp(lo, 0, count);
  const int end = std::clamp(hi, 0, count);
  const int top = (1 << outBits) - 1;
  const int above = invert != 0 ? 0 : top;
  const Ramp ramp{.lo = lo,
                  .span = wrappedDifference<int>(hi, lo),
                  .step = invert != 0 ? -top : top,
                  .below = invert != 0 ? top : 0};
  if (bytes) {
    fillTable(static_cast<std::uint8_t*>(table.get()), count, start, end, ramp, above);
  } else {
    fillTable(static_cast<std::uint16_t*>(table.get()), count, start, end, ramp, above);
  }
  return table;
}
