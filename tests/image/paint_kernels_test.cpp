#include "image/paint_kernels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr double kGuard = -7;

TEST(TruncatingDivision, IsExactNextToEveryKindOfMultiple) {
  std::mt19937_64 engine(11);
  std::vector<std::int64_t> divisors = {1,
                                        2,
                                        3,
                                        4,
                                        7,
                                        0xFFE001,  // 4095 squared
                                        0x1010100,
                                        TruncatingDivision::kLargestDivisor - 1,
                                        TruncatingDivision::kLargestDivisor};
  for (int i = 0; i < 2000; ++i) {
    divisors.push_back(1 + static_cast<std::int64_t>(engine() % (TruncatingDivision::kLargestDivisor - 1)));
  }
  for (const std::int64_t divisor : divisors) {
    const auto divide = TruncatingDivision::By(divisor);
    for (const std::int64_t quotient : {0, 1, 2, 127, 254, 255, 256, 32767, 32768, 65534, 65535}) {
      const std::int64_t multiple = quotient * divisor;
      ASSERT_EQ(divide(static_cast<double>(multiple)), quotient) << divisor;
      ASSERT_EQ(divide(static_cast<double>(multiple + divisor - 1)), quotient) << divisor;
      const std::int64_t half = divisor / 2;
      ASSERT_EQ(divide(static_cast<double>(multiple + half)), quotient) << divisor;
    }
  }
}

/// Every form that this machine can run has to give the numbers of plain arithmetic on integers.
class PaintKernelForms : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    m_kernels = GetParam() == "Portable" ? &portablePaintKernels() : avx2PaintKernels();
    if (m_kernels == nullptr) GTEST_SKIP() << "not on this processor or not in this build";
  }

  std::uint64_t Random(std::uint64_t below) { return m_engine() % below; }

  void SumRows(const WeightedRows<std::uint8_t>& rows, std::size_t count, double* sums) const {
    m_kernels->sumRows8(rows, count, sums);
  }
  void SumRows(const WeightedRows<std::uint16_t>& rows, std::size_t count, double* sums) const {
    m_kernels->sumRows16(rows, count, sums);
  }
  void Blend(const WeightedColumns& columns, const double* sums, CPixelM08* values) const {
    m_kernels->blendM08(columns, sums, values);
  }
  void Blend(const WeightedColumns& columns, const double* sums, CPixelM16* values) const {
    m_kernels->blendM16(columns, sums, values);
  }
  void Blend(const WeightedColumns& columns, const double* sums, CPixelC08* values) const {
    m_kernels->blendC08(columns, sums, values);
  }

  template <class Component>
  void ExpectSums(std::size_t count, std::int64_t full, std::int64_t firstWeight, std::int64_t fullWeight,
                  std::int64_t lastWeight);
  template <class Pixel>
  void ExpectBlend(std::size_t pixels, int taps);

 private:
  std::mt19937_64 m_engine{5};
  const PaintKernels* m_kernels = nullptr;
};

template <class Component>
void PaintKernelForms::ExpectSums(std::size_t count, std::int64_t full, std::int64_t firstWeight,
                                  std::int64_t fullWeight, std::int64_t lastWeight) {
  const std::size_t offset = Random(4);  // so that no row starts at a vector's edge
  const std::size_t stride = count + 1 + Random(3);
  const std::size_t rowCount = static_cast<std::size_t>(full) + 2;
  std::vector<Component> samples(offset + (rowCount - 1) * stride + count);
  for (Component& sample : samples) sample = static_cast<Component>(Random(4) == 0 ? 0xFFFF : m_engine());
  const auto row = [&](std::int64_t index) {
    return samples.data() + offset + static_cast<std::size_t>(index) * stride;
  };

  std::vector<double> expected(count + 1, kGuard);
  for (std::size_t i = 0; i < count; ++i) {
    std::int64_t sum = row(0)[i] * firstWeight + row(full + 1)[i] * lastWeight;
    for (std::int64_t r = 1; r <= full; ++r) sum += row(r)[i] * fullWeight;
    expected[i] = static_cast<double>(sum);
  }
  std::vector<double> sums(count + 1, kGuard);
  SumRows(WeightedRows<Component>{firstWeight != 0 ? row(0) : nullptr, firstWeight,
                                  full != 0 ? row(1) : nullptr, static_cast<std::ptrdiff_t>(stride), full,
                                  fullWeight, lastWeight != 0 ? row(full + 1) : nullptr, lastWeight},
          count, sums.data());
  ASSERT_EQ(sums, expected) << count << " columns, " << full << " rows, weights " << firstWeight << ' '
                            << fullWeight << ' ' << lastWeight;
}

