#include "annotation/dash_rectangle.h"

#include <climits>
#include <utility>

#include "annotation/paint_fixture.h"

namespace {

using ei4::test::XY;

constexpr const char* kDashName = "#aaaaaa";

class DashRectangle : public ei4::test::Painting {
 protected:
  void solidFrame(int l, int t, int r, int b) {
    expected.line("#000000", {l, t}, {r, t});
    expected.line("#000000", {r - 1, t}, {r - 1, b});
    expected.line("#000000", {r - 1, b - 1}, {l, b - 1}).lineOn("#000000", {l, b - 1}, {l, t});
  }
  void dash(XY from, XY to) { expected.line(kDashName, from, to); }
  void draw(const CRect& rect, int gap = 3, int length = 3, int solid = 1) {
    DrawDashRectangle(&dc, rect, gap, length, 0x000000, 0xAAAAAA, solid);
  }
};

TEST_F(DashRectangle, DrawsASolidFrameThenDashesAlongXThenAlongY) {
  solidFrame(6, 12, 19, 22);
  for (const int x : {6, 12}) {
    dash({x, 12}, {x + 3, 12});
    dash({x, 21}, {x + 3, 21});
  }
  dash({18, 12}, {19, 12});  // cut off at the right edge
  dash({18, 21}, {19, 21});
  dash({6, 12}, {6, 15});
  dash({18, 12}, {18, 15});
  dash({6, 18}, {6, 21});
  dash({18, 18}, {18, 21});
  expectPaints([&] { draw(CRect(6, 12, 19, 22)); });
}

TEST_F(DashRectangle, BeginsWithTheRestOfAGridDash) {
  // Left 8: the rest of the dash from 6 to 9. Top 9: the dash from 6 to 9 is over, the one from 12 on is next.
  dash({8, 9}, {9, 9});
  dash({8, 15}, {9, 15});
  dash({12, 9}, {14, 9});
  dash({12, 15}, {14, 15});
  dash({8, 12}, {8, 15});
  dash({13, 12}, {13, 15});
  expectPaints([&] { draw(CRect(8, 9, 14, 16), 3, 3, 0); });
}

TEST_F(DashRectangle, KeepsTheGridAtNegativeCoordinates) {
  // The dashes of the grid are from -6 to -3 and from 0 to 3.
  dash({-4, -2}, {-3, -2});
  dash({-4, 2}, {-3, 2});
  dash({0, -2}, {2, -2});
  dash({0, 2}, {2, 2});
  dash({-4, 0}, {-4, 3});
  dash({1, 0}, {1, 3});
  expectPaints([&] { draw(CRect(-4, -2, 2, 3), 3, 3, 0); });
}

TEST_F(DashRectangle, TakesGapAndDashOfAnyLength) {
  // Dashes of 5 from 7 and from 14 on. The frame is one pixel high, so its two lines along x are one.
  for (int line = 0; line < 2; ++line) dash({10, 10}, {12, 10});
  for (int line = 0; line < 2; ++line) dash({14, 10}, {18, 10});
  dash({10, 10}, {10, 11});
  dash({17, 10}, {17, 11});
  expectPaints([&] { draw(CRect(10, 10, 18, 11), 2, 5, 0); });
}

TEST_F(DashRectangle, DrawsNoDashesWithoutAPeriodOrADash) {
  for (const auto& [gap, length] : {std::pair{3, 0}, {3, -1}, {-3, 3}, {-4, 3}, {INT_MIN, INT_MAX}}) {
    EXPECT_EQ(traceOf([&, g = gap, n = length] { draw(CRect(5, 5, 25, 25), g, n, 0); }), "");
  }
}

TEST_F(DashRectangle, FramesTheWholePicture) {
  for (int x = 0; x <= 198; x += 6) {
    const int end = x == 198 ? 200 : x + 3;
    dash({x, 0}, {end, 0});
    dash({x, 149}, {end, 149});
  }
  for (int y = 0; y <= 144; y += 6) {
    dash({0, y}, {0, y + 3});
    dash({199, y}, {199, y + 3});
  }
  expectPaints([&] { draw(CRect(0, 0, 200, 150), 3, 3, 0); });
}

TEST_F(DashRectangle, DrawsOnlyDashesThatCanShow) {
  // The frame's right and lower lines are far outside, and of its upper and left ones only the start shows.
  for (int x = 102; x <= 198; x += 6) dash({x, 100}, {x + 3, 100});
  for (int y = 102; y <= 150; y += 6) dash({100, y}, {100, y + 3});
  // The first dashes: 100 lies behind the dash from 96 to 99.
  expectPaints([&] { draw(CRect(100, 100, INT_MAX, INT_MAX), 3, 3, 0); });
}

TEST_F(DashRectangle, DrawsNoDashOfAFrameFarOutside) {
  EXPECT_EQ(traceOf([&] { draw(CRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), 3, 3, 0); }), "");
  EXPECT_EQ(traceOf([&] { draw(CRect(INT_MIN, -90, -10, -5), 1, 1, 0); }), "");
  EXPECT_EQ(traceOf([&] { draw(CRect(300, 300, 400, 400), 3, 3, 0); }), "");
}

TEST_F(DashRectangle, OfNoExtentHasNoDashes) {
  solidFrame(40, 30, 40, 30);
  expectPaints([&] { draw(CRect(40, 30, 40, 30)); });
}

TEST_F(DashRectangle, SolidFrameEndsAtTheLimitsOfInt) {
  const std::string trace = traceOf([&] {
    draw(CRect(tagRECT{LONG_MIN, LONG_MIN, INT_MIN, LONG_MAX}), 3, 0);
  });
  EXPECT_EQ(trace,
            "MoveTo-point -2147483648 -2147483648\n"
            "Draing Primitive: 'line -2147483648 -2147483648 -2147483648 -2147483648'\n"
            "LineTo -2147483648 -2147483648\n"
            "MoveTo-point -2147483648 -2147483648\n"
            "Draing Primitive: 'line -2147483648 -2147483648 -2147483648 2147483647'\n"
            "LineTo -2147483648 2147483647\n"
            "MoveTo-point -2147483648 2147483646\n"
            "Draing Primitive: 'line -2147483648 2147483646 -2147483648 2147483646'\n"
            "LineTo -2147483648 2147483646\n"
            "Draing Primitive: 'line -2147483648 2147483646 -2147483648 -2147483648'\n"
            "LineTo -2147483648 -2147483648\n");
}

}  // namespace
