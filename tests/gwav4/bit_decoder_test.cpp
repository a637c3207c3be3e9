#include "gwav4/bit_decoder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "encoder/bit_writer.h"
#include "gwav4/status.h"

namespace ei4::test {
namespace {

using zel::gwav4::CBitCoder;
using zel::gwav4::CBitDecoder;
using zel::gwav4::CBitInfiniteReader;
using zel::gwav4::CBitReader;
using zel::gwav4::CBitStreamer;

constexpr std::int64_t kEndless = 1073741825;  // 2^30 + 1

std::string zeros(int count) { return std::string(static_cast<std::size_t>(count), '0'); }
const std::string kTerminator = zeros(40) + "1";

/// Bits in the order of reading; behind them come zeros. The coder reads its first run when it is attached.
struct Coder {
  explicit Coder(const std::string& bits) : bytes(tools::bitsFrom(bits).bytes()) {
    const CBitReader start(bytes.data(), bytes.size());
    reader.create(&start, 0);
  }
  void attach() { decoder.attach(&reader, {0, 0, 0}); }

  std::vector<unsigned char> bytes;
  CBitInfiniteReader reader;
  CBitDecoder decoder;
};

struct RunCode {
  const char* name;
  std::string bits;
  std::int64_t run;
  long bitsRead;
};

class RunCodes : public testing::TestWithParam<RunCode> {};

TEST_P(RunCodes, GiveTheirRunAndTakeTheirBitsOnly) {
  // Ones behind the code: a reader that takes too many bits gives another value.
  Coder coder(GetParam().bits + "1111111");
  coder.attach();
  EXPECT_EQ(coder.decoder.run, GetParam().run);
  EXPECT_EQ(coder.decoder.getStoredTotal(), GetParam().bitsRead);
  EXPECT_EQ(coder.decoder.total, static_cast<std::uint64_t>(GetParam().run) + 1);
  EXPECT_EQ(coder.decoder.getTotal(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    CBitDecoder, RunCodes,
    testing::Values(RunCode{"Zero", "1", 0, 1}, RunCode{"One", "01", 1, 2}, RunCode{"Two", "001 0", 2, 4},
                    RunCode{"Three", "001 1", 3, 4}, RunCode{"Four", "0001 00", 4, 6},
                    RunCode{"FiveLowestBitFirst", "0001 10", 5, 6}, RunCode{"Six", "0001 01", 6, 6},
                    RunCode{"Seven", "0001 11", 7, 6}, RunCode{"Eight", "00001 000", 8, 8},
                    RunCode{"TwentyZeros", zeros(20) + "1" + "1" + zeros(18), (1 << 19) + 1, 40},
                    RunCode{"LongestPrefix", zeros(39) + "1" + zeros(38), std::int64_t{1} << 38, 78},
                    RunCode{"LongestRun", zeros(39) + "1" + std::string(38, '1'), (std::int64_t{1} << 39) - 1,
                            78},
                    RunCode{"Endless", zeros(41), kEndless, 41}),
    [](const auto& test) { return test.param.name; });

TEST(CBitDecoder, ReadsAnEndlessRunFromASourceThatStandsNowhere) {
  Coder coder("");
  coder.attach();
  EXPECT_EQ(coder.decoder.run, kEndless);
  EXPECT_EQ(coder.decoder.total, 1073741826U);  // 2^30 + 2
  EXPECT_FALSE(coder.decoder.terminated);
}

TEST(CBitDecoder, EndlessRunsAddUpInTheTotal) {
  Coder coder("");
  coder.attach();
  EXPECT_EQ(coder.decoder.readRun(), kEndless);
  EXPECT_EQ(coder.decoder.total, 2U * 1073741826U);
}

TEST(CBitDecoder, TakesTheValueBehindTheTerminatorAsItsFinalRun) {
  Coder coder(kTerminator + "0001 01" + kTerminator + "1");
  coder.attach();
  EXPECT_EQ(coder.decoder.run, 6);
  EXPECT_EQ(coder.decoder.total, 7U);
  EXPECT_TRUE(coder.decoder.terminated);
}

TEST(CBitDecoder, GivesARunOf41ForASecondTerminatorAndDoesNotCountIt) {
  Coder coder(kTerminator + "01" + kTerminator + "0001 01" + kTerminator + "1");
  coder.attach();
  EXPECT_EQ(coder.decoder.total, 2U);
  EXPECT_EQ(coder.decoder.readRun(), 41);
  EXPECT_EQ(coder.decoder.total, 2U);
  EXPECT_EQ(coder.decoder.readRun(), 6);  // no value was eaten by the terminator
  EXPECT_EQ(coder.decoder.total, 9U);
  EXPECT_EQ(coder.decoder.readRun(), 41);
  EXPECT_EQ(coder.decoder.readRun(), 0);
}

TEST(CBitDecoder, ReadsOnThroughTerminatorsBehindATerminator) {
  Coder coder(kTerminator + kTerminator + kTerminator + "001 1" + "1");
  coder.attach();
  EXPECT_EQ(coder.decoder.run, 3);
  EXPECT_EQ(coder.decoder.total, 4U);
  EXPECT_TRUE(coder.decoder.terminated);
  EXPECT_EQ(coder.decoder.readRun(), 0);
}

TEST(CBitDecoder, ReadsFiftyThousandNestedTerminatorsWithoutRecursion) {
  std::string bits;
  for (int i = 0; i < 50'000; ++i) bits += kTerminator;
  Coder coder(bits + "1");
  coder.attach();
  EXPECT_EQ(coder.decoder.run, 0);
}

TEST(CBitDecoder, TakesAnEndlessRunAsTheFinalOne) {
  Coder coder(kTerminator);
  coder.attach();
  EXPECT_EQ(coder.decoder.run, kEndless);
  EXPECT_TRUE(coder.decoder.terminated);
}

TEST(CBitDecoder, CodesRunsUpToAnyParameterAsTheirOwnPrefix) {
  Coder coder(
      "0001"
      "000001 01"
      "1");
  coder.decoder.source = &coder.reader;
  coder.decoder.k = 3;
  EXPECT_EQ(coder.decoder.readRun(), 3);
  EXPECT_EQ(coder.decoder.readRun(), 3 + 4 - 1 + 2);  // two bits more than the parameter
  EXPECT_EQ(coder.decoder.readRun(), 0);
}

TEST(CBitDecoder, StepsThroughRunsAndSigns) {
  // run 1, plus; run 0, minus; run 2, minus; then zeros
  Coder coder("01 0  1 1  001 0 1");
  coder.attach();
  const std::vector<int> wanted = {0, 1, -1, 0, 0, -1, 0, 0, 0};
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_EQ(coder.decoder.getTotal(), static_cast<long>(i));
    EXPECT_EQ(coder.decoder.step(), wanted[i]) << "coefficient " << i;
  }
}

TEST(CBitDecoder, CountsNoPositionWhenItIsFreshlyAttached) {
  Coder coder("0001 10");
  coder.attach();
  EXPECT_EQ(coder.decoder.run, 5);
  EXPECT_EQ(coder.decoder.total, 6U);
  EXPECT_EQ(coder.decoder.getTotal(), 0);
}

TEST(CBitDecoder, StartsEmpty) {
  const CBitDecoder decoder;
  EXPECT_EQ(decoder.run, -1);
  EXPECT_EQ(decoder.k, 1);
  EXPECT_EQ(decoder.total, 0U);
  EXPECT_EQ(decoder.source, nullptr);
  EXPECT_FALSE(decoder.terminated);
  EXPECT_EQ(decoder.getStoredTotal(), 0);  // without a source
  EXPECT_EQ(decoder.name(), "");
}

TEST(CBitDecoder, ForgetsItsPastWhenItIsAttachedAgain) {
  Coder coder(kTerminator + "01" + "0001 11");
  coder.attach();
  coder.decoder.k = 2;
  coder.decoder.attach(&coder.reader, {1, 8, 31});
  EXPECT_EQ(coder.decoder.k, 1);
  EXPECT_EQ(coder.decoder.run, 7);
  EXPECT_EQ(coder.decoder.total, 8U);
  EXPECT_FALSE(coder.decoder.terminated);
  EXPECT_EQ(coder.decoder.name(), "n coder for plane 1 ord 8 bits 31");
}

TEST(CBitDecoder, PassesOnTheEndOfAFiniteSource) {
  Coder coder("0");
  coder.reader.setInfinite(false);
  try {
    coder.attach();
    FAIL() << "no end";
  } catch (int reason) {
    EXPECT_EQ(reason, zel::gwav4::kEndOfData);
  }
}

TEST(CBitDecoder, AnswersWhatItIs) {
  static_assert(std::is_base_of_v<CBitStreamer, CBitCoder>);
  Coder coder("1");
  coder.attach();
  const CBitStreamer& streamer = coder.decoder;
  EXPECT_STREQ(streamer.getType(), "buffer");  // its source's
  EXPECT_EQ(streamer.getMode(), 'w');          // Quirk decoder-mode-is-write
  EXPECT_STREQ(streamer.getCode(), "rleish");
  EXPECT_EQ(streamer.getTotal(), 0);
  EXPECT_EQ(streamer.getStoredTotal(), 1);
}

}  // namespace
}  // namespace ei4::test
