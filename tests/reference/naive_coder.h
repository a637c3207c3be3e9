// One significance sub-stream: how many coefficients of its bit position stay insignificant, then a sign, and
// so on.
#pragma once

#include <cstdint>

#include "reference/naive_bits.h"

namespace ei4::test {

class NaiveCoder {
 public:
  NaiveCoder() = default;  ///< not announced by the stream; must not be stepped

  /// Starts at the first bit of its chunk and reads its first run.
  explicit NaiveCoder(NaiveBits source) : m_Source(source) { m_Run = takeRun(); }

  struct Step {
    bool significant = false;
    bool negative = false;
  };
  /// Asks for one coefficient that is insignificant so far.
  Step step();

 private:
  std::int64_t takeRun();
  int takePrefix();

  NaiveBits m_Source;
  std::int64_t m_Run = 0;
  bool m_Terminated = false;
};

}  // namespace ei4::test
