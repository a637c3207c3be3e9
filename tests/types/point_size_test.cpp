#include "types/point_size.h"

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>

#include "types/types.h"

namespace {

constexpr long kTwo32 = 1L << 32;

static_assert(sizeof(CSize) == 16 && sizeof(CPoint) == 16, "no data beyond the two fields");
static_assert(std::is_trivially_default_constructible_v<CSize> &&
              std::is_trivially_default_constructible_v<CPoint>);
static_assert(!std::is_polymorphic_v<CSize> && !std::is_polymorphic_v<CPoint>);
static_assert(std::is_same_v<decltype(tagSIZE::cx), long> && std::is_same_v<decltype(tagPOINT::y), long>);

tagSIZE size(long cx, long cy) { return {cx, cy}; }
tagPOINT point(long x, long y) { return {x, y}; }

TEST(SizeAndPoint, TakeIntsWithTheirSign) {
  EXPECT_EQ(CSize(-1, INT_MIN), size(-1, -2147483648L));
  EXPECT_EQ(CPoint(INT_MAX, -7), point(2147483647L, -7));
}

TEST(SizeAndPoint, CopyBothStructuresWhole) {
  EXPECT_EQ(CSize(size(kTwo32 + 1, -kTwo32)), size(kTwo32 + 1, -kTwo32));
  EXPECT_EQ(CSize(point(kTwo32 + 2, 3)), size(kTwo32 + 2, 3));
  EXPECT_EQ(CPoint(point(kTwo32 + 4, 5)), point(kTwo32 + 4, 5));
  EXPECT_EQ(CPoint(size(kTwo32 + 6, 7)), point(kTwo32 + 6, 7));
}

TEST(SizeAndPoint, UnpackTwoSignedWordsAndIgnoreTheRest) {
  EXPECT_EQ(CSize(0xFFFF0001UL), size(1, -1));
  EXPECT_EQ(CPoint(0xFFFF0001UL), point(1, -1));
  EXPECT_EQ(CSize(0x12345678'7FFF8000UL), size(-32768, 32767));
  EXPECT_EQ(CPoint(0x12345678'7FFF8000UL), point(-32768, 32767));
}

TEST(SizeAndPoint, CompareBothFieldsInAll64Bits) {
  EXPECT_TRUE(CSize(1, 2) == CSize(1, 2));
  EXPECT_TRUE(CSize(1, 2) != CSize(1, 3));
  EXPECT_TRUE(CSize(1, 2) != CSize(3, 2));
  EXPECT_TRUE(CSize(1, 2) != size(kTwo32 + 1, 2));
  EXPECT_TRUE(CPoint(1, 2) == CPoint(1, 2));
  EXPECT_TRUE(CPoint(1, 2) != CPoint(1, 3));
  EXPECT_TRUE(CPoint(1, 2) != CPoint(3, 2));
  EXPECT_TRUE(CPoint(1, 2) != point(1, kTwo32 + 2));
}

TEST(SizeAndPoint, CompoundFormsWorkOn64Bits) {
  CSize s(INT_MAX, -5);
  s += size(1, kTwo32);
  EXPECT_EQ(s, size(2147483648L, kTwo32 - 5));
  s -= size(kTwo32, 1);
  EXPECT_EQ(s, size(2147483648L - kTwo32, kTwo32 - 6));

  CPoint p(INT_MAX, -5);
  p += size(1, kTwo32);
  EXPECT_EQ(p, point(2147483648L, kTwo32 - 5));
  p -= size(kTwo32, 1);
  EXPECT_EQ(p, point(2147483648L - kTwo32, kTwo32 - 6));
  p += point(kTwo32, 6);
  EXPECT_EQ(p, point(2147483648L, kTwo32));
  p -= point(8, kTwo32);
  EXPECT_EQ(p, point(2147483640L, 0));
}

TEST(SizeAndPoint, OffsetMovesAPointBy64Bits) {
  CPoint p(INT_MAX, INT_MIN);
  p.Offset(1, -1);
  EXPECT_EQ(p, point(2147483648L, -2147483649L));
  p.Offset(point(kTwo32, 1));
  EXPECT_EQ(p, point(2147483648L + kTwo32, -2147483648L));
  p.Offset(size(-kTwo32, 2147483648L));
  EXPECT_EQ(p, point(2147483648L, 0));
}

TEST(SizeAndPoint, NegateBothFieldsIn64Bits) {
  EXPECT_EQ(-CSize(size(kTwo32, -3)), size(-kTwo32, 3));
  EXPECT_EQ(-CPoint(point(kTwo32, -3)), point(-kTwo32, 3));
}

TEST(SizeAndPoint, AddAndSubtractInEveryPairing) {
  const CSize s(10, 20);
  const CPoint p(100, 200);
  EXPECT_EQ(s + size(1, 2), size(11, 22));
  EXPECT_EQ(s - size(1, 2), size(9, 18));
  EXPECT_EQ(s + point(1, 2), point(11, 22));
  EXPECT_EQ(s - point(1, 2), point(9, 18)) << "this size minus the point";
  EXPECT_EQ(p + size(1, 2), point(101, 202));
  EXPECT_EQ(p - size(1, 2), point(99, 198));
  EXPECT_EQ(p + point(1, 2), point(101, 202));
  EXPECT_EQ(p - point(1, 2), size(99, 198));
  static_assert(std::is_same_v<decltype(s + s), CSize> && std::is_same_v<decltype(s - s), CSize>);
  static_assert(std::is_same_v<decltype(s + p), CPoint> && std::is_same_v<decltype(s - p), CPoint>);
  static_assert(std::is_same_v<decltype(p + s), CPoint> && std::is_same_v<decltype(p - s), CPoint>);
  static_assert(std::is_same_v<decltype(p + p), CPoint> && std::is_same_v<decltype(p - p), CSize>);
}

TEST(SizeAndPoint, BinarySumsWrapAt32Bits) {
  EXPECT_EQ(CSize(INT_MAX, 0) + size(1, 0), size(INT_MIN, 0));
  EXPECT_EQ(CSize(0, INT_MIN) - size(0, 1), size(0, INT_MAX));
  EXPECT_EQ(CSize(INT_MAX, 0) + point(1, 0), point(INT_MIN, 0));
  EXPECT_EQ(CSize(INT_MIN, 0) - point(1, 0), point(INT_MAX, 0));
  EXPECT_EQ(CPoint(0, INT_MAX) + size(0, 1), point(0, INT_MIN));
  EXPECT_EQ(CPoint(INT_MIN, 0) - size(1, 0), point(INT_MAX, 0));
  EXPECT_EQ(CPoint(INT_MAX, 0) + point(2, 0), point(INT_MIN + 1L, 0));
  EXPECT_EQ(CPoint(point(kTwo32 + 5, -kTwo32)) - point(1, 1), size(4, -1)) << "the high halves are lost";
}

TEST(SizeAndPoint, MoveARectangle) {
  const CRect rect(1, 2, 3, 4);
  EXPECT_EQ(CPoint(10, 20) + &rect, CRect(11, 22, 13, 24));
  EXPECT_EQ(CPoint(10, 20) - &rect, CRect(-9, -18, -7, -16)) << "moved against the point";
  EXPECT_EQ(CSize(10, 20) + &rect, CRect(11, 22, 13, 24));
  EXPECT_EQ(CSize(10, 20) - &rect, CRect(-9, -18, -7, -16));
}

TEST(SizeAndPoint, OverflowOf64BitsWraps) {
  CSize s = size(LONG_MAX, LONG_MIN);
  s += size(1, -1);
  EXPECT_EQ(s, size(LONG_MIN, LONG_MAX));
  EXPECT_EQ(-CPoint(point(LONG_MIN, 0)), point(LONG_MIN, 0));
}

}  // namespace
