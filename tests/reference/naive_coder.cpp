#include "reference/naive_coder.h"

namespace ei4::test {
namespace {

constexpr int kParameter = 1;          // runs up to this one are their own prefix
constexpr int kTerminatorPrefix = 40;  // zeros in front of a 1
constexpr int kEndlessPrefix = 41;     // zeros, no 1 behind them
constexpr std::int64_t kEndlessRun = (std::int64_t{1} << 30) + 1;
constexpr std::int64_t kRunAfterTerminator = 41;

}  // namespace

NaiveCoder::Step NaiveCoder::step() {
  --m_Run;
  if (m_Run >= 0) return {};
  const bool negative = m_Source.takeOrZero() == 1;
  m_Run = takeRun();
  return {true, negative};
}

int NaiveCoder::takePrefix() {
  int zeros = 0;
  while (zeros < kEndlessPrefix) {
    if (m_Source.takeOrZero() == 1) return zeros;
    ++zeros;
  }
  return zeros;
}

std::int64_t NaiveCoder::takeRun() {
  int prefix = takePrefix();
  if (prefix == kTerminatorPrefix && m_Terminated) return kRunAfterTerminator;
  while (prefix == kTerminatorPrefix) {  // escapes behind an escape each ask for one value more
    m_Terminated = true;
    prefix = takePrefix();
  }
  if (prefix == kEndlessPrefix) return kEndlessRun;
  if (prefix <= kParameter) return prefix;

  const int extra = prefix - kParameter;
  std::int64_t value = 0;
  for (int i = 0; i < extra; ++i) value |= std::int64_t{m_Source.takeOrZero()} << i;
  return kParameter + (std::int64_t{1} << extra) - 1 + value;
}

}  // namespace ei4::test
