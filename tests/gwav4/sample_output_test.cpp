#include "gwav4/sample_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "support/stream_random.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;
using zel::gwav4::MeanRows;
using zel::gwav4::SampleRows;
using zel::gwav4::storeColour;
using zel::gwav4::storeGrey;

constexpr std::uint8_t kGuard = 0xA5;

template <class T>
std::vector<std::uint16_t> grey16(const std::vector<T>& samples, int bits) {
  std::vector<std::uint16_t> out(samples.size());
  storeGrey(samples.data(), samples.size(), out.data(), 2, bits);
  return out;
}

template <class T>
std::vector<std::uint8_t> grey8(const std::vector<T>& samples, int bits) {
  std::vector<std::uint8_t> out(samples.size());
  storeGrey(samples.data(), samples.size(), out.data(), 1, bits);
  return out;
}

template <class T>
class Grey : public testing::Test {};
using SampleTypes = testing::Types<short, int>;
TYPED_TEST_SUITE(Grey, SampleTypes);

TYPED_TEST(Grey, IsClampedToItsBits) {
  const std::vector<TypeParam> samples = {4100, -3, 4095, 4096, 0, -32768, 32767};
  EXPECT_THAT(grey16(samples, 12), ElementsAre(4095, 0, 4095, 4095, 0, 0, 4095));
  EXPECT_THAT(grey16(samples, 1), ElementsAre(1, 0, 1, 1, 0, 0, 1));
  EXPECT_THAT(grey16(samples, 16), ElementsAre(4100, 0, 4095, 4096, 0, 0, 32767));
}

TYPED_TEST(Grey, IsTruncatedWithoutBits) {
  const std::vector<TypeParam> samples = {4100, -3, 256, 255, -32768};
  EXPECT_THAT(grey16(samples, 0), ElementsAre(4100, 65533, 256, 255, 32768));
  EXPECT_THAT(grey8(samples, 0), ElementsAre(4, 253, 0, 255, 0));
}

TYPED_TEST(Grey, KeepsTheLowByteOfAClampedSample) {
  const std::vector<TypeParam> samples = {300, 5000, -1, 255};
  EXPECT_THAT(grey8(samples, 12), ElementsAre(300 - 256, 255, 0, 255));
  EXPECT_THAT(grey8(samples, 8), ElementsAre(255, 255, 0, 255));
}

TYPED_TEST(Grey, EqualsOneSampleAtATimeForEveryCountAndWritesNothingBehind) {
  Dice dice(1);
  for (std::size_t count = 0; count <= 67; ++count) {
    std::vector<TypeParam> samples(count);
    for (auto& sample : samples) sample = static_cast<TypeParam>(dice.between(-1000, 2000));
    for (const int bits : {0, 10}) {
      std::vector<std::uint8_t> out8(count + 8, kGuard);
      storeGrey(samples.data(), count, out8.data(), 1, bits);
      std::vector<std::uint16_t> out16(count + 8, kGuard);
      storeGrey(samples.data(), count, out16.data(), 2, bits);
      for (std::size_t i = 0; i < count; ++i) {
        int value = samples[i];
        if (bits > 0) value = value < 0 ? 0 : value > 1023 ? 1023 : value;
        ASSERT_EQ(out8[i], static_cast<std::uint8_t>(value));
        ASSERT_EQ(out16[i], static_cast<std::uint16_t>(value));
      }
      for (std::size_t i = count; i < count + 8; ++i) {
        ASSERT_EQ(out8[i], kGuard);
        ASSERT_EQ(out16[i], kGuard);
      }
    }
  }
}

// The narrow decoder makes its rows where their pixels belong.
TEST(GreyOfShorts, MayBeStoredOverItsSamples) {
  Dice dice(2);
  for (std::size_t count = 0; count <= 67; ++count) {
    std::vector<short> samples(count);
    for (short& sample : samples) sample = static_cast<short>(dice.any());
    for (const int bits : {0, 1, 12, 15, 16}) {
      const auto wanted = grey16(samples, bits);
      std::vector<short> inPlace = samples;
      storeGrey(inPlace.data(), count, inPlace.data(), 2, bits);
      for (std::size_t i = 0; i < count; ++i)
        ASSERT_EQ(static_cast<std::uint16_t>(inPlace[i]), wanted[i]) << bits;
    }
  }
}

TEST(GreyOfInts, IsNotClampedFromAboveByBitsThatAnIntDoesNotHave) {
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const int bits : {31, 32, 63, 64, 255}) {
    EXPECT_THAT(grey16<int>({kMost, 70000, -1}, bits), ElementsAre(65535, 70000 - 65536, 0)) << bits;
  }
  constexpr int kJustAbove30Bits = (1 << 30) + 5;
  EXPECT_THAT(grey16<int>({kJustAbove30Bits}, 30), ElementsAre(65535));
  EXPECT_THAT(grey16<int>({kJustAbove30Bits}, 31), ElementsAre(5));
  EXPECT_THAT(grey16<int>({70000}, 16), ElementsAre(65535));
}

std::vector<std::uint8_t> colour(const std::vector<short>& p0, const std::vector<short>& p1,
                                 const std::vector<short>& p2, int bits) {
  std::vector<std::uint8_t> out(3 * p0.size());
  storeColour<short>({p0.data(), p1.data(), p2.data()}, p0.size(), out.data(), bits);
  return out;
}

TEST(Colour, PutsTheSecondPlaneFirstAndTheGreenInTheMiddle) {
  // green = 100 - ((10 + 21) >> 2) = 93
  EXPECT_THAT(colour({100}, {10}, {21}, 8), ElementsAre(103, 93, 114));
  // the shift is an arithmetic one: (-10 + 3) >> 2 = -2
  EXPECT_THAT(colour({100}, {-10}, {3}, 8), ElementsAre(92, 102, 105));
}

