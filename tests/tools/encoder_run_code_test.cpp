#include "encoder/run_code.h"

#include <gtest/gtest.h>

#include "encoder/encode_error.h"

namespace {

using ei4::tools::BitWriter;
using ei4::tools::kLongestRun;
using ei4::tools::putRun;
using ei4::tools::runCodeBits;

std::string textOf(const BitWriter& bits) {
  const std::vector<unsigned char> bytes = bits.bytes();
  std::string text;
  for (std::uint64_t i = 0; i < bits.bitCount(); ++i)
    text += ((bytes[i / 8] >> (i % 8)) & 1) != 0 ? '1' : '0';
  return text;
}

std::string codeOf(std::uint64_t run) {
  BitWriter bits;
  putRun(bits, run);
  return textOf(bits);
}

/// Reads a code back step by step as the format describes it, with k = 1.
std::uint64_t runOf(const std::string& code) {
  const std::size_t zeros = code.find('1');
  if (zeros <= 1) return zeros;
  const std::size_t extra = zeros - 1;
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < extra; ++i) value |= static_cast<std::uint64_t>(code[zeros + 1 + i] - '0') << i;
  EXPECT_EQ(code.size(), zeros + 1 + extra);
  return 1 + (std::uint64_t{1} << extra) - 1 + value;
}

TEST(RunCode, HasShortCodesForShortRuns) {
  EXPECT_EQ(codeOf(0), "1");
  EXPECT_EQ(codeOf(1), "01");
  EXPECT_EQ(codeOf(2), "0010");
  EXPECT_EQ(codeOf(3), "0011");
  EXPECT_EQ(codeOf(6), "000101");
}

TEST(RunCode, ReadsBackForEveryLength) {
  for (std::uint64_t run = 0; run < 5000; ++run) EXPECT_EQ(runOf(codeOf(run)), run);
  for (int bit = 12; bit < 39; ++bit) {
    const std::uint64_t power = std::uint64_t{1} << bit;
    for (const std::uint64_t run : {power - 1, power, power + 1}) EXPECT_EQ(runOf(codeOf(run)), run);
  }
}

TEST(RunCode, CountsItsBits) {
  for (std::uint64_t run = 0; run < 5000; ++run)
    EXPECT_EQ(static_cast<std::size_t>(runCodeBits(run)), codeOf(run).size());
}

TEST(RunCode, StopsBeforeTheEscape) {
  EXPECT_EQ(codeOf(kLongestRun).find('1'), 39U);
  BitWriter bits;
  EXPECT_THROW(putRun(bits, kLongestRun + 1), ei4::tools::EncodeError);
}

TEST(RunCode, EndlessRunIs41Zeros) {
  BitWriter bits;
  ei4::tools::putEndlessRun(bits);
  EXPECT_EQ(textOf(bits), std::string(41, '0'));
}

TEST(RunCode, TerminatorIs40ZerosAndAOne) {
  BitWriter bits;
  ei4::tools::putTerminator(bits);
  EXPECT_EQ(textOf(bits), std::string(40, '0') + "1");
}

}  // namespace
