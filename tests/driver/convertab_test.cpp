#include "driver/convertab.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "driver/to_int.h"

namespace {

struct Window {
  int window;
  int level;
  double slope = 1.0;
  double intercept = 0.0;
  int invert = 0;
  int shift = 0;
};

std::vector<int> table(const Window& w, int inBits, int outBits) {
  const Convertab made =
      CreateConvertab(w.intercept, w.slope, w.window, w.level, w.invert, inBits, w.shift, outBits, inBits);
  const auto count = std::size_t{1} << inBits;
  if (outBits <= 8) {
    const auto* entries = static_cast<const std::uint8_t*>(made.get());
    return std::vector<int>(entries, entries + count);
  }
  const auto* entries = static_cast<const std::uint16_t*>(made.get());
  return std::vector<int>(entries, entries + count);
}

// Sums and products in 64 bits, brought back to 32.
std::int64_t low32(std::int64_t wide) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(wide)); }

// The definition, entry by entry.
std::vector<int> slowTable(const Window& w, int inBits, int outBits) {
  const std::int64_t width = low32(std::abs(std::int64_t{w.window}));
  const std::int64_t low = low32(w.level - width / 2);
  const std::int64_t high = low32(low + width);
  std::int64_t lo = FieldhounsLevel(static_cast<int>(low), w.intercept, w.slope, w.shift);
  std::int64_t hi = FieldhounsLevel(static_cast<int>(high), w.intercept, w.slope, w.shift);
  if (w.slope < 0) std::swap(lo, hi);
  const std::int64_t span = low32(hi - lo);
  const std::int64_t top = (1 << outBits) - 1;
  const std::int64_t below = w.invert != 0 ? top : 0;
  const std::int64_t step = w.invert != 0 ? -top : top;
  const std::int64_t count = std::int64_t{1} << inBits;
  const std::int64_t start = std::min(count, std::max(lo, std::int64_t{0}));
  const std::int64_t end = std::min(count, std::max(hi, std::int64_t{0}));

  std::vector<int> entries(static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    std::int64_t value = below;
    if (i >= end) {
      value = top - below;
    } else if (i >= start) {
      value = low32(low32(low32(i - lo) * step) / span) + below;
    }
    const auto bits = static_cast<std::uint64_t>(value);
    entries[static_cast<std::size_t>(i)] =
        outBits <= 8 ? static_cast<std::uint8_t>(bits) : static_cast<std::uint16_t>(bits);
  }
  return entries;
}

}  // namespace

TEST(FieldhounsLevel, SubtractsTheTruncatedIntercept) {
  EXPECT_EQ(FieldhounsLevel(40, -1024.9, 1.0, 0), 1064);
  EXPECT_EQ(FieldhounsLevel(40, 1024.9, 1.0, 0), -984);
}

TEST(FieldhounsLevel, DividesByTheScaleTowardZero) {
  EXPECT_EQ(FieldhounsLevel(7, 0, 2.0, 0), 3);
  EXPECT_EQ(FieldhounsLevel(-7, 0, 2.0, 0), -3);
  EXPECT_EQ(FieldhounsLevel(7, 0, -2.0, 0), -3);
  EXPECT_EQ(FieldhounsLevel(7, 0, 0.5, 0), 14);
}

TEST(FieldhounsLevel, ScalesTheSlopeByTheShift) {
  EXPECT_EQ(FieldhounsLevel(100, 0, 1.0, 2), 25);
  EXPECT_EQ(FieldhounsLevel(100, 0, 1.0, -2), 400);
  EXPECT_EQ(FieldhounsLevel(100, 0, 0.25, 2), 100);
}

TEST(FieldhounsLevel, TakesAScaleOfZeroForOne) {
  EXPECT_EQ(FieldhounsLevel(40, -2, 0.0, 0), 42);
  EXPECT_EQ(FieldhounsLevel(40, -2, -0.0, 0), 42);
}

TEST(FieldhounsLevel, AnswersIntMinForWhatIsNoInt) {
  const double nan = std::nan("");
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(FieldhounsLevel(1, 0, nan, 0), INT_MIN);
  EXPECT_EQ(FieldhounsLevel(1, 0, infinity, 0), 0);
  EXPECT_EQ(FieldhounsLevel(1000, 0, 1e-9, 0), INT_MIN);
  EXPECT_EQ(FieldhounsLevel(0, nan, 1.0, 0), INT_MIN);        // 0 - INT_MIN wraps to itself
  EXPECT_EQ(FieldhounsLevel(-1, infinity, 1.0, 0), INT_MAX);  // -1 - INT_MIN
}

TEST(CreateConvertab, MapsTheWindowToFullScale) {
  const auto entries = table({.window = 400, .level = 40, .slope = 1, .intercept = -1024}, 16, 8);
  ASSERT_EQ(entries.size(), 65536U);
  EXPECT_EQ(entries[0], 0);
  EXPECT_EQ(entries[863], 0);
  EXPECT_EQ(entries[864], 0);
  EXPECT_EQ(entries[866], 1);
  EXPECT_EQ(entries[1064], 127);
  EXPECT_EQ(entries[1263], 254);
  EXPECT_EQ(entries[1264], 255);
  EXPECT_EQ(entries[65535], 255);
}

TEST(CreateConvertab, InvertsFromWhiteToBlack) {
  const auto entries = table({.window = 256, .level = 128, .invert = 1}, 8, 8);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(entries[static_cast<std::size_t>(i)], 255 - i * 255 / 256) << i;
}

