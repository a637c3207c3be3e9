#include "gwav4/header.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "support/stream_builder.h"

namespace ei4::test {
namespace {

using zel::gwav4::CGWavHeader;
using zel::gwav4::chooseLevels;
using zel::gwav4::getBestFactor;
using zel::gwav4::halveUp;
using zel::gwav4::LevelChoice;
using zel::gwav4::parseHeader;
using zel::gwav4::Version;
using zel::gwav4::versionOf;

constexpr int kUntouched = -77;
constexpr unsigned long kUntouchedBytes = 77;

struct Answer {
  int result = kUntouched;
  int readBudget = kUntouched;
  int factor = kUntouched;
  int xSize = kUntouched;
  int ySize = kUntouched;
  unsigned long byteSize = kUntouchedBytes;
  int bytesPerPixel = kUntouched;
  int bitsPerPixel = kUntouched;
};

Answer ask(int wantedSize, const std::vector<unsigned char>& header) {
  Answer a;
  a.result = getBestFactor(wantedSize, &a.readBudget, &a.factor, header.data(), header.size(), &a.xSize,
                           &a.ySize, &a.byteSize, &a.bytesPerPixel, &a.bitsPerPixel);
  return a;
}

StreamHeader picture(int width, int height, int bytesPerPixel, int bits) {
  return {Magic::GW41, bytesPerPixel, bits, width, height};
}

TEST(ParseHeader, ReadsEachFieldLittleEndian) {
  const std::array<unsigned char, 16> bytes = {'G',  'W',  '4', '0', 2, 12, 0x34, 0x12,
                                               0x78, 0x56, 1,   2,   3, 4,  5,    255};
  const auto header = parseHeader(bytes.data());
  EXPECT_EQ(std::string(header.magic.begin(), header.magic.end()), "GW40");
  EXPECT_EQ(header.bytesPerPixel, 2);
  EXPECT_EQ(header.bitsPerPixel, 12);
  EXPECT_EQ(header.xSize, 0x1234);
  EXPECT_EQ(header.ySize, 0x5678);
  EXPECT_EQ(header.reserved, (std::array<std::uint8_t, 6>{1, 2, 3, 4, 5, 255}));
}

TEST(ParseHeader, TellsTheVersionsApart) {
  const auto version = [](const char* magic) {
    std::vector<unsigned char> bytes(16);
    std::copy_n(magic, 4, bytes.begin());
    return versionOf(parseHeader(bytes.data()));
  };
  EXPECT_EQ(version("GW40"), Version::gw40);
  EXPECT_EQ(version("GW41"), Version::gw41);
  EXPECT_EQ(version("GW42"), Version::unknown);
  EXPECT_EQ(version("gw41"), Version::unknown);
  EXPECT_EQ(version("GW4"), Version::unknown);
  EXPECT_EQ(version("XW41"), Version::unknown);
}

struct Example {
  const char* what;
  StreamHeader header;
  int wanted;
  int factor, xSize, ySize, readBudget;
};

class BestFactorExamples : public testing::TestWithParam<Example> {};

TEST_P(BestFactorExamples, GivesFactorSizeAndBudget) {
  const Example& e = GetParam();
  const Answer a = ask(e.wanted, headerBytes(e.header));
  EXPECT_EQ(a.result, 1);
  EXPECT_EQ(a.factor, e.factor);
  EXPECT_EQ(a.xSize, e.xSize);
  EXPECT_EQ(a.ySize, e.ySize);
  EXPECT_EQ(a.readBudget, e.readBudget);
  EXPECT_EQ(a.byteSize, static_cast<unsigned long>(e.header.bytesPerPixel * e.xSize * e.ySize));
  EXPECT_EQ(a.bytesPerPixel, e.header.bytesPerPixel);
  EXPECT_EQ(a.bitsPerPixel, e.header.bitsPerPixel);
}

// Budgets above 8192 were computed by hand: 1024 * trunc(k / (6.25 ln k - 15)), k = bits / 8000.
INSTANTIATE_TEST_SUITE_P(
    Header, BestFactorExamples,
    testing::Values(
        Example{"a quarter of a square", picture(2048, 2048, 2, 12), 512, 2, 512, 512, 17408},
        Example{"stage B adds a halving", picture(2048, 2500, 2, 12), 256, 4, 128, 157, 8192},
        Example{"a budget below 8192", picture(4096, 3328, 2, 12), 300, 4, 256, 208, 6144},
        Example{"8-bit grey", picture(1024, 1024, 1, 8), 1000, 1, 512, 512, 13312},
        Example{"colour counts three components", picture(3000, 2000, 3, 8), 100, 5, 94, 63, 8192},
        Example{"only stage B", picture(40, 3000, 2, 12), 64, 2, 10, 750, 8192},
        Example{"as large as the picture", picture(640, 480, 1, 8), 640, 0, 640, 480, -1},
        Example{"larger than the picture", picture(640, 480, 1, 8), 5000, 0, 640, 480, -1},
        Example{"height 16, wish not below it", picture(4000, 16, 1, 8), 16, 0, 4000, 16, -1},
        Example{"height 16, wish below it: stage B until the height is", picture(4000, 16, 1, 8), 15, 1, 2000,
                8, 8192},
        Example{"height 17 halves once more than 16", picture(4000, 17, 1, 8), 100, 1, 2000, 9, 8192},
        Example{"width 16, wish below the height", picture(16, 4000, 1, 8), 100, 0, 16, 4000, -1},
        Example{"full size", picture(2048, 2500, 2, 12), 0, 0, 2048, 2500, -1},
        Example{"a negative wish stops at 16", picture(64, 64, 1, 8), -1, 2, 16, 16, 8192},
        Example{"empty picture", picture(0, 0, 1, 8), 10, 0, 0, 0, -1}),
    [](const auto& test) {
      std::string name = test.param.what;
      std::replace_if(
          name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
      return name;
    });

TEST(GetBestFactor, TakesGW40AsGW41) {
  StreamHeader header = picture(2048, 2048, 2, 12);
  header.magic = Magic::GW40;
  const Answer a = ask(512, headerBytes(header));
  EXPECT_EQ(a.result, 1);
  EXPECT_EQ(a.factor, 2);
  EXPECT_EQ(a.readBudget, 17408);
}

TEST(GetBestFactor, TakesMoreThanTheHeader) {
  auto bytes = headerBytes(picture(100, 50, 1, 8));
  bytes.resize(1000, 0xFF);
  EXPECT_EQ(ask(0, bytes).xSize, 100);
}

TEST(GetBestFactor, BudgetStaysAt8192JustBelow40) {
  // 200 x 200 x 8 = 320,000 bits: k is exactly 40 and the estimate applies; one row less is still a constant.
  EXPECT_EQ(ask(399, headerBytes(picture(400, 400, 1, 8))).readBudget, 1024 * 4);  // 40 / 8.056 = 4.97
  EXPECT_EQ(ask(399, headerBytes(picture(400, 398, 1, 8))).readBudget, 8192);
}

void expectOnlyFactorAndBudget(const Answer& a, int readBudget) {
  EXPECT_EQ(a.result, 0);
  EXPECT_EQ(a.factor, 0);
  EXPECT_EQ(a.readBudget, readBudget);
  EXPECT_EQ(a.xSize, kUntouched);
  EXPECT_EQ(a.ySize, kUntouched);
  EXPECT_EQ(a.byteSize, kUntouchedBytes);
  EXPECT_EQ(a.bytesPerPixel, kUntouched);
  EXPECT_EQ(a.bitsPerPixel, kUntouched);
}

TEST(GetBestFactor, RefusesAShortHeaderAndTouchesOnlyTheFactor) {
  auto bytes = headerBytes(picture(2048, 2048, 2, 12));
  bytes.pop_back();
  expectOnlyFactorAndBudget(ask(512, bytes), kUntouched);
  expectOnlyFactorAndBudget(ask(0, bytes), -1);  // for the full size the budget is set before the check
}

TEST(GetBestFactor, RefusesAForeignMagicAndTouchesOnlyTheFactor) {
  auto bytes = headerBytes(picture(2048, 2048, 2, 12));
  bytes[3] = '2';
  expectOnlyFactorAndBudget(ask(512, bytes), kUntouched);
  expectOnlyFactorAndBudget(ask(0, bytes), -1);
}

TEST(GetBestFactor, AcceptsNullForEveryOptionalOutput) {
  const auto bytes = headerBytes(picture(2048, 2048, 2, 12));
  int factor = kUntouched;
  EXPECT_EQ(getBestFactor(0, nullptr, &factor, bytes.data(), bytes.size(), nullptr, nullptr, nullptr, nullptr,
                          nullptr),
            1);
  EXPECT_EQ(factor, 0);
  int x = 0, y = 0;
  EXPECT_EQ(
      getBestFactor(512, nullptr, &factor, bytes.data(), bytes.size(), &x, &y, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(factor, 2);
  EXPECT_EQ(x, 512);
  EXPECT_EQ(y, 512);
}

TEST(GetBestFactor, ReportsBytesPerPixelWithoutJudgingThem) {
  const Answer a = ask(0, headerBytes(picture(10, 10, 7, 200)));
  EXPECT_EQ(a.result, 1);
  EXPECT_EQ(a.bytesPerPixel, 7);
  EXPECT_EQ(a.bitsPerPixel, 200);
  EXPECT_EQ(a.byteSize, 700UL);
}

TEST(GetBestFactor, ByteSizeWrapsAt32BitsAndIsWidenedWithItsSign) {
  // 65535 * 65535 * 3 = 12,884,508,675 = 3 * 2^32 - 393,213
  const Answer a = ask(0, headerBytes(picture(65535, 65535, 3, 8)));
  EXPECT_EQ(a.byteSize, static_cast<unsigned long>(-393213L));
}

TEST(GetBestFactor, BudgetProductWrapsAt32Bits) {
  // 32768 x 32768 samples after one halving: 2^30, times the bits per pixel.
  EXPECT_EQ(ask(40000, headerBytes(picture(65535, 65535, 1, 4))).readBudget, 8192);  // 2^32 wraps to 0
  EXPECT_EQ(ask(40000, headerBytes(picture(65535, 65535, 2, 10))).readBudget,
            8192);  // 5 * 2^31 wraps to -2^31
  // 5 * 2^30 wraps to 2^30: k = 134217, 134217 / (6.25 ln 134217 - 15) = 2282.8
  const int budget = ask(40000, headerBytes(picture(65535, 65535, 1, 5))).readBudget;
  EXPECT_EQ(budget, 2282 * 1024);
}

TEST(LevelChoice, GivesLevelsToTheConversionOnceTheCapIsReached) {
  struct Row {
    int factor, skipLevels, outputShift;
  };
  for (const Row& row : {Row{0, 0, 0}, Row{1, 1, 0}, Row{2, 1, 1}, Row{3, 2, 1}, Row{4, 2, 2}, Row{5, 3, 2},
                         Row{6, 4, 2}, Row{7, 4, 3}, Row{100, 4, 96}, Row{-1, 0, 0}, Row{-100, 0, 0}}) {
    const LevelChoice choice = chooseLevels(2048, 2048, row.factor);
    EXPECT_EQ(choice.levels, 8);
    EXPECT_EQ(choice.skipLevels, row.skipLevels) << row.factor;
    EXPECT_EQ(choice.outputShift, row.outputShift) << row.factor;
  }
}

TEST(LevelChoice, CountsTheLevelsThatLeave8SamplesASide) {
  const auto levels = [](int width, int height) { return chooseLevels(width, height, 0).levels; };
  EXPECT_EQ(levels(100, 100), 3);
  EXPECT_EQ(levels(2048, 65535), 8);
  EXPECT_EQ(levels(2047, 65535), 7);
  EXPECT_EQ(levels(65535, 65535), 8);
  EXPECT_EQ(levels(16, 16), 1);
  EXPECT_EQ(levels(15, 4000), 0);
  EXPECT_EQ(levels(4000, 15), 0);
  EXPECT_EQ(levels(31, 4000), 1);
  EXPECT_EQ(levels(32, 4000), 2);
  EXPECT_EQ(levels(0, 0), 0);
  EXPECT_EQ(levels(1, 1), 0);
}

TEST(LevelChoice, NeverLeavesOutMoreLevelsThanThereAre) {
  const LevelChoice choice = chooseLevels(40, 40, 6);  // 40 >> 3 = 5: two levels
  EXPECT_EQ(choice.levels, 2);
  EXPECT_EQ(choice.skipLevels, 2);
  EXPECT_EQ(choice.outputShift, 4);
  EXPECT_EQ(choice.xSize, 10);
  EXPECT_EQ(choice.ySize, 10);
}

TEST(LevelChoice, RoundsTheDecodedSizeUp) {
  const LevelChoice choice = chooseLevels(2047, 1025, 6);
  EXPECT_EQ(choice.skipLevels, 4);
  EXPECT_EQ(choice.xSize, 128);
  EXPECT_EQ(choice.ySize, 65);
}

TEST(HalveUp, RoundsUpForAnyCount) {
  EXPECT_EQ(halveUp(0, 0), 0);
  EXPECT_EQ(halveUp(0, 5), 0);
  EXPECT_EQ(halveUp(5, 0), 5);
  EXPECT_EQ(halveUp(5, 1), 3);
  EXPECT_EQ(halveUp(65535, 16), 1);
  EXPECT_EQ(halveUp(65535, 1000), 1);
}

TEST(HalveUp, ComposesSoThatBothSidesAgreeOnTheSize) {
  for (const int width : {1, 7, 16, 33, 100, 517, 2048, 65535}) {
    for (int factor = 0; factor <= 12; ++factor) {
      const LevelChoice choice = chooseLevels(width, 2048, factor);
      EXPECT_EQ(halveUp(choice.xSize, choice.outputShift), halveUp(width, factor))
          << width << " / 2^" << factor;
    }
  }
}

TEST(CGWavHeader, ShowsTheFieldsOfTheStream) {
  const auto bytes = headerBytes(picture(300, 200, 2, 14));
  const CGWavHeader header(bytes.data());
  EXPECT_EQ(header.version(), Version::gw41);
  EXPECT_EQ(header.headerBytesPerPixel(), 2);
  EXPECT_EQ(header.headerBitsPerPixel(), 14);
  EXPECT_EQ(header.headerWidth(), 300);
  EXPECT_EQ(header.headerHeight(), 200);
}

}  // namespace
}  // namespace ei4::test
