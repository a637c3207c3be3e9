#include "image/row_sink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "image/pixel.h"

namespace {

using testing::ElementsAre;

TEST(RowSink, FollowsTheWalk) {
  // Two rows of three into a 4 x 4 destination, a quarter turn: down from the third
  // column, the next row one left.
  std::vector<CPixelM08> destination(16, CPixelM08{0});
  const auto sink = MakeRowSink<CPixelM08>(
      destination.data(), {/*start=*/2, /*stepX=*/4, /*rowAdvance=*/-1, /*columns=*/3}, nullptr);
  const CPixelM08 first[] = {{1}, {2}, {3}};
  const CPixelM08 second[] = {{4}, {5}, {6}};
  sink->Store(0, first);
  sink->Store(1, second);
  std::vector<int> values;
  values.reserve(destination.size());
  for (const CPixelM08 pixel : destination) values.push_back(pixel.value);
  EXPECT_THAT(values, ElementsAre(0, 4, 1, 0,  //
                                  0, 5, 2, 0,  //
                                  0, 6, 3, 0,  //
                                  0, 0, 0, 0));
}

TEST(RowSink, ReadsTheWholeTableAndNoMore) {
  const CPixelM16 extremes[] = {{0}, {65535}};
  std::vector<std::uint8_t> table(65536);
  table.front() = 1;
  table.back() = 2;
  CPixelM08 destination[2];
  MakeRowSink<CPixelM16>(destination, {0, 1, 2, 2}, table.data())->Store(0, extremes);
  EXPECT_EQ(destination[0].value, 1);
  EXPECT_EQ(destination[1].value, 2);

  const CPixelC08 colours[] = {{0, 0, 0}, {255, 255, 255}};
  std::vector<std::uint16_t> words(256);
  words.front() = 0x1234;
  words.back() = 0xFEDC;
  CPixelM16 grey[2];
  MakeRowSink<CPixelC08>(grey, {0, 1, 2, 2}, words.data())->Store(0, colours);
  EXPECT_EQ(grey[0].value, 0x1234);
  EXPECT_EQ(grey[1].value, 0xFEDC);
}

TEST(RowSink, StoresSourcePixelsAtOddPlaces) {
  std::vector<CPixelM08> destination(7, CPixelM08{0});
  const CPixelM16 values[] = {{0x0101}, {0x0202}};
  MakeRowSink<CPixelM16>(destination.data(), {1, 1, 2, 2}, nullptr)->Store(0, values);
  std::vector<int> bytes;
  bytes.reserve(destination.size());
  for (const CPixelM08 pixel : destination) bytes.push_back(pixel.value);
  EXPECT_THAT(bytes, ElementsAre(0, 1, 1, 2, 2, 0, 0));
}

}  // namespace
