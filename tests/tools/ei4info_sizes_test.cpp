#include "ei4info/read_sizes.h"

#include <gtest/gtest.h>

#include "encoder/stream_builder.h"
#include "gwav4/header.h"
#include "support/stream_builder.h"

namespace {

using ei4::info::ReadSize;

std::vector<unsigned char> header(int width, int height, int bytesPerPixel = 2, int bits = 12) {
  return ei4::test::headerBytes(
      {.bytesPerPixel = bytesPerPixel, .bitsPerPixel = bits, .width = width, .height = height});
}

struct Size {
  int width, height;
};

class ReadSizes : public testing::TestWithParam<Size> {};

// Every width that can be asked for lies in exactly one stretch, which says what getBestFactor answers.
TEST_P(ReadSizes, SayWhatEachWantedWidthLeadsTo) {
  const auto [width, height] = GetParam();
  const auto bytes = header(width, height);
  constexpr std::int64_t kLength = 30'000'000;
  const auto sizes = ei4::info::readSizes(bytes, kLength, 24);
  ASSERT_FALSE(sizes.empty());
  EXPECT_FALSE(sizes.front().wantedTo);
  EXPECT_EQ(sizes.back().wantedFrom, 1);
  std::size_t at = sizes.size();
  for (int wish = 1; wish <= 66000; ++wish) {
    if (at == sizes.size() || (sizes[at].wantedTo && wish > *sizes[at].wantedTo)) --at;
    const ReadSize& size = sizes.at(at);
    ASSERT_GE(wish, size.wantedFrom);
    int budget = 0, factor = 0, x = 0, y = 0;
    ASSERT_EQ(zel::gwav4::getBestFactor(wish, &budget, &factor, bytes.data(), bytes.size(), &x, &y, nullptr,
                                        nullptr, nullptr),
              1);
    ASSERT_EQ(size.factor, factor) << wish;
    ASSERT_EQ(size.width, x);
    ASSERT_EQ(size.height, y);
    ASSERT_EQ(size.readBudget.value_or(-1), budget);
    const std::int64_t stream = budget < 0 ? kLength : std::int64_t{budget} * (wish <= 128 ? 2 : 1);
    ASSERT_EQ(size.bytesRead, std::min(kLength, 24 + stream)) << wish;
  }
  EXPECT_EQ(at, 0U);
}

INSTANTIATE_TEST_SUITE_P(OfAllShapes, ReadSizes,
                         testing::Values(Size{2048, 2500}, Size{512, 512}, Size{1, 1}, Size{65535, 1},
                                         Size{1, 65535}, Size{17, 4000}, Size{4000, 17}, Size{65535, 65535},
                                         Size{0, 0}, Size{130, 129}, Size{0, 3000}, Size{257, 16}));

TEST(ReadSizesOfAnInput, NeverExceedItsLength) {
  for (const ReadSize& size : ei4::info::readSizes(header(2048, 2048), 5000, 24))
    EXPECT_EQ(size.bytesRead, 5000);
}

TEST(ReadSizesOfAnInput, CountALongPreambleInFront) {
  const auto sizes = ei4::info::readSizes(header(512, 512), 1'000'000, 1000);
  EXPECT_EQ(sizes.at(1).readBudget, 7168);
  EXPECT_EQ(sizes.at(1).bytesRead, 1000 + 7168);
}

TEST(ReadSizesOfAnInput, SayWhichOfThemItMayNotClaim) {
  // 65535 x 65535 pixels: 2^32. 30 MB may claim 256 for each byte; 1000 bytes 2^26, which is 2^13 a side.
  for (const ReadSize& size : ei4::info::readSizes(header(65535, 65535), 30'000'000, 24))
    EXPECT_TRUE(size.mayClaim);
  for (const ReadSize& size : ei4::info::readSizes(header(65535, 65535), 1000, 24))
    EXPECT_EQ(size.mayClaim, size.width <= 8192) << size.width;
}

}  // namespace
