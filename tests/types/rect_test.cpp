#include "types/rect.h"

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

#include "types/types.h"

namespace {

constexpr long kTwo32 = 1L << 32;

static_assert(sizeof(CRect) == 32 && !std::is_polymorphic_v<CRect>);
static_assert(std::is_trivially_default_constructible_v<CRect>);

tagRECT edges(long l, long t, long r, long b) { return {l, t, r, b}; }

TEST(Rect, TakesEdgesWithTheirSign) {
  EXPECT_EQ(CRect(-1, INT_MIN, INT_MAX, 4), edges(-1, -2147483648L, 2147483647L, 4));
  CRect rect;
  rect.SetRect(-1, 2, 3, INT_MIN);
  EXPECT_EQ(rect, edges(-1, 2, 3, -2147483648L));
}

TEST(Rect, CopiesStructuresPointersAndCorners) {
  const tagRECT big = edges(kTwo32, -kTwo32, 3, 4);
  EXPECT_EQ(CRect(big), big);
  EXPECT_EQ(CRect(&big), big);
  CRect assigned;
  assigned = big;
  EXPECT_EQ(assigned, big);
  EXPECT_EQ(CRect(tagPOINT{1, 2}, tagPOINT{kTwo32, 4}), edges(1, 2, kTwo32, 4));
  assigned.SetRect(tagPOINT{5, 6}, tagPOINT{7, kTwo32});
  EXPECT_EQ(assigned, edges(5, 6, 7, kTwo32));
}

TEST(Rect, IsMadeOfACornerAndASizeIn64Bits) {
  EXPECT_EQ(CRect(tagPOINT{INT_MAX, 2}, tagSIZE{1, 20}), edges(INT_MAX, 2, 2147483648L, 22));
}

TEST(Rect, MeasuresItself) {
  const CRect rect(10, 20, 13, 27);
  EXPECT_EQ(rect.Width(), 3);
  EXPECT_EQ(rect.Height(), 7);
  EXPECT_EQ(rect.Size(), CSize(3, 7));
  EXPECT_EQ(CRect(edges(0, 0, kTwo32 + 5, 1)).Width(), kTwo32 + 5);
  EXPECT_EQ(CRect(edges(0, 0, kTwo32 + 5, 1)).Size(), CSize(5, 1)) << "a size is built from ints";
}

TEST(Rect, CornersAreViewedInPlace) {
  CRect rect(1, 2, 3, 4);
  EXPECT_EQ(rect.TopLeft(), CPoint(1, 2));
  EXPECT_EQ(rect.BottomRight(), CPoint(3, 4));
  rect.TopLeft().x = 10;
  rect.BottomRight().Offset(5, 6);
  EXPECT_EQ(rect, CRect(10, 2, 8, 10));
  const CRect& fixed = rect;
  EXPECT_EQ(&fixed.TopLeft().x, &rect.left);
  EXPECT_EQ(&fixed.BottomRight().y, &rect.bottom);
}

TEST(Rect, CentreTruncatesTowardZeroAndPassesThroughInts) {
  EXPECT_EQ(CRect(-3, 0, 0, 5).CenterPoint(), CPoint(-1, 2));
  EXPECT_EQ(CRect(edges(0, 0, 2 * kTwo32 + 6, 0)).CenterPoint(), CPoint(3, 0));
}

TEST(Rect, SwapsLeftAndRight) {
  CRect rect(1, 2, 3, 4);
  rect.SwapLeftRight();
  EXPECT_EQ(rect, CRect(3, 2, 1, 4));
  CRect::SwapLeftRight(&rect);
  EXPECT_EQ(rect, CRect(1, 2, 3, 4));
}

TEST(Rect, ConvertsToItsOwnAddress) {
  CRect rect(1, 2, 3, 4);
  const CRect& fixed = rect;
  tagRECT* writable = rect;
  const tagRECT* readable = fixed;
  EXPECT_EQ(writable, &rect);
  EXPECT_EQ(readable, &rect);
}

TEST(Rect, IsEmptyOnlyByEqualEdges) {
  EXPECT_TRUE(CRect(5, 0, 3, 0).IsRectEmpty());
  EXPECT_TRUE(CRect(5, 0, 5, 9).IsRectEmpty());
  EXPECT_FALSE(CRect(5, 0, 3, 4).IsRectEmpty()) << "right < left is not empty by this test";
  EXPECT_FALSE(CRect(0, 0, 1, 1).IsRectEmpty());
}

TEST(Rect, IsNullOnlyWithFourZeros) {
  EXPECT_TRUE(CRect(0, 0, 0, 0).IsRectNull());
  EXPECT_FALSE(CRect(1, 0, 0, 0).IsRectNull());
  EXPECT_FALSE(CRect(0, 1, 0, 0).IsRectNull());
  EXPECT_FALSE(CRect(0, 0, 1, 0).IsRectNull());
  EXPECT_FALSE(CRect(0, 0, 0, 1).IsRectNull());
  CRect rect(1, 2, 3, 4);
  rect.SetRectEmpty();
  EXPECT_TRUE(rect.IsRectNull());
}

TEST(Rect, IsHalfOpen) {
  const CRect rect(0, 0, 10, 10);
  EXPECT_TRUE(rect.PtInRect(CPoint(0, 0)));
  EXPECT_TRUE(rect.PtInRect(CPoint(9, 9)));
  EXPECT_FALSE(rect.PtInRect(CPoint(10, 5)));
  EXPECT_FALSE(rect.PtInRect(CPoint(5, 10)));
  EXPECT_FALSE(rect.PtInRect(CPoint(-1, 5)));
  EXPECT_FALSE(rect.PtInRect(CPoint(5, -1)));
}

TEST(Rect, ComparesAllFourEdges) {
  const CRect rect(1, 2, 3, 4);
  EXPECT_TRUE(rect.EqualRect(CRect(1, 2, 3, 4)));
  EXPECT_TRUE(rect == CRect(1, 2, 3, 4));
  EXPECT_FALSE(rect != CRect(1, 2, 3, 4));
  for (const CRect& other : {CRect(0, 2, 3, 4), CRect(1, 0, 3, 4), CRect(1, 2, 0, 4), CRect(1, 2, 3, 0)}) {
    EXPECT_FALSE(rect.EqualRect(&other));
    EXPECT_FALSE(rect == other);
    EXPECT_TRUE(rect != other);
  }
}

TEST(Rect, Inflates) {
  CRect rect(10, 20, 30, 40);
  rect.InflateRect(1, 2);
  EXPECT_EQ(rect, CRect(9, 18, 31, 42));
  rect.InflateRect(tagSIZE{kTwo32, 0});
  EXPECT_EQ(rect, edges(9 - kTwo32, 18, 31 + kTwo32, 42));
  rect = CRect(10, 20, 30, 40);
  rect.InflateRect(1, 2, 3, 4);
  EXPECT_EQ(rect, CRect(9, 18, 33, 44));
  const CRect by(1, 2, 3, 4);
  rect.InflateRect(&by);
  EXPECT_EQ(rect, CRect(8, 16, 36, 48));
  rect.InflateRect(&rect);
  EXPECT_EQ(rect, CRect(0, 0, 72, 96)) << "by itself";
}

TEST(Rect, Deflates) {
  CRect rect(10, 20, 30, 40);
  rect.DeflateRect(1, 2);
  EXPECT_EQ(rect, CRect(11, 22, 29, 38));
  rect.DeflateRect(tagSIZE{1, 2});
  EXPECT_EQ(rect, CRect(12, 24, 28, 36));
  rect.DeflateRect(1, 2, 3, 4);
  EXPECT_EQ(rect, CRect(13, 26, 25, 32));
  const CRect by(1, 2, 3, 4);
  rect.DeflateRect(&by);
  EXPECT_EQ(rect, CRect(14, 28, 22, 28));
}

TEST(Rect, Moves) {
  CRect rect(1, 2, 3, 4);
  rect.OffsetRect(10, 20);
  EXPECT_EQ(rect, CRect(11, 22, 13, 24));
  rect.OffsetRect(tagPOINT{kTwo32, 1});
  EXPECT_EQ(rect, edges(11 + kTwo32, 23, 13 + kTwo32, 25));
  rect.OffsetRect(tagSIZE{-kTwo32, -1});
  EXPECT_EQ(rect, CRect(11, 22, 13, 24));
  rect += tagPOINT{1, 2};
  EXPECT_EQ(rect, CRect(12, 24, 14, 26));
  rect += tagSIZE{1, 2};
  EXPECT_EQ(rect, CRect(13, 26, 15, 28));
  rect -= tagPOINT{3, 6};
  EXPECT_EQ(rect, CRect(10, 20, 12, 22));
  rect -= tagSIZE{9, 18};
  EXPECT_EQ(rect, CRect(1, 2, 3, 4));
}

TEST(Rect, AddingAndSubtractingARectangleInflatesAndDeflates) {
  const CRect by(1, 2, 3, 4);
  CRect rect(10, 20, 30, 40);
  rect += &by;
  EXPECT_EQ(rect, CRect(9, 18, 33, 44));
  rect -= &by;
  EXPECT_EQ(rect, CRect(10, 20, 30, 40));
  EXPECT_EQ(rect + &by, CRect(9, 18, 33, 44));
  EXPECT_EQ(rect - &by, CRect(11, 22, 27, 36));
  EXPECT_EQ(rect + by, CRect(9, 18, 33, 44)) << "an object serves as its own address";
}

TEST(Rect, GivesMovedCopies) {
  const CRect rect(1, 2, 3, 4);
  EXPECT_EQ((rect + tagPOINT{kTwo32, 0}), edges(1 + kTwo32, 2, 3 + kTwo32, 4));
  EXPECT_EQ((rect + tagSIZE{10, 20}), CRect(11, 22, 13, 24));
  EXPECT_EQ((rect - tagPOINT{10, 20}), CRect(-9, -18, -7, -16));
  EXPECT_EQ((rect - tagSIZE{10, 20}), CRect(-9, -18, -7, -16));
}

TEST(Rect, NormalizesCrossedEdges) {
  CRect rect(9, 2, 3, 4);
  rect.NormalizeRect();
  EXPECT_EQ(rect, CRect(3, 2, 9, 4));
  rect = CRect(1, 8, 3, 4);
  rect.NormalizeRect();
  EXPECT_EQ(rect, CRect(1, 4, 3, 8));
  rect.NormalizeRect();
  EXPECT_EQ(rect, CRect(1, 4, 3, 8)) << "in order already";
}

TEST(Rect, NormalizingNarrowsWhatMovesRightOrDown) {
  CRect rect = edges(4294967301L, 0, 1, 0);
  rect.NormalizeRect();
  EXPECT_EQ(rect, edges(1, 0, 5, 0));
  rect = edges(0, kTwo32 + 0x80000000L, 0, -kTwo32);
  rect.NormalizeRect();
  EXPECT_EQ(rect, edges(0, -kTwo32, 0, INT_MIN)) << "what moves up keeps all its bits";
}

TEST(Rect, TouchingRectanglesIntersect) {
  const CRect a(0, 0, 10, 10);
  CRect result;
  EXPECT_TRUE(result.IntersectRect(a, CRect(10, 0, 20, 10)));
  EXPECT_EQ(result, CRect(10, 0, 10, 10));
  EXPECT_TRUE(result.IntersectRect(a, CRect(0, 10, 10, 20)));
  EXPECT_EQ(result, CRect(0, 10, 10, 10));
  EXPECT_TRUE(result.IntersectRect(a, CRect(2, 3, 4, 50)));
  EXPECT_EQ(result, CRect(2, 3, 4, 10));
}

TEST(Rect, WithoutACommonPartTheCrossedEdgesAreStored) {
  const CRect a(0, 0, 10, 10);
  CRect result;
  EXPECT_FALSE(result.IntersectRect(a, CRect(11, 0, 20, 10)));
  EXPECT_EQ(result, CRect(11, 0, 10, 10));
  EXPECT_FALSE(result.IntersectRect(a, CRect(0, 11, 10, 20)));
  EXPECT_EQ(result, CRect(0, 11, 10, 10));
}

TEST(Rect, UnionSkipsNoEmptyRectangle) {
  CRect result;
  EXPECT_TRUE(result.UnionRect(CRect(0, 0, 0, 0), CRect(5, 5, 6, 6)));
  EXPECT_EQ(result, CRect(0, 0, 6, 6));
  EXPECT_TRUE(result.UnionRect(result, CRect(-1, 2, 3, 9)));
  EXPECT_EQ(result, CRect(-1, 0, 6, 9)) << "one of the two may be the result itself";
}

}  // namespace
