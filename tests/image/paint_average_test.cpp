#include "image/paint_average.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <utility>
#include <vector>

#include "paint_fixture.h"
#include "reference_painter.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;

Picture noise(COLOR_TYPE format, long cx, long cy) {
  Picture picture{format, cx, cy, std::vector<unsigned>(10007)};  // a prime, so that no row repeats another
  unsigned state = 1;
  for (unsigned& sample : picture.samples) {
    state = state * 1664525u + 1013904223u;
    sample = state >> (format == COLOR_TYPE_M16 ? 16 : 24);
  }
  return picture;
}

TEST(PaintAveraged, HalvesToTruncatedMeans) {
  const Picture source = grey8(4, 4,
                               {0, 1, 10, 10,    //
                                1, 1, 10, 11,    //
                                255, 255, 7, 0,  //
                                255, 254, 0, 0});
  EXPECT_THAT(bytes(paint(source, filling(source, 2, 2, 1))), ElementsAre(0, 10, 254, 1));
}

TEST(PaintAveraged, WeighsByOverlap) {
  // Each of the two covers one and a half source pixels: (2 * 30 + 1 * 60) / 3 and (1 * 60 + 2 * 91) / 3.
  const Picture source = grey8(3, 1, {30, 60, 91});
  EXPECT_THAT(bytes(paint(source, filling(source, 2, 1, 1))), ElementsAre(40, 80));
}

TEST(PaintAveraged, AveragesColourByComponentAndKeepsTheTopValue) {
  const Picture source{COLOR_TYPE_C08, 2, 1, {255, 0, 10, 255, 9, 20}};
  EXPECT_THAT(bytes(paint(source, filling(source, 1, 1, 1))), ElementsAre(255, 4, 15));
  const Picture white = grey16(5, 3, std::vector<unsigned>(15, 65535));
  EXPECT_THAT(words(paint(white, filling(white, 2, 2, 1))), testing::Each(65535));
}

TEST(PaintAveraged, TruncatesComponentsBeforeTheyAreCombined) {
  const Picture source{COLOR_TYPE_C08, 2, 1, {1, 1, 1, 2, 2, 2}};  // means 1.5: (1 + 2 + 1) >> 2, not 6 >> 2
  PaintRequest r = filling(source, 1, 1, 1);
  r.format = COLOR_TYPE_M08;
  for (int i = 0; i < 256; ++i) r.table.push_back(static_cast<std::uint16_t>(i));
  EXPECT_EQ(paint(source, r).bytes[0], 1);
}

TEST(PaintAveraged, ReplicatesWhenTheSumsOfTheSidesHaveAWholeRatio) {
  // 4 + 2 to 3 + 3: zoom 1, so the pixels are copied one by one; the third row lies outside and reads as 0.
  const Picture source = grey8(4, 2, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_THAT(bytes(paint(source, filling(source, 3, 3, 1))), ElementsAre(1, 2, 3, 5, 6, 7, 0, 0, 0));
}

TEST(PaintAveraged, ReplicationReadsNoPixelsOfTheNextRow) {
  // 2 + 4 to 9 + 3: zoom 2, nine columns out of two: what lies behind them is 0.
  const Picture source = grey8(2, 4, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_THAT(bytes(paint(source, filling(source, 9, 3, 1))),
              ElementsAre(1, 1, 2, 2, 0, 0, 0, 0, 0, 1, 1, 2, 2, 0, 0, 0, 0, 0, 3, 3, 4, 4, 0, 0, 0, 0, 0));
}

TEST(PaintAveraged, WhatLiesOutsidePassesThroughTheTable) {
  const Picture source = grey8(4, 2, {1, 2, 3, 4, 5, 6, 7, 8});
  PaintRequest r = filling(source, 3, 3, 1);
  for (int i = 0; i < 256; ++i) r.table.push_back(static_cast<std::uint16_t>(255 - i));
  EXPECT_THAT(bytes(paint(source, r)), ElementsAre(254, 253, 252, 250, 249, 248, 255, 255, 255));
}

/// Sources of more pixels than the divisor may count, so that the counters are halved.
struct Halved {
  long cx, cy, shownX, shownY, offsetX, offsetY;
  long visible = 7;  // pixels a side
};

void PrintTo(const Halved& h, std::ostream* out) {
  *out << h.cx << " x " << h.cy << " as " << h.shownX << " x " << h.shownY << " at " << h.offsetX << ", "
       << h.offsetY;
}

class HalvedCounters : public testing::TestWithParam<Halved> {};

TEST_P(HalvedCounters, EqualTheReference) {
  const Halved& h = GetParam();
  const Picture source = noise(COLOR_TYPE_M08, h.cx, h.cy);
  PaintRequest r = filling(source, h.shownX, h.shownY, 1);
  r.cx = r.clipR = std::min(h.shownX, h.visible);
  r.cy = r.clipB = std::min(h.shownY, h.visible);
  r.offsetX = h.offsetX;
  r.offsetY = h.offsetY;
  const Painted painted = paint(source, r);
  EXPECT_EQ(painted.result, 1);
  EXPECT_EQ(painted.bytes, ReferencePainter(source, r).paint(kUnwritten)) << describe(source, r);
}

INSTANTIATE_TEST_SUITE_P(Sizes, HalvedCounters,
                         testing::Values(Halved{4111, 4103, 13, 11, 0, 0},       // rows halved once
                                         Halved{4111, 4103, 13, 11, -6, -4},     // the far corner of it
                                         Halved{5807, 5807, 9, 13, 0, 0},        // both halved once
                                         Halved{5807, 5807, 5807, 3, -5800, 0},  // one side at its own size
                                         Halved{5807, 5807, 3, 3, 0, 0},  // passes the source's end by far
                                         Halved{8209, 8213, 63, 65, -56, -58},  // halved twice
                                         Halved{3, 5700000, 2, 40, 0, -38, 2},  // long and thin
                                         Halved{5700000, 3, 40, 7, -38, 0, 2}));

TEST(PaintAveraged, HalvesTheColumnsOnlyAboveTheSecondBound) {
  // 1913 * 17609 = 0x2020201: rows alone; 514 * 65537 = 0x2020202: both.
  for (const auto& [cx, cy] : {std::pair{1913L, 17609L}, {514L, 65537L}}) {
    const Picture source = noise(COLOR_TYPE_M08, cx, cy);
    PaintRequest r = filling(source, 101, 1003, 1);
    r.cx = r.clipR = 9;
    r.cy = r.clipB = 2;
    EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten)) << cx;
  }
}

