#include "encoder/run_code.h"

#include <bit>

#include "encoder/encode_error.h"

namespace ei4::tools {

namespace {
constexpr int kTerminatorZeros = 40;
constexpr int kEndlessZeros = 41;
}  // namespace

void putRun(BitWriter& bits, std::uint64_t run) {
  if (run > kLongestRun) throw EncodeError("a run is too long for the run code");
  const int zeros = static_cast<int>(std::bit_width(run));
  bits.put(std::uint64_t{1} << zeros, zeros + 1);
  if (zeros > 1) bits.put(run, zeros - 1);
}

void putEndlessRun(BitWriter& bits) { bits.put(0, kEndlessZeros); }

void putTerminator(BitWriter& bits) { bits.put(std::uint64_t{1} << kTerminatorZeros, kTerminatorZeros + 1); }

int runCodeBits(std::uint64_t run) {
  const int zeros = static_cast<int>(std::bit_width(run));
  return zeros > 1 ? 2 * zeros : zeros + 1;
}

}  // namespace ei4::tools
