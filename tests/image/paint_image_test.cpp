#include "image/paint_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "paint_fixture.h"
#include "reference_painter.h"

namespace ei4::test {
namespace {

using testing::Each;
using testing::ElementsAre;

class Dice {
 public:
  explicit Dice(unsigned seed) : m_engine(seed) {}
  long operator()(long low, long high) {
    return low + static_cast<long>(m_engine() % static_cast<unsigned long>(high - low + 1));
  }

 private:
  std::mt19937_64 m_engine;
};

Picture randomPicture(Dice& dice, COLOR_TYPE format, long cx, long cy) {
  const long largest = format == COLOR_TYPE_M16 ? 65535 : 255;
  Picture picture{format, cx, cy, {}};
  for (long i = 0; i < cx * cy * componentsOf(format); ++i) {
    picture.samples.push_back(static_cast<unsigned>(dice(0, 7) == 0 ? largest : dice(0, largest)));
  }
  return picture;
}

std::vector<std::uint16_t> randomTable(Dice& dice, COLOR_TYPE source, COLOR_TYPE destination) {
  std::vector<std::uint16_t> table(source == COLOR_TYPE_M16 ? 65536 : 256);
  for (auto& entry : table) {
    entry = static_cast<std::uint16_t>(dice(0, destination == COLOR_TYPE_M16 ? 65535 : 255));
  }
  return table;
}

/// Shown sizes that meet each path: smaller, larger, whole multiples, nearly the same, one side each way.
void randomShown(Dice& dice, const Picture& source, PaintRequest& r) {
  r.shownX = dice(1, 40);
  r.shownY = dice(1, 40);
  const long kind = dice(0, 5);
  const long times = dice(1, 4);
  if (kind == 0) r.shownX = source.cx * times, r.shownY = source.cy * times;
  if (kind == 1) r.shownX = source.cx, r.shownY = source.cy;
  if (kind == 2) r.shownX = source.cx + dice(0, 1), r.shownY = source.cy + dice(0, 1);
  if (kind == 3) {  // the sums' ratio is whole although one side shrinks
    r.shownX = std::max(1L, source.cx - 1);
    r.shownY = times * (source.cx + source.cy) - r.shownX;
  }
  if (r.orientation % 2 != 0) std::swap(r.shownX, r.shownY);
}

PaintRequest randomRequest(Dice& dice, const Picture& source, COLOR_TYPE format, bool withTable) {
  PaintRequest r{};
  r.format = format;
  r.orientation = static_cast<ORIENTATION>(dice(0, 7));
  r.mode = dice(0, 3) == 0 ? 0 : 1;
  randomShown(dice, source, r);
  const bool filled = dice(0, 2) == 0;
  r.cx = filled ? r.shownX : dice(1, 45);
  r.cy = filled ? r.shownY : dice(1, 45);
  r.offsetX = filled ? 0 : dice(-30, 30);
  r.offsetY = filled ? 0 : dice(-30, 30);
  r.clipL = filled ? 0 : dice(-5, 20);
  r.clipT = filled ? 0 : dice(-5, 20);
  r.clipR = filled ? r.cx : dice(-5, 60);
  r.clipB = filled ? r.cy : dice(-5, 60);
  r.background = static_cast<unsigned>(dice(0, 0xFFFFFF));
  if (withTable) r.table = randomTable(dice, source.format, format);
  return r;
}

class EveryInstance : public testing::TestWithParam<std::tuple<int, int, bool>> {
 protected:
  COLOR_TYPE Source() const { return static_cast<COLOR_TYPE>(std::get<0>(GetParam())); }
  COLOR_TYPE Destination() const { return static_cast<COLOR_TYPE>(std::get<1>(GetParam())); }
  bool Table() const { return std::get<2>(GetParam()); }
};

TEST_P(EveryInstance, EqualsTheReferenceOnRandomPaintings) {
  Dice dice(20240101);
  for (int round = 0; round < 250; ++round) {
    const Picture source = randomPicture(dice, Source(), dice(1, 30), dice(1, 30));
    const PaintRequest request = randomRequest(dice, source, Destination(), Table());
    const Painted painted = paint(source, request);
    ASSERT_EQ(painted.result, 1);
    ASSERT_EQ(painted.bytes, ReferencePainter(source, request).paint(kUnwritten))
        << describe(source, request);
  }
}

/// Columns behind a pixel from two to more than are written out, rows of each length modulo a vector's.
TEST_P(EveryInstance, EqualsTheReferenceWhateverTheNumberOfColumns) {
  Dice dice(20240102);
  for (long shownX = 1; shownX <= 67; ++shownX) {
    const long cx = dice(1, 130);
    const Picture source = randomPicture(dice, Source(), cx, dice(1, 9));
    PaintRequest request = filling(source, shownX, dice(1, 9), 1);
    request.format = Destination();
    request.orientation = static_cast<ORIENTATION>(dice(0, 7));
    if (request.orientation % 2 != 0) {
      std::swap(request.shownX, request.shownY);
      std::swap(request.cx, request.cy);
      std::swap(request.clipR, request.clipB);
    }
    if (Table()) request.table = randomTable(dice, Source(), Destination());
    ASSERT_EQ(paint(source, request).bytes, ReferencePainter(source, request).paint(kUnwritten))
        << describe(source, request);
  }
}

/// Names an instance by its formats: C08ToM16WithTable.
std::string instanceName(const testing::TestParamInfo<std::tuple<int, int, bool>>& instance) {
  static constexpr const char* kFormats[] = {"C08", "M08", "M16"};
  const auto& [source, destination, table] = instance.param;
  return std::string(kFormats[source]) + "To" + kFormats[destination] + (table ? "WithTable" : "");
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryInstance,
                         testing::Combine(testing::Range(0, 3), testing::Range(0, 3), testing::Bool()),
                         instanceName);

/// Displays beyond the denominators' bound, of which a small part is visible.
TEST(PaintImage, EqualsTheReferenceAtLargeScales) {
  Dice dice(7);
  for (int round = 0; round < 200; ++round) {
    const Picture source = randomPicture(dice, COLOR_TYPE_M16, dice(1, 20), dice(1, 20));
    PaintRequest r = randomRequest(dice, source, COLOR_TYPE_M16, false);
    r.shownX = dice(0, 1) == 0 ? dice(4095, 4096) : dice(4090, 30000);
    r.shownY = dice(0, 1) == 0 ? dice(4095, 4096) : dice(4090, 30000);
    r.offsetX = -dice(0, r.shownX);
    r.offsetY = -dice(0, r.shownY);
    ASSERT_EQ(paint(source, r).bytes, ReferencePainter(source, r).paint(kUnwritten)) << describe(source, r);
  }
}

TEST(PaintImage, CopiesAtTheSameSize) {
  const Picture source = grey16(3, 2, {1, 2, 3, 65533, 65534, 65535});
  EXPECT_EQ(words(paint(source, filling(source, 3, 2, 1))), source.samples);
  EXPECT_EQ(words(paint(source, filling(source, 3, 2, 0))), source.samples);
}

TEST(PaintImage, InvertsThroughATable) {
  const Picture source = grey8(3, 1, {0, 100, 255});
  PaintRequest r = filling(source, 3, 1, 1);
  for (int i = 0; i < 256; ++i) r.table.push_back(static_cast<std::uint16_t>(255 - i));
  EXPECT_THAT(bytes(paint(source, r)), ElementsAre(255, 155, 0));
}

TEST(PaintImage, ShowsEveryOrientation) {
  // 1 2 3 over 4 5 6, as every viewer would turn and mirror it.
  const Picture source = grey8(3, 2, {1, 2, 3, 4, 5, 6});
  const std::vector<std::vector<unsigned>> expected = {
      {1, 2, 3, 4, 5, 6},  // as stored
      {4, 1, 5, 2, 6, 3},  // a quarter turn
      {6, 5, 4, 3, 2, 1},  // half a turn
      {3, 6, 2, 5, 1, 4},  // three quarters
      {3, 2, 1, 6, 5, 4},  // left to right
      {6, 3, 5, 2, 4, 1},  // about the other diagonal
      {4, 5, 6, 1, 2, 3},  // top to bottom
      {1, 4, 2, 5, 3, 6},  // about the main diagonal
  };
  for (int orientation = 0; orientation < 8; ++orientation) {
    const bool exchanged = orientation % 2 != 0;
    PaintRequest r = filling(source, exchanged ? 2 : 3, exchanged ? 3 : 2, 1);
    r.orientation = static_cast<ORIENTATION>(orientation);
    EXPECT_EQ(bytes(paint(source, r)), expected[static_cast<std::size_t>(orientation)]) << orientation;
  }
}

TEST(PaintImage, StoresSourcePixelsWhereATableIsMissing) {
  const Picture source = grey16(2, 1, {0x1234, 0xABCD});
  PaintRequest r = filling(source, 2, 1, 1);
  r.format = COLOR_TYPE_M08;
  EXPECT_THAT(words(paint(source, r)), ElementsAre(0x1234, 0xABCD)) << "as if the destination had 16 bits";
}

TEST(PaintImage, LeavesOutWhatABackwardWalkWouldStoreInFront) {
  const Picture source = grey16(3, 1, {0x1111, 0x2222, 0x3333});
  PaintRequest r = filling(source, 3, 1, 1);
  r.format = COLOR_TYPE_M08;
  r.orientation = ORIENTATION_MIRROR_LEFT_RIGHT;
  // The start counts destination pixels (2 bytes in), the steps source pixels: places 2, 0 and -2.
  EXPECT_THAT(paint(source, r).bytes, ElementsAre(0x22, 0x22, 0x11, 0x11, kUnwritten, kUnwritten));
}

TEST(PaintImage, ShowsOnlyTheBackgroundForImpossibleSizes) {
  const Picture source = grey8(2, 2, {1, 2, 3, 4});
  const PaintRequest good = filling(source, 4, 4, 1);
  std::vector<PaintRequest> requests(8, good);
  requests[0].shownX = 0;
  requests[1].shownY = 0;
  requests[2].shownX = -5;
  requests[3].shownX = LONG_MAX, requests[3].shownY = LONG_MAX;
  requests[4].shownY = LONG_MIN;
  requests[5].orientation = static_cast<ORIENTATION>(8);
  requests[6].orientation = static_cast<ORIENTATION>(-1);
  requests[7].shownX = 1L << 31;
  for (int mode = 0; mode < 2; ++mode) {
    for (PaintRequest r : requests) {
      r.mode = mode;
      r.background = 0x070707;
      const Painted painted = paint(source, r);
      EXPECT_EQ(painted.result, 1);
      EXPECT_THAT(painted.bytes, Each(7));
    }
  }
}

TEST(PaintImage, TakesTheLargestNumbersEverywhere) {
  const Picture source = grey8(2, 2, {1, 2, 3, 4});
  for (const long extreme : {LONG_MIN, LONG_MIN + 1, -(1L << 32), 1L << 32, LONG_MAX - 1, LONG_MAX}) {
    for (int orientation = 0; orientation < 8; ++orientation) {
      PaintRequest r = filling(source, 3, 3, 1);
      r.orientation = static_cast<ORIENTATION>(orientation);
      r.offsetX = extreme;
      EXPECT_THAT(paint(source, r).bytes, Each(0)) << "moved out of sight";
      r.offsetX = 0, r.offsetY = extreme;
      EXPECT_THAT(paint(source, r).bytes, Each(0));
    }
  }
  PaintRequest r = filling(source, 2, 2, 1);
  r.clipL = r.clipT = LONG_MIN;
  r.clipR = r.clipB = LONG_MAX;
  r.offsetX = 1;
  EXPECT_THAT(paint(source, r).bytes, ElementsAre(0, 1, 0, 3)) << "a clip without bounds cuts nothing off";
}

TEST(PaintImage, ShowsPartsOfAHugeDisplay) {
  const Picture source = grey8(2, 2, {10, 20, 30, 40});
  PaintRequest r = filling(source, 2, 2, 0);
  r.shownX = r.shownY = INT_MAX;
  EXPECT_THAT(paint(source, r).bytes, Each(10)) << "the top left corner";
  r.offsetX = r.offsetY = -(INT_MAX - 2L);
  EXPECT_THAT(paint(source, r).bytes, Each(40)) << "the bottom right corner";
  r.mode = 1;
  EXPECT_THAT(paint(source, r).bytes, Each(25))
      << "the step has been halved to 0, so the phase stays in the middle";
}

TEST(PaintImage, PaintsNothingFromASourceWithoutPixels) {
  const Picture source = grey8(0, 5, {});
  PaintRequest r = filling(source, 2, 1, 1);
  r.background = 0xFFFFFF;
  EXPECT_THAT(paint(source, r).bytes, ElementsAre(255, 255));
}

TEST(PaintImage, NeedsNoDestinationPixels) {
  const Picture source = grey8(1, 1, {9});
  EXPECT_EQ(paint(source, filling(source, 0, 0, 1)).result, 1);
  PaintRequest r = filling(source, 0, 5, 1);
  r.shownX = 4;
  EXPECT_EQ(paint(source, r).result, 1);
}

}  // namespace
}  // namespace ei4::test
