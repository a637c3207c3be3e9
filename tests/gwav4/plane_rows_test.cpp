#include "gwav4/plane_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "coded_orders.h"
#include "encoder/forward_transform.h"
#include "reference/naive_transform.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using zel::gwav4::BlockScratch;
using zel::gwav4::kernels;
using zel::gwav4::kRowSlack;
using zel::gwav4::LaneKernel;
using zel::gwav4::levelsToInvert;
using zel::gwav4::PlaneRows;
using zel::gwav4::PlaneShape;

using Samples = std::vector<std::int32_t>;

/// A plane of coefficients in the interleaved layout.
struct Plane {
  int width;
  int height;
  Samples samples;
};

template <class Next>
Plane randomPlane(int width, int height, Next next) {
  Plane plane = {width, height, Samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
  for (std::int32_t& sample : plane.samples) sample = next();
  return plane;
}

Samples invertedByReference(const Plane& plane, int levels, int storageBits) {
  NaivePlane naive;
  naive.width = plane.width;
  naive.height = plane.height;
  naive.storageBits = storageBits;
  naive.samples = plane.samples;
  invertLevels(naive, levels);
  return naive.samples;
}

struct Made {
  Samples samples;
  bool withinLimits = false;
};

struct Wish {
  int levels;
  bool inverted = true;
  int rowEnd = 65536;
  bool stopped = false;
};

/// All rows of a plane, from coded streams. Behind each row everything but the slack must stay as it is.
template <class Lane>
Made madeRows(const LaneKernel<Lane>& kernel, const Plane& plane, const Wish& wish) {
  constexpr Lane kGuard = 0x5A5A;
  const PlaneShape shape = {plane.width, plane.height, levelsToInvert(wish.levels, plane.width, plane.height),
                            wish.inverted};
  CodedOrders coded(topOf(plane.samples), sortedIntoOrders(plane.samples, plane.width, shape.levels));
  const std::atomic<bool> stopped = wish.stopped;
  const auto scratch = std::make_unique<BlockScratch>();
  PlaneRows<Lane> rows(kernel, coded.cursors, shape, {wish.rowEnd, &stopped}, *scratch);
  const auto width = static_cast<std::size_t>(plane.width);
  std::array<std::vector<Lane>, 2> memory;
  Made made;
  for (int y = 0;;) {
    for (auto& row : memory) row.assign(width + kRowSlack + 20, kGuard);
    const int count = rows.next(memory[0].data(), memory[1].data());
    if (count == 0) {
      EXPECT_EQ(y, plane.height);
      break;
    }
    EXPECT_LE(count, 2);
    y += count;
    for (std::size_t i = 0; i < 2; ++i) {
      const auto begin = memory[i].begin();
      if (i < static_cast<std::size_t>(count)) {
        made.samples.insert(made.samples.end(), begin, begin + plane.width);
      }
      EXPECT_EQ(std::count(memory[i].end() - 20, memory[i].end(), kGuard), 20);
    }
  }
  made.withinLimits = rows.withinLimits();
  return made;
}

std::string named(const Plane& plane, int levels) {
  return std::to_string(plane.width) + " x " + std::to_string(plane.height) + ", " + std::to_string(levels) +
         " levels";
}

/// Wide and wrapped lanes on any coefficients there can be, so that sums and stores wrap; narrow ones on small ones.
void expectTheReference(int width, int height, int levels, unsigned seed) {
  Dice dice(seed);
  const Plane any = randomPlane(width, height, [&] { return dice.any(); });
  ASSERT_EQ(madeRows(kernels().wide, any, {levels}).samples, invertedByReference(any, levels, 32))
      << named(any, levels);
  const Plane shorts = randomPlane(width, height, [&] { return static_cast<std::int16_t>(dice.any()); });
  ASSERT_EQ(madeRows(kernels().wrapped, shorts, {levels}).samples, invertedByReference(shorts, levels, 16))
      << named(shorts, levels);
  const Plane small = randomPlane(width, height, [&] { return dice.between(-255, 255); });
  const Made made = madeRows(kernels().narrow, small, {levels});
  ASSERT_TRUE(made.withinLimits) << named(small, levels);
  ASSERT_EQ(made.samples, invertedByReference(small, levels, 32)) << named(small, levels);
}

TEST(PlaneRows, EqualWholePassesAtEverySmallSizeAndDepth) {
  unsigned seed = 0;
  for (int width = 1; width <= 18; ++width) {
    for (int height = 1; height <= 18; ++height) {
      for (const int levels : {0, 1, 2, 3, 8}) {
        ASSERT_NO_FATAL_FAILURE(expectTheReference(width, height, levels, ++seed));
      }
    }
  }
}

TEST(PlaneRows, EqualWholePassesAtLargerSizes) {
  unsigned seed = 5000;
  for (const auto& [width, height] : {std::pair{63, 65},
                                      {64, 64},
                                      {65, 33},
                                      {129, 70},
                                      {1, 300},
                                      {300, 1},
                                      {2, 129},
                                      {129, 2},
                                      {257, 40},
                                      {40, 257},
                                      {500, 100}}) {
    for (const int levels : {0, 1, 2, 3, 5, 8}) {
      ASSERT_NO_FATAL_FAILURE(expectTheReference(width, height, levels, ++seed));
    }
  }
}

TEST(PlaneRows, UndoTheForwardTransform) {
  for (const auto& [width, height] :
       {std::pair{3, 3}, {4, 4}, {1, 9}, {9, 1}, {2, 2}, {63, 65}, {64, 33}, {129, 70}}) {
    Dice dice(1);
    const Plane picture = randomPlane(width, height, [&] { return dice.between(-255, 255); });
    Plane plane = picture;
    tools::forwardTransform(plane.samples.data(), width, height, 8);
    ASSERT_NE(plane.samples, picture.samples);
    EXPECT_EQ(madeRows(kernels().wide, plane, {8}).samples, picture.samples);
    EXPECT_EQ(madeRows(kernels().wrapped, plane, {8}).samples, picture.samples);
    EXPECT_EQ(madeRows(kernels().narrow, plane, {8}).samples, picture.samples);
  }
}

TEST(PlaneRows, HoldTheCoefficientsUntilTheyAreInverted) {
  unsigned seed = 0;
  for (const auto& [width, height] :
       {std::pair{1, 1}, {2, 1}, {1, 2}, {5, 4}, {16, 17}, {70, 30}, {33, 129}}) {
    for (const int levels : {0, 1, 3, 8}) {
      Dice dice(++seed);
      const Plane plane = randomPlane(width, height, [&] { return dice.between(-4000, 4000); });
      const Wish wish = {levels, false};
      EXPECT_EQ(madeRows(kernels().wide, plane, wish).samples, plane.samples) << named(plane, levels);
      EXPECT_EQ(madeRows(kernels().narrow, plane, wish).samples, plane.samples) << named(plane, levels);
    }
  }
}

/// The same plane with zeros from a row on.
Plane cutAt(Plane plane, int row) {
  const auto kept =
      std::min(static_cast<std::size_t>(row) * static_cast<std::size_t>(plane.width), plane.samples.size());
  std::fill(plane.samples.begin() + static_cast<std::ptrdiff_t>(kept), plane.samples.end(), 0);
  return plane;
}

TEST(PlaneRows, TakeTheRowsBehindTheLimitForZeros) {
  for (const auto& [width, height] : {std::pair{7, 13}, {64, 20}, {300, 40}}) {
    for (const int levels : {0, 1, 2, 8}) {
      for (int rowEnd = 0; rowEnd <= height + 1; ++rowEnd) {
        Dice dice(static_cast<unsigned>(rowEnd));
        const Plane plane = randomPlane(width, height, [&] { return dice.between(-255, 255); });
        const Plane cut = cutAt(plane, rowEnd);
        ASSERT_EQ(madeRows(kernels().wide, plane, {levels, false, rowEnd}).samples, cut.samples)
            << named(plane, levels) << ", " << rowEnd;
        ASSERT_EQ(madeRows(kernels().narrow, plane, {levels, true, rowEnd}).samples,
                  invertedByReference(cut, levels, 32))
            << named(plane, levels) << ", " << rowEnd;
      }
    }
  }
}

TEST(PlaneRows, AreZerosOnceTheReadingIsStopped) {
  const Plane plane = randomPlane(9, 9, [] { return 100; });
  EXPECT_EQ(madeRows(kernels().wide, plane, {2, true, 9, true}).samples, Samples(81));
  EXPECT_EQ(madeRows(kernels().wide, plane, {0, true, 9, true}).samples, Samples(81));
}

/// Gives the coefficients such signs that each step moves its sample further away from 0.
void addUp(Plane& plane, int levels) {
  for (std::size_t i = 0; i < plane.samples.size(); ++i) {
    const auto x = static_cast<unsigned>(i % static_cast<std::size_t>(plane.width));
    const auto y = static_cast<unsigned>(i / static_cast<std::size_t>(plane.width));
    const int order = std::min(std::countr_zero(x | y), levels);
    const bool minus = order < levels && (((x ^ y) >> order) & 1) != 0;
    plane.samples[i] = minus ? -std::abs(plane.samples[i]) : std::abs(plane.samples[i]);
  }
}

// Coefficients of 13 bits: sums grow beyond 16 bits in some planes and stay small in others.
TEST(PlaneRows, AreRightAsLongAsTheyStayWithinTheLimits) {
  int right = 0;
  int beyond = 0;
  for (unsigned seed = 0; seed < 600; ++seed) {
    Dice dice(seed);
    const int most = 1 << dice.between(12, 13);
    const int rare = dice.between(1, 3);
    const int levels = dice.between(1, 8);
    Plane plane = randomPlane(dice.between(1, 70), dice.between(1, 40), [&] {
      return dice.chance(rare) ? dice.between(1 - most, most - 1) : dice.between(-100, 100);
    });
    if (dice.chance(2)) addUp(plane, levels);
    const Samples wanted = invertedByReference(plane, levels, 32);
    const Made made = madeRows(kernels().narrow, plane, {levels});
    if (made.withinLimits) {
      ASSERT_EQ(made.samples, wanted) << named(plane, levels) << ", seed " << seed;
      ++right;
    } else {
      ++beyond;
    }
  }
  EXPECT_GT(right, 100);
  EXPECT_GT(beyond, 50);
}

TEST(PlaneRows, AreNoneOfAPlaneWithoutSamples) {
  for (const auto& [width, height] : {std::pair{0, 0}, {5, 0}}) {
    EXPECT_TRUE(madeRows(kernels().wide, {width, height, {}}, {8}).samples.empty());
  }
  EXPECT_TRUE(madeRows(kernels().narrow, {0, 5, {}}, {8}).samples.empty());
}

TEST(LevelsToInvert, AreNoMoreThanTheDoublingsThatReachTheLongerSide) {
  EXPECT_EQ(levelsToInvert(8, 1, 1), 0);
  EXPECT_EQ(levelsToInvert(8, 2, 1), 1);
  EXPECT_EQ(levelsToInvert(8, 1, 3), 2);
  EXPECT_EQ(levelsToInvert(8, 4, 4), 2);
  EXPECT_EQ(levelsToInvert(8, 5, 4), 3);
  EXPECT_EQ(levelsToInvert(8, 256, 1), 8);
  EXPECT_EQ(levelsToInvert(8, 65535, 65535), 8);
  EXPECT_EQ(levelsToInvert(3, 65535, 65535), 3);
  EXPECT_EQ(levelsToInvert(0, 100, 100), 0);
}

}  // namespace
}  // namespace ei4::test