TEST(CreateConvertab, TakesTheAbsoluteValueOfTheWindow) {
  EXPECT_EQ(table({.window = -400, .level = 40}, 16, 8), table({.window = 400, .level = 40}, 16, 8));
}

TEST(CreateConvertab, ExchangesTheEdgesForANegativeSlope) {
  // Rescaled -100 .. 100 is stored 100 .. -100.
  const auto entries = table({.window = 200, .level = 0, .slope = -1}, 8, 8);
  EXPECT_EQ(entries[0], 100 * 255 / 200);
  EXPECT_EQ(entries[99], 199 * 255 / 200);
  EXPECT_EQ(entries[100], 255);
}

TEST(CreateConvertab, StepsAtOneValueForAWindowOfZero) {
  const auto entries = table({.window = 0, .level = 100}, 8, 8);
  EXPECT_EQ(entries[99], 0);
  EXPECT_EQ(entries[100], 255);
}

TEST(CreateConvertab, HasWideEntriesForMoreThanEightBits) {
  const auto entries = table({.window = 4096, .level = 2048}, 16, 16);
  EXPECT_EQ(entries[2048], 2048 * 65535 / 4096);
  EXPECT_EQ(entries[4096], 65535);
}

TEST(CreateConvertab, HasAsManyEntriesAsTheLargerOfItsBits) {
  const Convertab made = CreateConvertab(0, 1, 256, 128, 0, /*inBits=*/8, 0, 8, /*tableBits=*/16);
  EXPECT_EQ(static_cast<const std::uint8_t*>(made.get())[65535], 255);
}

TEST(CreateConvertab, RefusesBitsOutOfRange) {
  EXPECT_EQ(CreateConvertab(0, 1, 256, 128, 0, 25, 0, 8, 8), nullptr);
  EXPECT_EQ(CreateConvertab(0, 1, 256, 128, 0, -1, 0, 8, -1), nullptr);
  EXPECT_EQ(CreateConvertab(0, 1, 256, 128, 0, 8, 0, 17, 8), nullptr);
  EXPECT_EQ(CreateConvertab(0, 1, 256, 128, 0, 8, 0, -1, 8), nullptr);
}

TEST(CreateConvertab, WrapsTheProductsOfAFull16BitWindow) {
  const auto entries = table({.window = 65536, .level = 32768}, 16, 16);
  EXPECT_EQ(entries[32768], 32767);
  // 32769 * 65535 - 2^32 = -2147450881; / 65536 = -32767, which is 32769 in 16 bits.
  // Unwrapped it would be 32768.
  EXPECT_EQ(entries[32769], 32769);
}

TEST(CreateConvertab, GivesCrossedEdgesTheUpperValue) {
  // A window of INT_MIN stays negative, so the upper edge lies 2^31 below the lower one, 100: below is
  // written up to there, then above over all of it.
  EXPECT_EQ(table({.window = INT_MIN, .level = 100 - (1 << 30)}, 8, 8), std::vector<int>(256, 255));
}

TEST(CreateConvertab, SurvivesTheLargestSpan) {
  // The edges are INT_MIN (what does not fit) and INT_MAX: the span wraps to -1, and
  // value 0 meets INT_MIN / -1.
  const Window widest{.window = 1 << 30, .level = -1, .slope = 536870911 / 2147483647.5};
  ASSERT_EQ(FieldhounsLevel(-1 - (1 << 29), 0, widest.slope, 0), INT_MIN);
  ASSERT_EQ(FieldhounsLevel(-1 + (1 << 29), 0, widest.slope, 0), INT_MAX);
  EXPECT_EQ(table(widest, 16, 8), slowTable(widest, 16, 8));
  EXPECT_EQ(table(widest, 16, 16), slowTable(widest, 16, 16));
}

TEST(CreateConvertab, EqualsItsDefinitionForOrdinaryAndHostileWindows) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::array windows = {1,     2,     3,       255,     256,     400,        -4096,
                              65535, 65536, 1 << 30, INT_MAX, INT_MIN, INT_MIN + 1};
  const std::array levels = {0, 40, -600, 2048, 32768, INT_MAX, INT_MIN};
  const std::array slopes = {1.0, 0.0, -1.0, 0.5, 2.44, -1e-5, 1e300, 5e-324, infinity, std::nan("")};
  const std::array intercepts = {0.0, -1024.0, 0.9, 1e20, -infinity};
  for (const int window : windows) {
    for (const int level : levels) {
      for (const double slope : slopes) {
        for (const double intercept : intercepts) {
          const int invert = (window ^ level) & 1;
          const Window w{
              .window = window, .level = level, .slope = slope, .intercept = intercept, .invert = invert};
          ASSERT_EQ(table(w, 8, 8), slowTable(w, 8, 8))
              << window << ' ' << level << ' ' << slope << ' ' << intercept;
          ASSERT_EQ(table(w, 12, 16), slowTable(w, 12, 16)) << window << ' ' << level << ' ' << slope;
        }
      }
    }
  }
}

TEST(CreateConvertab, EqualsItsDefinitionForRandomWindows) {
  std::mt19937 random(4);
  std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
  std::uniform_int_distribution<int> magnitude(1, 31);
  const auto number = [&] { return any(random) >> magnitude(random); };
  for (int round = 0; round < 200; ++round) {
    const Window w{.window = number(),
                   .level = number(),
                   .slope = number() / 1000.0,
                   .intercept = number() / 10.0,
                   .invert = round & 1,
                   .shift = round % 5 - 2};
    ASSERT_EQ(table(w, 16, 8), slowTable(w, 16, 8)) << round;
    ASSERT_EQ(table(w, 16, 16), slowTable(w, 16, 16)) << round;
  }
}
