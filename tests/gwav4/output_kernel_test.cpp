#include "gwav4/output_kernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include "gwav4/kernels.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;
using zel::gwav4::avx2Kernels;
using zel::gwav4::Kernels;
using zel::gwav4::OutputKernel;
using zel::gwav4::portableKernels;

constexpr std::uint8_t kGuard = 0xA5;

template <class T>
const OutputKernel<T>& outputOf(const Kernels& kernels) {
  if constexpr (std::is_same_v<T, short>) {
    return kernels.narrow.output;
  } else {
    return kernels.wide.output;
  }
}

/// Runs `body` with the output of each set of kernels that this processor has.
template <class T, class Body>
void withEachKernel(Body body) {
  body(outputOf<T>(portableKernels()));
  if (avx2Kernels() != nullptr) body(outputOf<T>(*avx2Kernels()));
}

/// What all kernels make of the samples; a difference between them is a failure.
template <class T, class Pixel, class Store>
void storeWithEach(std::size_t pixels, Pixel* out, Store store) {
  const std::vector<Pixel> before(out, out + pixels);
  std::vector<std::vector<Pixel>> results;
  withEachKernel<T>([&](const OutputKernel<T>& kernel) {
    std::copy(before.begin(), before.end(), out);
    store(kernel, out);
    results.emplace_back(out, out + pixels);
  });
  for (const auto& result : results) EXPECT_EQ(result, results.front());
}

template <class T>
void storeGrey(const T* samples, std::size_t count, std::uint8_t* out, int bits) {
  storeWithEach<T>(count, out, [&](const OutputKernel<T>& kernel, std::uint8_t* to) {
    kernel.storeGrey8(samples, count, bits, to);
  });
}

template <class T>
void storeGrey(const T* samples, std::size_t count, std::uint16_t* out, int bits) {
  storeWithEach<T>(count, out, [&](const OutputKernel<T>& kernel, std::uint16_t* to) {
    kernel.storeGrey16(samples, count, bits, to);
  });
}

template <class T>
std::vector<std::uint16_t> grey16(const std::vector<T>& samples, int bits) {
  std::vector<std::uint16_t> out(samples.size());
  storeGrey(samples.data(), samples.size(), out.data(), bits);
  return out;
}

template <class T>
std::vector<std::uint8_t> grey8(const std::vector<T>& samples, int bits) {
  std::vector<std::uint8_t> out(samples.size());
  storeGrey(samples.data(), samples.size(), out.data(), bits);
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
      storeGrey(samples.data(), count, out8.data(), bits);
      std::vector<std::uint16_t> out16(count + 8, kGuard);
      storeGrey(samples.data(), count, out16.data(), bits);
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
      withEachKernel<short>([&](const OutputKernel<short>& kernel) {
        std::vector<short> inPlace = samples;
        kernel.storeGrey16(inPlace.data(), count, bits, reinterpret_cast<std::uint16_t*>(inPlace.data()));
        for (std::size_t i = 0; i < count; ++i) {
          ASSERT_EQ(static_cast<std::uint16_t>(inPlace[i]), wanted[i]) << bits;
        }
      });
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
  storeWithEach<short>(out.size(), out.data(), [&](const OutputKernel<short>& kernel, std::uint8_t* to) {
    kernel.storeColour({{p0.data(), p1.data(), p2.data()}}, p0.size(), bits, to);
  });
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

TEST(Colour, EqualsOnePixelAtATimeForEveryCount) {
  Dice dice(3);
  for (std::size_t count = 0; count <= 70; ++count) {
    std::vector<short> planes[3];
    for (auto& plane : planes) {
      for (std::size_t i = 0; i < count; ++i) plane.push_back(static_cast<short>(dice.any()));
    }
    for (const int bits : {0, 8, 16}) {
      const auto got = colour(planes[0], planes[1], planes[2], bits);
      for (std::size_t i = 0; i < count; ++i) {
        const int green = planes[0][i] - ((planes[1][i] + planes[2][i]) >> 2);
        const int wanted[3] = {planes[1][i] + green, green, planes[2][i] + green};
        for (std::size_t c = 0; c < 3; ++c) {
          const int limited = bits == 0 ? wanted[c] : std::clamp(wanted[c], 0, (1 << bits) - 1);
          ASSERT_EQ(got[3 * i + c], static_cast<std::uint8_t>(limited))
              << i << " of " << count << ", " << bits;
        }
      }
    }
  }
}

TEST(Sums, GrowByEachSampleAndEachComponent) {
  withEachKernel<short>([](const OutputKernel<short>& kernel) {
    const std::vector<short> p0 = {100, 7};
    const std::vector<short> p1 = {10, 0};
    const std::vector<short> p2 = {21, 0};
    std::vector<std::int32_t> grey = {1, -7};
    kernel.addGrey(p0.data(), 2, grey.data());
    EXPECT_THAT(grey, ElementsAre(101, 0));
    std::vector<std::int32_t> colours = {0, 0, 1000, 0, 0, -7};
    kernel.addColour({{p0.data(), p1.data(), p2.data()}}, 2, colours.data());
    EXPECT_THAT(colours, ElementsAre(103, 7, 1093, 7, 114, 0));
  });
}

}  // namespace
}  // namespace ei4::test
