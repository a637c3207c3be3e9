#include "gwav4/run_codes.h"

#include <bit>

namespace zel::gwav4 {
namespace {

constexpr RunCodes codesIn(unsigned bits) {
  int taken = 0;
  int decided = 0;
  std::uint64_t signs = 0;
  std::uint64_t decisions = 0;
  for (;;) {
    const unsigned rest = (bits >> taken) | (1U << 31);
    const int zeros = std::countr_zero(rest >> 1);
    const int extraBits = zeros > 0 ? zeros - 1 : 0;
    const int length = 1 + zeros + 1 + extraBits;
    if (taken + length > kRunCodeBits) break;
    const unsigned extra = (rest >> (zeros + 2)) & ((1U << extraBits) - 1);
    const int run = zeros == 0 ? 0 : static_cast<int>((1U << extraBits) + extra);
    signs |= std::uint64_t{rest & 1} << decided;
    decisions |= std::uint64_t{1} << decided;
    decided += 1 + run;
    taken += length;
  }
  return static_cast<std::uint64_t>(taken) | (static_cast<std::uint64_t>(decided) << 8) | (decisions << 16) |
         (signs << 40);
}

constexpr RunCodeTable makeTable() {
  RunCodeTable table{};
  unsigned bits = 0;
  for (RunCodes& codes : table.entries) codes = codesIn(bits++);
  return table;
}

}  // namespace

constexpr RunCodeTable kRunCodes = makeTable();

}  // namespace zel::gwav4
