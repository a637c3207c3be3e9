#include "gwav4/filter5_3.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <vector>

namespace ei4::test {
namespace {

using testing::ElementsAre;
using zel::gwav4::CFilter5_3;
using zel::gwav4::roundedHalf;
using zel::gwav4::roundedQuarter;

TEST(Rounding, TakesHalvesAwayFromZero) {
  EXPECT_EQ(roundedHalf(-1), -1);
  EXPECT_EQ(roundedHalf(1), 1);
  EXPECT_EQ(roundedHalf(-3), -2);
  EXPECT_EQ(roundedHalf(0), 0);
  EXPECT_EQ(roundedQuarter(-2), -1);
  EXPECT_EQ(roundedQuarter(-1), 0);
  EXPECT_EQ(roundedQuarter(6), 2);
  EXPECT_EQ(roundedQuarter(0), 0);
}

TEST(Rounding, IsSymmetricAroundZero) {
  for (int v = -2000; v <= 2000; ++v) {
    const int sign = v < 0 ? -1 : 1;
    ASSERT_EQ(roundedHalf(v), sign * ((std::abs(v) + 1) >> 1)) << v;
    ASSERT_EQ(roundedQuarter(v), sign * ((std::abs(v) + 2) >> 2)) << v;
    ASSERT_EQ(roundedQuarter(2 * v), roundedHalf(v)) << v;  // which makes the line ends a mirrored middle
  }
}

TEST(Rounding, WrapsAtTheEndsOfAnInt) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  EXPECT_EQ(roundedHalf(kMost), -(1 << 30));
  EXPECT_EQ(roundedHalf(kLeast), -(1 << 30));
  EXPECT_EQ(roundedQuarter(kMost), -(1 << 29));
  EXPECT_EQ(roundedQuarter(kLeast + 1), -(1 << 29));
}

template <class T>
std::vector<T> inverted(std::vector<T> line) {
  std::vector<T> scratch(line.size());
  CFilter5_3<T>::invertLine(line.data(), line.size(), 1, line.data(), 1, scratch.data());
  return line;
}

template <class T>
class InvertLine : public testing::Test {};
using SampleTypes = testing::Types<short, int>;
TYPED_TEST_SUITE(InvertLine, SampleTypes);

// Worked out by hand, step by step, from the lifting formulas.
TYPED_TEST(InvertLine, FollowsTheLiftingStepsAtEveryLineEnd) {
  using Line = std::vector<TypeParam>;
  EXPECT_EQ(inverted(Line{}), Line{});
  EXPECT_THAT(inverted(Line{10}), ElementsAre(10));
  EXPECT_THAT(inverted(Line{10, 3}), ElementsAre(8, 11));
  EXPECT_THAT(inverted(Line{10, 3, 7}), ElementsAre(8, 10, 5));
  EXPECT_THAT(inverted(Line{10, 3, 7, -2}), ElementsAre(8, 11, 7, 5));
  EXPECT_THAT(inverted(Line{10, 3, 7, -2, 4}), ElementsAre(8, 11, 7, 4, 5));
  EXPECT_THAT(inverted(Line{10, 3, 7, -2, 4, -9}), ElementsAre(8, 11, 7, 5, 7, -2));
}

TYPED_TEST(InvertLine, TakesSamplesFarApartAndLeavesTheOthersAlone) {
  std::vector<TypeParam> line = {10, 99, 99, 3, 99, 99, 7, 99, 99, -2};
  std::vector<TypeParam> scratch(4);
  CFilter5_3<TypeParam>::invertLine(line.data(), 4, 3, line.data(), 3, scratch.data());
  EXPECT_THAT(line, ElementsAre(8, 99, 99, 11, 99, 99, 7, 99, 99, 5));

  std::vector<TypeParam> out(4);
  const std::vector<TypeParam> spread = {10, 99, 3, 99, 7, 99, -2};
  CFilter5_3<TypeParam>::invertLine(spread.data(), 4, 2, out.data(), 1, scratch.data());
  EXPECT_THAT(out, ElementsAre(8, 11, 7, 5));
}

TEST(Filter, SumsShortsIn32BitsAndStoresThemIn16) {
  // 32767 + 32767 does not wrap before it is quartered, but 0 - 16384 - ... does when it is stored.
  short even = -32768;
  const short high = 32767;
  CFilter5_3<short>::lowerEven(&even, &high, &high, 1,
                               1);  // -32768 - R4(65534) = -32768 - 16384 = 16384 mod 2^16
  EXPECT_EQ(even, 16384);
  short odd = 32767;
  CFilter5_3<short>::raiseOddAtEnd(&odd, &high, 1, 1);
  EXPECT_EQ(odd, -2);
}

TEST(Filter, WrapsSumsOf32Bits) {
  int odd = 0;
  const int most = std::numeric_limits<int>::max();
  CFilter5_3<int>::raiseOdd(&odd, &most, &most, 1, 1);  // most + most wraps to -2
  EXPECT_EQ(odd, -1);
}

}  // namespace
}  // namespace ei4::test
