#include "image/paint_sampled.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "image/pixel.h"
#include "paint_fixture.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;

/// Keeps the rows as they come, and the place they were read from.
class Collector final : public RowSink<CPixelM08> {
 public:
  explicit Collector(std::size_t columns) : m_columns(columns) {}
  void Store(int /*row*/, const CPixelM08* values) const override {
    rows.emplace_back();
    places.push_back(values);
    for (std::size_t i = 0; i < m_columns; ++i) rows.back().push_back(values[i].value);
  }
  mutable std::vector<std::vector<int>> rows;
  mutable std::vector<const CPixelM08*> places;

 private:
  std::size_t m_columns;
};

constexpr CPixelM08 kSource[] = {{1}, {2}, {3}, {4}, {5}, {6}};  // 3 x 2

TEST(PaintSampled, TakesAnyRisingSamplesAndZerosOutside) {
  const Collector sink(4);
  PaintSampled<CPixelM08>({kSource, CSize(3, 2), CSize(3, 2), {}, sink}, {0, 2, 2, 3}, {0, 1, 1, 2});
  EXPECT_THAT(sink.rows, ElementsAre(ElementsAre(1, 3, 3, 0), ElementsAre(4, 6, 6, 0),
                                     ElementsAre(4, 6, 6, 0), ElementsAre(0, 0, 0, 0)));
}

TEST(PaintSampled, HandsNeighboursOnWithoutACopy) {
  const Collector sink(2);
  PaintSampled<CPixelM08>({kSource, CSize(3, 2), CSize(3, 2), {}, sink}, {1, 2}, {0, 1});
  EXPECT_THAT(sink.places, ElementsAre(&kSource[1], &kSource[4]));
}

TEST(PaintNearest, NeverBlends) {
  const Picture source = grey8(5, 3, {0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0});
  for (long cx = 1; cx <= 23; ++cx) {
    EXPECT_THAT(bytes(paint(source, filling(source, cx, 7, 0))), testing::Each(testing::AnyOf(0u, 255u)));
  }
}

TEST(PaintNearest, StepsExactly) {
  const Picture source = grey8(5, 1, {1, 2, 3, 4, 5});
  EXPECT_THAT(bytes(paint(source, filling(source, 3, 1, 0))), ElementsAre(1, 2, 4)) << "0, 5/3, 10/3";
  EXPECT_THAT(bytes(paint(source, filling(source, 7, 1, 0))), ElementsAre(1, 1, 2, 3, 3, 4, 5));
  PaintRequest r = filling(source, 3, 1, 0);
  r.shownX = 7;
  r.offsetX = -3;
  EXPECT_THAT(bytes(paint(source, r)), ElementsAre(3, 3, 4)) << "the phase of the hidden part counts";
}

}  // namespace
}  // namespace ei4::test
