#include "image/paint_interpolate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "paint_fixture.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;

TEST(PaintInterpolated, DoublesWithAHalfWayPhase) {
  // Denominator 2, phases 1 and 2 in turn: half and half with the pixel before, then that pixel alone.
  const Picture source = grey8(2, 2, {0, 100, 0, 100});
  EXPECT_THAT(bytes(paint(source, filling(source, 4, 4, 1))),
              ElementsAre(0, 0, 50, 100, 0, 0, 50, 100, 0, 0, 50, 100, 0, 0, 50, 100));
}

TEST(PaintInterpolated, Trebles) {
  // Denominator 3, phases 1, then 3, 2, 1 over the next pixel; the columns beyond the last repeat it.
  const Picture source = grey16(2, 1, {0, 300});
  EXPECT_THAT(words(paint(source, filling(source, 6, 3, 1))),
              ElementsAre(0, 0, 100, 200, 300, 300, 0, 0, 100, 200, 300, 300, 0, 0, 100, 200, 300, 300));
}

TEST(PaintInterpolated, BlendsAtAFraction) {
  // 2 shown as 3 in both directions: zoom 1.5, denominator 3, step 2, phases 1, 2 (one on), 3 (one on).
  // Column taps: (0, 0); (0, 1) with 2/3 and 1/3; (1, 1) after clamping.
  const Picture source = grey8(2, 2, {0, 90, 0, 90});
  EXPECT_THAT(bytes(paint(source, filling(source, 3, 3, 1))), ElementsAre(0, 30, 90, 0, 30, 90, 0, 30, 90));
}

TEST(PaintInterpolated, NearlyItsOwnSizeCopiesAndRepeatsTheEdge) {
  Picture source = grey8(200, 200, {});
  for (unsigned i = 0; i < 40000; ++i) source.samples.push_back(i * 7 % 251);
  PaintRequest r = filling(source, 201, 201, 1);  // zoom 1.005
  const Painted painted = paint(source, r);
  for (long y = 0; y < 201; ++y) {
    for (long x = 0; x < 201; ++x) {
      ASSERT_EQ(painted.bytes[static_cast<std::size_t>(y * 201 + x)],
                source.at(std::min(x, 199L), std::min(y, 199L), 0));
    }
  }
}

TEST(PaintInterpolated, CopiesBelowAHundredthAndBlendsAboveIt) {
  // Zooms of 212 / 210 = 1.0095 and 192 / 190 = 1.0105.
  for (const auto& [size, copies] : {std::pair{210L, true}, {190L, false}}) {
    Picture source = grey8(size, size, {});
    for (long i = 0; i < size * size; ++i) source.samples.push_back(static_cast<unsigned>(i * 7 % 251));
    const PaintRequest r = filling(source, size + 2, size + 2, 1);
    const Painted painted = paint(source, r);
    EXPECT_EQ(painted.bytes, ReferencePainter(source, r).paint(kUnwritten)) << size;
    const auto middle = static_cast<std::size_t>(size / 2 * (size + 2) + size / 2);
    EXPECT_EQ(painted.bytes[middle] == source.at(size / 2, size / 2, 0), copies) << size;
  }
}

TEST(PaintInterpolated, TakesNearlyWholeZoomsAsWhole) {
  // 99 shown as 197 to 200: zooms of 1.990 (not near enough), 2 - 0.0101, 2, 2.0051; and three times its
  // size.
  for (const COLOR_TYPE format : {COLOR_TYPE_C08, COLOR_TYPE_M08, COLOR_TYPE_M16}) {
    Picture source{format, 99, 97, {}};
    for (unsigned i = 0; i < 10007; ++i)
      source.samples.push_back(i * i % (format == COLOR_TYPE_M16 ? 65521 : 251));
    for (const auto& [cx, cy] :
         {std::pair{197L, 193L}, {197L, 194L}, {198L, 194L}, {199L, 194L}, {297L, 291L}}) {
      const PaintRequest r = filling(source, cx, cy, 1);
      EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten)) << cx << " x " << cy;
    }
  }
}

TEST(PaintInterpolated, KeepsTheOrderOfRoundingAtHugeZooms) {
  // Whole zooms stay whole: denominators of 4095 and 4096, and one whose sums a double has to round.
  Picture source = grey16(3, 2, {65535, 1, 40000, 2, 65534, 33333});
  for (const long zoom : {4095L, 4096L, 400001L}) {
    PaintRequest r = filling(source, 11, 9, 1);
    r.shownX = 3 * zoom;
    r.shownY = 2 * zoom;
    for (const long offset : {0L, -zoom / 2 + 4, -zoom - 1, -3 * zoom / 2 + 5}) {
      r.offsetX = r.offsetY = offset;
      EXPECT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten))
          << zoom << ' ' << offset;
    }
  }
}

TEST(PaintInterpolated, TruncatesComponentsBeforeTheyAreCombined) {
  const Picture source{COLOR_TYPE_C08, 2, 1, {1, 1, 1, 2, 2, 2}};
  PaintRequest r = filling(source, 4, 2, 1);
  r.format = COLOR_TYPE_M16;
  EXPECT_THAT(words(paint(source, r)), testing::Contains(1).Times(6)) << "1.5 counts as 1";
}

}  // namespace
}  // namespace ei4::test
