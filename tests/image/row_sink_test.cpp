#include "image/row_sink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "image/pixel.h"

namespace {

using testing::ElementsAre;

TEST(RowSink, FollowsTheWalk) {
  // Two rows of three into a 4 x 4 destination, a quarter turn: down from the third
  // column, the next row one left.
  std::vector<CPixelM08> destination(16, CPixelM08{0});
  const auto sink = MakeRowSink<CPixelM08>(
      destination.data(), {/*start=*/2, /*stepX=*/4, /*rowAdvance=*/-1, /*columns=*/3, /*rows=*/2}, nullptr);
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

/// Stores `rows` rows of `columns` numbers along a walk and expects each where the walk leads.
template <class Pixel>
void expectWalked(const DestinationWalk& walk, std::size_t pixels) {
  std::vector<Pixel> expected(pixels, Pixel{});
  std::vector<Pixel> destination(pixels, Pixel{});
  const auto sink = MakeRowSink<Pixel>(destination.data(), walk, nullptr);
  std::vector<Pixel> values(static_cast<std::size_t>(walk.columns));
  unsigned number = 0;
  for (int row = 0; row < walk.rows; ++row) {
    for (int i = 0; i < walk.columns; ++i) {
      Pixel value;
      auto* components = reinterpret_cast<typename Pixel::Component*>(&value);
      for (int c = 0; c < Pixel::kComponents; ++c) {
        components[c] = static_cast<typename Pixel::Component>(++number * 7);
      }
      values[static_cast<std::size_t>(i)] = value;
      expected[static_cast<std::size_t>(walk.start + row * walk.rowAdvance + i * walk.stepX)] = value;
    }
    sink->Store(row, values.data());
  }
  EXPECT_EQ(std::memcmp(destination.data(), expected.data(), pixels * sizeof(Pixel)), 0)
      << walk.columns << " x " << walk.rows << " from " << walk.start << " by " << walk.stepX;
}

TEST(RowSink, TurnsAnyNumberOfRows) {
  for (const int rows : {1, 2, 15, 16, 17, 31, 32, 33, 50}) {
    for (const int columns : {1, 2, 7, 20}) {
      const int width = rows + 5;  // the turned picture leaves a margin of 2 before it and 3 behind
      const int height = columns;
      const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
      const int top = 2;
      const int bottom = (height - 1) * width + 2;
      for (const DestinationWalk& walk : {DestinationWalk{top, width, 1, columns, rows},
                                          {top + rows - 1, width, -1, columns, rows},
                                          {bottom, -width, 1, columns, rows},
                                          {bottom + rows - 1, -width, -1, columns, rows}}) {
        expectWalked<CPixelM08>(walk, pixels);
        expectWalked<CPixelM16>(walk, pixels);
        expectWalked<CPixelC08>(walk, pixels);
      }
    }
  }
}

TEST(RowSink, MirrorsRowsOfAnyLength) {
  for (int columns = 1; columns <= 40; ++columns) {
    const auto pixels = 3 * static_cast<std::size_t>(columns);
    const std::ptrdiff_t lastRow = std::ptrdiff_t{2} * columns;
    for (const DestinationWalk& walk : {DestinationWalk{0, 1, columns, columns, 3},
                                        {columns - 1, -1, columns, columns, 3},
                                        {lastRow, 1, -columns, columns, 3},
                                        {lastRow + columns - 1, -1, -columns, columns, 3}}) {
      expectWalked<CPixelM08>(walk, pixels);
      expectWalked<CPixelM16>(walk, pixels);
      expectWalked<CPixelC08>(walk, pixels);
    }
  }
}

TEST(RowSink, ReadsTheWholeTableAndNoMore) {
  const CPixelM16 extremes[] = {{0}, {65535}};
  std::vector<std::uint8_t> table(65536);
  table.front() = 1;
  table.back() = 2;
  CPixelM08 destination[2];
  MakeRowSink<CPixelM16>(destination, {0, 1, 2, 2, 1}, table.data())->Store(0, extremes);
  EXPECT_EQ(destination[0].value, 1);
  EXPECT_EQ(destination[1].value, 2);

  const CPixelC08 colours[] = {{0, 0, 0}, {255, 255, 255}};
  std::vector<std::uint16_t> words(256);
  words.front() = 0x1234;
  words.back() = 0xFEDC;
  CPixelM16 grey[2];
  MakeRowSink<CPixelC08>(grey, {0, 1, 2, 2, 1}, words.data())->Store(0, colours);
  EXPECT_EQ(grey[0].value, 0x1234);
  EXPECT_EQ(grey[1].value, 0xFEDC);
}

TEST(RowSink, StoresSourcePixelsAtOddPlaces) {
  std::vector<CPixelM08> destination(7, CPixelM08{0});
  const CPixelM16 values[] = {{0x0101}, {0x0202}};
  MakeRowSink<CPixelM16>(destination.data(), {1, 1, 2, 2, 1}, nullptr)->Store(0, values);
  std::vector<int> bytes;
  bytes.reserve(destination.size());
  for (const CPixelM08 pixel : destination) bytes.push_back(pixel.value);
  EXPECT_THAT(bytes, ElementsAre(0, 1, 1, 2, 2, 0, 0));
}

}  // namespace
