// The window/level table against its definition, entry by entry.
//
// Input   f64 intercept, f64 slope, i32 window, i32 level, u8 invert (bit 0), i8 bits of the input, i8 shift,
//         i8 bits of the output, i8 bits of the table.
// Limits  Tables of more than 2^14 entries are made, but not compared.
// Holds   There is a table if and only if the bits are in range; each entry is the definition's.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "check.h"
#include "driver/convertab.h"
#include "driver/to_int.h"
#include "input.h"
#include "target.h"

namespace {

using ei4::fuzz::require;

constexpr int kMostCompared = 14;  // bits

struct Request {
  double intercept, slope;
  int window, level, invert, inBits, shift, outBits, tableBits;
};

std::int64_t low32(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

std::int64_t storedLevel(std::int64_t value, const Request& r) {
  const double scale = r.shift == 0  ? r.slope
                       : r.shift > 0 ? r.slope * std::pow(2.0, r.shift)
                                     : r.slope / std::pow(2.0, -r.shift);
  const std::int64_t stored = low32(value - ei4::toInt(r.intercept));
  return scale == 1.0 || scale == 0.0 ? stored : ei4::toInt(static_cast<double>(stored) / scale);
}

void compare(const Request& r, const void* table, int bits) {
  const std::int64_t width = low32(std::abs(std::int64_t{r.window}));
  const std::int64_t low = low32(r.level - width / 2);
  std::int64_t lo = storedLevel(low, r);
  std::int64_t hi = storedLevel(low32(low + width), r);
  if (r.slope < 0) std::swap(lo, hi);
  const std::int64_t span = low32(hi - lo);
  const std::int64_t top = (std::int64_t{1} << r.outBits) - 1;
  const std::int64_t below = r.invert != 0 ? top : 0;
  const std::int64_t step = r.invert != 0 ? -top : top;
  const std::int64_t count = std::int64_t{1} << bits;
  const std::int64_t start = std::min(count, std::max(lo, std::int64_t{0}));
  const std::int64_t end = std::min(count, std::max(hi, std::int64_t{0}));
  for (std::int64_t i = 0; i < count; ++i) {
    std::int64_t value = i < start ? below : top - below;
    if (i >= start && i < end) value = low32(low32(low32(i - lo) * step) / span) + below;
    if (i >= end) value = top - below;
    if (r.outBits <= 8) {
      require(static_cast<const std::uint8_t*>(table)[i] == static_cast<std::uint8_t>(value), "each entry");
    } else {
      require(static_cast<const std::uint16_t*>(table)[i] == static_cast<std::uint16_t>(value), "each entry");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::Input input(data, size);
  Request r{};
  r.intercept = input.f64();
  r.slope = input.f64();
  r.window = input.i32();
  r.level = input.i32();
  r.invert = input.u8() & 1;
  r.inBits = input.i8();
  r.shift = input.i8();
  r.outBits = input.i8();
  r.tableBits = input.i8();

  const Convertab table = CreateConvertab(r.intercept, r.slope, r.window, r.level, r.invert, r.inBits,
                                          r.shift, r.outBits, r.tableBits);
  const int bits = std::max(r.inBits, r.tableBits);
  require((table != nullptr) == (bits >= 0 && bits <= 24 && r.outBits >= 0 && r.outBits <= 16),
          "a table is made if the bits are in range");
  if (table && bits <= kMostCompared) compare(r, table.get(), bits);
  return 0;
}
