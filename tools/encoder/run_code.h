#pragma once

#include <cstdint>

#include "encoder/bit_writer.h"

namespace ei4::tools {

/// The longest run with a code of its own: 39 zeros in front, 38 bits behind.
inline constexpr std::uint64_t kLongestRun = (std::uint64_t{1} << 39) - 1;

/// What the decoder takes 41 zeros for, and so what any coder reads once its data has ended.
inline constexpr std::uint64_t kEndlessRun = (std::uint64_t{1} << 30) + 1;

/// Appends the code of a run of `run` insignificant coefficients, 0..kLongestRun (EncodeError above): 0 is
/// "1", 1 is "01"; from 2 on the count of leading zeros is the bit length of the run, and its bits below the
/// top one follow the 1, lowest first.
void putRun(BitWriter& bits, std::uint64_t run);

/// Appends 41 zeros: a run that no picture outlasts.
void putEndlessRun(BitWriter& bits);

/// Appends 40 zeros and a 1: the next run value is the coder's last. A coder that has already seen one
/// takes it for a run of 41 instead.
void putTerminator(BitWriter& bits);

/// Bits that putRun(run) appends.
int runCodeBits(std::uint64_t run);

}  // namespace ei4::tools
