#include "gwav4/wavelet.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace ei4::test {
namespace {

using zel::gwav4::CWavelet;

template <class T>
class Wavelet : public testing::Test {};
using SampleTypes = testing::Types<short, int>;
TYPED_TEST_SUITE(Wavelet, SampleTypes);

TYPED_TEST(Wavelet, HoldsItsPlanesAlignedAndZero) {
  CWavelet<TypeParam> wavelet(3, 7, 5);
  EXPECT_EQ(wavelet.planeCount(), 3);
  EXPECT_EQ(wavelet.width(), 7);
  EXPECT_EQ(wavelet.height(), 5);
  EXPECT_EQ(wavelet.stride(), 7U);  // rows follow one another without padding
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(wavelet.plane(i)) % 32, 0U);
    for (int j = 0; j < 35; ++j) EXPECT_EQ(wavelet.plane(i)[j], 0);
  }
}

TYPED_TEST(Wavelet, KeepsPlanesApartAndClearsThemAll) {
  CWavelet<TypeParam> wavelet(3, 4, 2);
  for (int i = 0; i < 3; ++i) std::fill_n(wavelet.plane(i), 8, static_cast<TypeParam>(i + 1));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(wavelet.row(i, 0)[0], i + 1);
    EXPECT_EQ(wavelet.row(i, 1)[3], i + 1);
    EXPECT_EQ(wavelet.row(i, 1), wavelet.plane(i) + 4);
  }
  wavelet.clear();
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 8; ++j) EXPECT_EQ(wavelet.plane(i)[j], 0);
  }
}

TYPED_TEST(Wavelet, MayBeWithoutCoefficients) {
  CWavelet<TypeParam> wavelet(1, 0, 100);
  EXPECT_EQ(wavelet.width(), 0);
  wavelet.clear();
}

}  // namespace
}  // namespace ei4::test
