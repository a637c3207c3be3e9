#include "encoder/forward_transform.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <vector>

#include "tools/test_pictures.h"

namespace {

using ei4::test::Dice;
using ei4::tools::forwardTransform;
using ei4::tools::roundedHalf;
using ei4::tools::roundedQuarter;
using ei4::tools::usefulLevels;

int sign(int v) { return v < 0 ? -1 : 1; }
int slowHalf(int v) { return sign(v) * ((std::abs(v) + 1) / 2); }
int slowQuarter(int v) { return sign(v) * ((std::abs(v) + 2) / 4); }

// The inverse as the reversible 5/3 lifting is published, its line ends written out one by one: nothing here
// is shared with the forward transform, which mirrors instead.
template <typename Sample>
void invertLine(int n, const std::function<Sample&(int)>& a) {
  if (n < 2) return;
  const auto add = [&a](int i, int value) { a(i) = static_cast<Sample>(a(i) + value); };
  add(0, -slowHalf(a(1)));
  if (n == 2) {
    add(1, a(0));
    return;
  }
  int p = 2;
  for (; p < n - 2; p += 2) {
    add(p, -slowQuarter(a(p - 1) + a(p + 1)));
    add(p - 1, slowHalf(a(p) + a(p - 2)));
  }
  if (p + 1 >= n) {
    add(p, -slowHalf(a(p - 1)));
    add(p - 1, slowHalf(a(p) + a(p - 2)));
  } else {
    add(p, -slowQuarter(a(p - 1) + a(p + 1)));
    add(p - 1, slowHalf(a(p) + a(p - 2)));
    add(p + 1, a(p));
  }
}

template <typename Sample>
std::vector<Sample> inverted(std::vector<Sample> samples, int width, int height, int levels) {
  const auto at = [&](int x, int y) -> Sample& {
    return samples[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
  };
  for (int level = levels - 1; level >= 0; --level) {
    const int s = 1 << level;
    for (int x = 0; x < width; x += s) {
      invertLine<Sample>((height + s - 1) / s, [&](int i) -> Sample& { return at(x, i * s); });
    }
    for (int y = 0; y < height; y += s) {
      invertLine<Sample>((width + s - 1) / s, [&](int i) -> Sample& { return at(i * s, y); });
    }
  }
  return samples;
}

template <typename Sample>
std::vector<Sample> noise(int width, int height, int least, int most) {
  Dice dice(static_cast<std::uint64_t>(width * 100 + height));
  std::vector<Sample> samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (Sample& sample : samples) sample = static_cast<Sample>(least + dice.upTo(most - least));
  return samples;
}

template <typename Sample>
void expectUndone(int width, int height, int levels, int least, int most) {
  const std::vector<Sample> original = noise<Sample>(width, height, least, most);
  std::vector<Sample> samples = original;
  forwardTransform(samples.data(), width, height, levels);
  EXPECT_EQ(inverted(samples, width, height, std::min(levels, usefulLevels(width, height))), original)
      << width << " x " << height << ", " << levels << " levels";
}

TEST(Rounding, SendsHalvesAwayFromZero) {
  for (int v = -1000; v <= 1000; ++v) {
    EXPECT_EQ(roundedHalf(v), slowHalf(v)) << v;
    EXPECT_EQ(roundedQuarter(v), slowQuarter(v)) << v;
  }
  EXPECT_EQ(roundedHalf(-1), -1);
  EXPECT_EQ(roundedHalf(-3), -2);
  EXPECT_EQ(roundedQuarter(-2), -1);
  EXPECT_EQ(roundedQuarter(-1), 0);
  EXPECT_EQ(roundedQuarter(6), 2);
}

TEST(UsefulLevels, ReachTheLongerSide) {
  EXPECT_EQ(usefulLevels(1, 1), 0);
  EXPECT_EQ(usefulLevels(1, 2), 1);
  EXPECT_EQ(usefulLevels(3, 2), 2);
  EXPECT_EQ(usefulLevels(256, 1), 8);
  EXPECT_EQ(usefulLevels(257, 1), 9);
}

TEST(ForwardTransform, IsUndoneForEveryLineLengthInBothDirections) {
  for (int n = 1; n <= 70; ++n) {
    for (int other = 1; other <= 5; ++other) {
      expectUndone<std::int32_t>(n, other, 8, 0, 4095);
      expectUndone<std::int32_t>(other, n, 8, 0, 4095);
    }
  }
}

TEST(ForwardTransform, IsUndoneAtEveryLevelCount) {
  for (int levels = 0; levels <= 8; ++levels) {
    expectUndone<std::int32_t>(37, 70, levels, 0, 65535);
    expectUndone<std::int16_t>(64, 33, levels, 0, 2047);
    expectUndone<std::int16_t>(1, 1, levels, 0, 255);
  }
}

TEST(ForwardTransform, IsUndoneEvenWhereSixteenBitsWrap) {
  expectUndone<std::int16_t>(61, 45, 5, -32768, 32767);
}

TEST(ForwardTransform, LeavesASinglePixelAlone) {
  std::int32_t sample = 77;
  forwardTransform(&sample, 1, 1, 8);
  EXPECT_EQ(sample, 77);
}

TEST(ForwardTransform, KeepsTheMeanLevelAndNoDetailOfAFlatPicture) {
  std::vector<std::int32_t> samples(240, 500);
  forwardTransform(samples.data(), 20, 12, 3);
  for (int y = 0; y < 12; ++y) {
    for (int x = 0; x < 20; ++x) {
      EXPECT_EQ(samples[static_cast<std::size_t>(y * 20 + x)], x % 8 == 0 && y % 8 == 0 ? 500 : 0)
          << x << "," << y;
    }
  }
}

// By hand, one level of the line 10 20 40 10 30: high 20 - half(50) = -5, 10 - half(70) = -25; low
// 10 + quarter(-10) = 10 - 3 = 7, 40 + quarter(-30) = 40 - 8 = 32, 30 + quarter(-50) = 30 - 13 = 17.
TEST(ForwardTransform, GivesTheValuesReckonedByHand) {
  std::vector<std::int32_t> line = {10, 20, 40, 10, 30};
  forwardTransform(line.data(), 5, 1, 1);
  EXPECT_EQ(line, (std::vector<std::int32_t>{7, -5, 32, -25, 17}));
}

// Rows before columns: with rounding the other sequence gives other values for this picture.
TEST(ForwardTransform, LiftsRowsBeforeColumns) {
  const std::vector<std::int32_t> original = noise<std::int32_t>(9, 9, 0, 255);
  std::vector<std::int32_t> samples = original;
  forwardTransform(samples.data(), 9, 9, 1);
  std::vector<std::int32_t> transposed(81);
  for (std::size_t y = 0; y < 9; ++y) {
    for (std::size_t x = 0; x < 9; ++x) transposed[x * 9 + y] = original[y * 9 + x];
  }
  forwardTransform(transposed.data(), 9, 9, 1);
  std::vector<std::int32_t> back(81);
  for (std::size_t y = 0; y < 9; ++y) {
    for (std::size_t x = 0; x < 9; ++x) back[y * 9 + x] = transposed[x * 9 + y];
  }
  EXPECT_NE(back, samples);
  EXPECT_EQ(inverted(samples, 9, 9, 1), original);
}

}  // namespace
