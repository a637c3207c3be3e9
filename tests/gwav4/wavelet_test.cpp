#include "gwav4/wavelet.h"

#include <gtest/gtest.h>

namespace ei4::test {
namespace {

using zel::gwav4::CWavelet;

TEST(Wavelet, KnowsItsSizes) {
  const CWavelet<short> colour(3, 7, 5);
  EXPECT_EQ(colour.planeCount(), 3);
  EXPECT_EQ(colour.width(), 7);
  EXPECT_EQ(colour.height(), 5);
  const CWavelet<int> empty(1, 0, 65535);
  EXPECT_EQ(empty.planeCount(), 1);
  EXPECT_EQ(empty.width(), 0);
  EXPECT_EQ(empty.height(), 65535);
}

}  // namespace
}  // namespace ei4::test
