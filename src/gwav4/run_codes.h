// Several events of a significance stream at a glance.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zel::gwav4 {

/// What the next bits of a significance stream say, when they start with an event: a sign bit and the code of
/// the run behind it, as CBitDecoder describes them. Only events that end within the bits are counted; where
/// not even the first one does, all fields are 0.
///
/// Packed into a word, because the time to take it apart is what decoding costs:
///   bits  0 to  5  stream bits taken
///   bits  8 to 15  coefficients decided
///   bits 16 to 39  the decisions: 1 for a coefficient that becomes significant; the first one is bit 16 and a 1
///   bits 40 to 63  1 for each of these ones that is a minus, in the same places
/// The first two fields of five entries add up without a carry.
using RunCodes = std::uint64_t;

inline constexpr int kRunCodeBits = 11;  ///< 2048 entries leave room in the first-level cache

struct RunCodeTable {
  static constexpr std::size_t kEntries = std::size_t{1} << kRunCodeBits;

  RunCodes entries[kEntries];  ///< indexed by the next bits, the first one lowest
};
extern const RunCodeTable kRunCodes;

}  // namespace zel::gwav4