TEST_P(PaintKernelForms, SumRowsOfEveryLength) {
  for (std::size_t count = 0; count <= 67; ++count) {
    for (std::int64_t full = 0; full <= 2; ++full) {
      ExpectSums<std::uint8_t>(count, full, 3, 7, 5);
      ExpectSums<std::uint16_t>(count, full, 3, 7, 5);
    }
    ExpectSums<std::uint8_t>(count, 7, 3, 7, 5);
    ExpectSums<std::uint16_t>(count, 7, 3, 7, 5);
  }
  for (const std::size_t count : {1023U, 1024U, 1025U, 2047U, 2048U, 2051U}) {
    ExpectSums<std::uint8_t>(count, 5, 2, 9, 8);
    ExpectSums<std::uint16_t>(count, 5, 2, 9, 8);
  }
}

TEST_P(PaintKernelForms, SumRowsWhichAreThereOrNot) {
  for (std::int64_t full = 0; full <= 9; ++full) {
    for (const std::int64_t first : {0, 11}) {
      for (const std::int64_t last : {0, 13}) {
        if (first + full + last == 0) continue;
        ExpectSums<std::uint8_t>(21, full, first, 17, last);
        ExpectSums<std::uint16_t>(21, full, first, 17, last);
      }
    }
  }
}

TEST_P(PaintKernelForms, SumUpToTheLastBit) {
  // Weights of 65535 together reach 32 bits; one more takes another way, up to 2^24 and beyond.
  for (const std::int64_t more : {0, 1, 70000, 1 << 24}) {
    ExpectSums<std::uint16_t>(19, 1, 21845, 21845, 21845 + more);
    ExpectSums<std::uint16_t>(19, 3, 1, 21844, 2 + more);
    ExpectSums<std::uint8_t>(19, 3, 0, 21845, more);
    ExpectSums<std::uint16_t>(19, 0, 65535 + more, 0, 0);
    ExpectSums<std::uint16_t>(19, 1, 0, 65535 + more, 0);
    ExpectSums<std::uint16_t>(19, 0, 0, 0, 65535 + more);
  }
}

template <class Pixel>
void PaintKernelForms::ExpectBlend(std::size_t pixels, int taps) {
  using Component = typename Pixel::Component;
  constexpr std::size_t kComponents = Pixel::kComponents;
  constexpr std::uint64_t kLargest = static_cast<Component>(-1);
  constexpr std::int64_t kDivisor = 0xFFFFFF;
  const auto most = static_cast<std::size_t>(taps);
  const std::size_t columns = pixels + most;

  // A column's sum is a sample times the rows' weight; a pixel's weights times that are at most the divisor.
  constexpr std::uint64_t kRowWeight = 4095;
  std::vector<double> sums((columns - most) * kComponents + kSumsReadAhead, 0.0);
  for (std::size_t i = 0; i < columns * kComponents && i < sums.size(); ++i) {
    sums[i] = static_cast<double>((Random(3) == 0 ? kLargest : Random(kLargest + 1)) * kRowWeight);
  }
  std::vector<int> firsts;
  std::vector<double> weights;
  for (std::size_t i = 0; i < pixels; ++i) {
    firsts.push_back(static_cast<int>(Random(columns - most + 1)));
    std::uint64_t left = 4097;  // times kRowWeight is the divisor
    for (std::size_t tap = 0; tap < most; ++tap) {
      const std::uint64_t weight = tap + 1 == most && Random(2) == 0 ? left : Random(left + 1);
      weights.push_back(static_cast<double>(weight));
      left -= weight;
    }
  }

  std::vector<Component> expected((pixels + 1) * kComponents, 0x5A);
  for (std::size_t i = 0; i < pixels * kComponents; ++i) {
    const std::size_t pixel = i / kComponents;
    std::uint64_t sum = 0;
    for (std::size_t tap = 0; tap < most; ++tap) {
      const std::size_t column = static_cast<std::size_t>(firsts[pixel]) + tap;
      sum += static_cast<std::uint64_t>(sums[column * kComponents + i % kComponents]) *
             static_cast<std::uint64_t>(weights[pixel * most + tap]);
    }
    expected[i] = static_cast<Component>(sum / kDivisor);
  }
  std::vector<Component> values(expected.size(), 0x5A);
  Blend({taps, pixels, firsts.data(), weights.data(), TruncatingDivision::By(kDivisor)}, sums.data(),
        reinterpret_cast<Pixel*>(values.data()));
  ASSERT_EQ(values, expected) << pixels << " pixels of " << taps << " columns";
}

TEST_P(PaintKernelForms, BlendRowsOfEveryLength) {
  for (std::size_t pixels = 0; pixels <= 67; ++pixels) {
    for (int most = 1; most <= WeightedColumns::kMostTaps; ++most) {
      ExpectBlend<CPixelM08>(pixels, WeightedColumns::TapsFor(most, 1));
      ExpectBlend<CPixelM16>(pixels, WeightedColumns::TapsFor(most, 1));
      ExpectBlend<CPixelC08>(pixels, WeightedColumns::TapsFor(most, 3));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, PaintKernelForms, testing::Values("Portable", "Avx2"),
                         [](const auto& instance) { return instance.param; });

TEST(PaintKernels, AreTheFastestThatTheProcessorHas) {
  const PaintKernels* special = avx2PaintKernels();
  EXPECT_EQ(&paintKernels(), special != nullptr ? special : &portablePaintKernels());
}

}  // namespace