TEST(Colour, ClampsEachComponentAfterTheColourStep) {
  // green = 10 - ((-80 + 400) >> 2) = -70: the others are computed from it, not from its clamped value
  EXPECT_THAT(colour({10}, {-80}, {400}, 8), ElementsAre(0, 0, 255));
  EXPECT_THAT(colour({10}, {-80}, {400}, 0), ElementsAre(106, 186, 74));  // -150, -70, 330 modulo 256
  EXPECT_THAT(colour({20}, {90}, {0}, 4), ElementsAre(15, 0, 0));         // green = 20 - 22 = -2
}

/// The means of a whole picture whose rows follow one another without padding.
template <class T>
void storeMeans(SampleRows<T> planes, int width, int height, int step, void* out, int bytesPerPixel,
                int bits) {
  MeanRows<T> means(width, height, step, out, bytesPerPixel, bits);
  for (int y = 0; y < height; ++y) {
    means.add(planes);
    for (const T*& row : planes) {
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
  storeMeans<int>({samples.data(), nullptr, nullptr}, 5, 3, 2, out.data(), 2, 12);
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
  storeMeans<short>({p0.data(), p1.data(), p2.data()}, 5, 3, 2, out.data(), 3, 8);
  EXPECT_THAT(out, ElementsAre(20, 25, 25, 100, 25, 65, 160, 25, 95,       // means over two rows
                               20, 100, 70, 100, 100, 110, 160, 100, 140,  // the last row alone
                               kGuard));
}

TEST(Means, TruncateTowardZeroAndClampAfterwards) {
  const std::vector<short> samples = {-3, -4, 6, 9};
  std::vector<std::uint8_t> out(2);
  storeMeans<short>({samples.data(), nullptr, nullptr}, 4, 1, 2, out.data(), 1, 0);
  EXPECT_THAT(out, ElementsAre(253, 7));  // -3.5 becomes -3
  storeMeans<short>({samples.data(), nullptr, nullptr}, 4, 1, 2, out.data(), 1, 3);
  EXPECT_THAT(out, ElementsAre(0, 7));
  storeMeans<short>({samples.data(), nullptr, nullptr}, 4, 1, 2, out.data(), 1, 2);
  EXPECT_THAT(out, ElementsAre(0, 3));
}

TEST(Means, ClampTheMeanAndNotTheSamples) {
  const std::vector<int> samples = {5000, -904};
  std::uint16_t out = 0;
  storeMeans<int>({samples.data(), nullptr, nullptr}, 2, 1, 2, &out, 2, 12);
  EXPECT_EQ(out, 2048);
}

TEST(Means, SumInSinglePrecision) {
  // 2^25 + 3 rounds to 2^25 + 4 at each addition, so the mean is 2^23 + 3 and not the exact 2^23 + 2.25.
  const std::vector<int> samples = {1 << 25, 3, 3, 3};
  std::uint16_t out = 0;
  storeMeans<int>({samples.data(), nullptr, nullptr}, 2, 2, 2, &out, 2, 0);
  EXPECT_EQ(out, 3);
}

TEST(Means, SumRowByRowFromLeftToRight) {
  std::vector<int> samples(16, 64);
  samples[0] = 1 << 30;  // spacing 128: 64 more is a tie and is lost each time
  std::uint16_t out = 0;
  storeMeans<int>({samples.data(), nullptr, nullptr}, 4, 4, 4, &out, 2, 0);
  EXPECT_EQ(out, 0);                   // 2^30 / 16 = 2^26
  std::swap(samples[0], samples[12]);  // the first of the last row: twelve others come before it, three after
  storeMeans<int>({samples.data(), nullptr, nullptr}, 4, 4, 4, &out, 2, 0);
  EXPECT_EQ(out, 12 * 64 / 16);
  std::swap(samples[12],
            samples[3]);  // the last of the first row: three before it, 192 + 2^30 is a tie to 256
  storeMeans<int>({samples.data(), nullptr, nullptr}, 4, 4, 4, &out, 2, 0);
  EXPECT_EQ(out, 256 / 16);
}

TEST(Means, KeepTheirRangeWhenTheSumRoundsUpBeyondAnInt) {
  const std::vector<int> samples(4, std::numeric_limits<int>::max());  // 2^31 as a float
  std::uint16_t out = 1;
  storeMeans<int>({samples.data(), nullptr, nullptr}, 2, 2, 2, &out, 2, 0);
  EXPECT_EQ(out, 0);  // the low bits of 2^31
  storeMeans<int>({samples.data(), nullptr, nullptr}, 2, 2, 2, &out, 2, 12);
  EXPECT_EQ(out, 4095);
  storeMeans<int>({samples.data(), nullptr, nullptr}, 2, 2, 2, &out, 2, 40);
  EXPECT_EQ(out, 0);  // 2^31 lies below 2^40
}

TEST(Means, OfOnePixelForAStepBeyondThePicture) {
  const std::vector<short> samples = {1, 2, 3, 4, 5, 6};
  std::uint8_t out = kGuard;
  storeMeans<short>({samples.data(), nullptr, nullptr}, 3, 2, 65536, &out, 1, 8);
  EXPECT_EQ(out, 3);
}

TEST(Means, OfAPictureWithoutPixelsAreNone) {
  std::uint8_t out = kGuard;
  storeMeans<short>({nullptr, nullptr, nullptr}, 0, 4, 2, &out, 1, 8);
  EXPECT_EQ(out, kGuard);
}

}  // namespace
}  // namespace ei4::test