TEST(PaintAveraged, HalvesTheRowsFromTheFirstNumberAboveTheFirstBound) {
  // 256 * 65793 = 0x1010100: nothing; 257 * 65537 = 0x1010101: the rows.
  for (const auto& [cx, cy] : {std::pair{256L, 65793L}, {257L, 65537L}}) {
    const Picture source = noise(COLOR_TYPE_M08, cx, cy);
    PaintRequest r = filling(source, 101, 1003, 1);
    r.cx = r.clipR = 9;
    r.cy = r.clipB = 2;
    EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten)) << cx;
  }
}

TEST(PaintAveraged, SumsOfTallPicturesDoNotOverflow) {
  Picture source = noise(COLOR_TYPE_M16, 3, 200000);  // 100000 rows of up to 65535 in each pixel
  for (unsigned& sample : source.samples) sample |= 0xFF00;
  const PaintRequest r = filling(source, 2, 2, 1);
  EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten));
}

TEST(PaintAveraged, HalvesOnlyAboveTheLargestDivisor) {
  // 4104 * 4104 = 0x10100C0 stays whole: exact means of constant blocks. 4105 * 4104
  // does not: rows lose a unit.
  for (const long cx : {4104L, 4105L}) {
    const Picture source{COLOR_TYPE_M16, cx, 4104, {40000}};
    PaintRequest r = filling(source, 7, 513, 1);
    r.cx = r.clipR = 2;
    r.cy = r.clipB = 2;
    EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten)) << cx;
  }
}

TEST(PaintAveraged, RefusesCountersThatWouldVanish) {
  const Picture source{COLOR_TYPE_M08, 4200, 4200, {200}};
  PaintRequest r = filling(source, 1, 1, 1);
  r.background = 0x101010;
  const Painted painted = paint(source, r);
  EXPECT_EQ(painted.result, 0);
  EXPECT_THAT(painted.bytes, ElementsAre(0x10)) << "the background stays";
  EXPECT_EQ(paint(source, filling(source, 2, 2, 1)).result, 1);
}

TEST(PaintAveraged, SumsRowsOfTheTopValueUpTo32Bits) {
  // Weights of 16 bits and one row more, and their sums in several pieces of a long row.
  for (const long cy : {65535L, 65536L}) {
    const Picture source{COLOR_TYPE_M16, 7, cy, {65535}};
    EXPECT_THAT(words(paint(source, filling(source, 3, 1, 1))), testing::Each(65535)) << cy;
  }
  const Picture source = noise(COLOR_TYPE_C08, 1500, 13);
  PaintRequest r = filling(source, 41, 3, 1);
  EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten));
}

TEST(PaintAveraged, ScalesWidely) {
  const Picture source = noise(COLOR_TYPE_M16, 2048, 300);
  for (const long shownX : {1L, 511L, 512L, 513L, 2047L}) {
    PaintRequest r = filling(source, shownX, 75, 1);
    r.cy = r.clipB = 3;
    r.cx = r.clipR = std::min(shownX, 9L);
    r.offsetX = r.cx - shownX;
    EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten)) << shownX;
  }
}

}  // namespace
}  // namespace ei4::test
