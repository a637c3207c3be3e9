#include "gwav4/mean_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/stream_random.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;
using zel::gwav4::MeanRows;
using zel::gwav4::SampleRows;

constexpr std::uint8_t kGuard = 0xA5;

/// The means of a whole picture whose rows follow one another without padding.
template <class T>
void storeMeans(SampleRows<T> planes, int width, int height, int step, void* out, int bytesPerPixel,
                int bits) {
  MeanRows<T> means(width, height, step, out, bytesPerPixel, bits);
  for (int y = 0; y < height; ++y) {
    means.add(planes);
    for (const T*& row : planes.planes) {
      if (row != nullptr) row += width;
    }
  }
}

TEST(Means, CutTheBlocksAtTheRightAndLowerEdge) {
  // 5 x 3 samples in blocks of 2 x 2: the last column of blocks is one wide, the last row one high.
  const std::vector<int> samples = {1,  2,  3,  4,  100,  //
                                    5,  6,  7,  9,  200,  //
                                    10, 21, 30, 40, 77};
  std::vector<std::uint16_t> out(6);
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 5, 3, 2, out.data(), 2, 12);
  EXPECT_THAT(out, ElementsAre(3, 5, 150, 15, 35, 77));  // 14 / 4 and 31 / 2 lose their fraction
}

TEST(Means, AverageColourAfterTheColourStep) {
  // 5 x 3 pixels whose components are (x, y, x + y): the planes are made from them.
  std::vector<short> p0, p1, p2;
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 5; ++x) {
      const int a = 40 * x, g = 50 * y, b = 20 * x + 30 * y;
      p1.push_back(static_cast<short>(a - g));
      p2.push_back(static_cast<short>(b - g));
      p0.push_back(static_cast<short>(g + ((a - g + b - g) >> 2)));
    }
  }
  std::vector<std::uint8_t> out(3 * 2 * 3 + 1, kGuard);
  storeMeans<short>({{p0.data(), p1.data(), p2.data()}}, 5, 3, 2, out.data(), 3, 8);
  EXPECT_THAT(out, ElementsAre(20, 25, 25, 100, 25, 65, 160, 25, 95,       // means over two rows
                               20, 100, 70, 100, 100, 110, 160, 100, 140,  // the last row alone
                               kGuard));
}

TEST(Means, TruncateTowardZeroAndClampAfterwards) {
  const std::vector<short> samples = {-3, -4, 6, 9};
  std::vector<std::uint8_t> out(2);
  storeMeans<short>({{samples.data(), nullptr, nullptr}}, 4, 1, 2, out.data(), 1, 0);
  EXPECT_THAT(out, ElementsAre(253, 7));  // -3.5 becomes -3
  storeMeans<short>({{samples.data(), nullptr, nullptr}}, 4, 1, 2, out.data(), 1, 3);
  EXPECT_THAT(out, ElementsAre(0, 7));
  storeMeans<short>({{samples.data(), nullptr, nullptr}}, 4, 1, 2, out.data(), 1, 2);
  EXPECT_THAT(out, ElementsAre(0, 3));
}

TEST(Means, ClampTheMeanAndNotTheSamples) {
  const std::vector<int> samples = {5000, -904};
  std::uint16_t out = 0;
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 2, 1, 2, &out, 2, 12);
  EXPECT_EQ(out, 2048);
}

TEST(Means, SumInSinglePrecision) {
  // 2^25 + 3 rounds to 2^25 + 4 at each addition, so the mean is 2^23 + 3 and not the exact 2^23 + 2.25.
  const std::vector<int> samples = {1 << 25, 3, 3, 3};
  std::uint16_t out = 0;
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 2, 2, 2, &out, 2, 0);
  EXPECT_EQ(out, 3);
}

TEST(Means, SumRowByRowFromLeftToRight) {
  std::vector<int> samples(16, 64);
  samples[0] = 1 << 30;  // spacing 128: 64 more is a tie and is lost each time
  std::uint16_t out = 0;
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 4, 4, 4, &out, 2, 0);
  EXPECT_EQ(out, 0);                   // 2^30 / 16 = 2^26
  std::swap(samples[0], samples[12]);  // the first of the last row: twelve others come before it, three after
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 4, 4, 4, &out, 2, 0);
  EXPECT_EQ(out, 12 * 64 / 16);
  std::swap(samples[12],
            samples[3]);  // the last of the first row: three before it, 192 + 2^30 is a tie to 256
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 4, 4, 4, &out, 2, 0);
  EXPECT_EQ(out, 256 / 16);
}

TEST(Means, KeepTheirRangeWhenTheSumRoundsUpBeyondAnInt) {
  const std::vector<int> samples(4, std::numeric_limits<int>::max());  // 2^31 as a float
  std::uint16_t out = 1;
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 2, 2, 2, &out, 2, 0);
  EXPECT_EQ(out, 0);  // the low bits of 2^31
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 2, 2, 2, &out, 2, 12);
  EXPECT_EQ(out, 4095);
  storeMeans<int>({{samples.data(), nullptr, nullptr}}, 2, 2, 2, &out, 2, 40);
  EXPECT_EQ(out, 0);  // 2^31 lies below 2^40
}

// Small steps of shorts are summed in whole numbers, which must not show.
TEST(Means, OfShortsEqualSumsInSinglePrecision) {
  Dice dice(4);
  for (const int step : {2, 4, 8, 16}) {
    for (int round = 0; round < 40; ++round) {
      const int width = dice.between(1, 70);
      const int height = dice.between(1, 40);
      std::vector<short> samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
      for (short& sample : samples) sample = static_cast<short>(dice.any());
      const int bits = dice.chance(2) ? 0 : dice.between(1, 16);
      std::vector<std::uint16_t> wanted;
      for (int y = 0; y < height; y += step) {
        for (int x = 0; x < width; x += step) {
          float sum = 0;
          int count = 0;
          for (int j = y; j < std::min(y + step, height); ++j) {
            for (int i = x; i < std::min(x + step, width); ++i, ++count) {
              sum +=
                  static_cast<float>(samples[static_cast<std::size_t>(j) * static_cast<std::size_t>(width) +
                                             static_cast<std::size_t>(i)]);
            }
          }
          const int mean = static_cast<int>(sum / static_cast<float>(count));
          wanted.push_back(
              static_cast<std::uint16_t>(bits == 0 ? mean : std::clamp(mean, 0, (1 << bits) - 1)));
        }
      }
      std::vector<std::uint16_t> out(wanted.size());
      storeMeans<short>({{samples.data(), nullptr, nullptr}}, width, height, step, out.data(), 2, bits);
      ASSERT_EQ(out, wanted) << width << " x " << height << " by " << step << ", " << bits << " bits";
    }
  }
}

TEST(Means, OfOnePixelForAStepBeyondThePicture) {
  const std::vector<short> samples = {1, 2, 3, 4, 5, 6};
  std::uint8_t out = kGuard;
  storeMeans<short>({{samples.data(), nullptr, nullptr}}, 3, 2, 65536, &out, 1, 8);
  EXPECT_EQ(out, 3);
}

TEST(Means, OfAPictureWithoutPixelsAreNone) {
  std::uint8_t out = kGuard;
  storeMeans<short>({{nullptr, nullptr, nullptr}}, 0, 4, 2, &out, 1, 8);
  EXPECT_EQ(out, kGuard);
}

}  // namespace
}  // namespace ei4::test
