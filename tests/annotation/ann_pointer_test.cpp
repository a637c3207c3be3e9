#include "annotation/ann_pointer.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;

// From the base to the tail that a pair of codes gives.
CSize tailOf(int direction, int length) {
  CAnnPointer pointer;
  pointer.m_ptBase = CPoint(100, 200);
  pointer.m_ptSecond = CPoint(direction, length);
  pointer.SetPointerDirection(11);
  return pointer.m_ptSecond - pointer.m_ptBase;
}

TEST(PointerDirection, GoesByEighthsOfATurn) {
  // Length code 3 is 25, and 25 / 1.41421356 + 0.5 is 18.18.
  const CSize expected[] = {{0, 25}, {18, 18}, {25, 0}, {18, -18}, {0, -25}, {-18, -18}, {-25, 0}, {-18, 18}};
  for (int direction = 0; direction < 8; ++direction)
    EXPECT_EQ(tailOf(direction, 3), expected[direction]) << direction;
}

TEST(PointerDirection, HasEightLengths) {
  const int straight[] = {12, 15, 20, 25, 30, 45, 60, 80};
  const int diagonal[] = {8, 11, 14, 18, 21, 32, 42, 57};  // each / 1.41421356 + 0.5, truncated
  for (int length = 0; length < 8; ++length) {
    EXPECT_EQ(tailOf(2, length), CSize(straight[length], 0));
    EXPECT_EQ(tailOf(1, length), CSize(diagonal[length], diagonal[length]));
  }
}

TEST(PointerDirection, TakesOtherLengthsAsTwentyFive) {
  for (const int length : {8, 9, -1, INT_MAX, INT_MIN}) EXPECT_EQ(tailOf(2, length), CSize(25, 0)) << length;
}

TEST(PointerDirection, TakesOtherDirectionsAsNone) {
  for (const int direction : {8, 9, -1, INT_MAX, INT_MIN})
    EXPECT_EQ(tailOf(direction, 3), CSize(0, 0)) << direction;
}

TEST(PointerDirection, IsThatOfCodes11And19Only) {
  for (const int code : {0, 1, 10, 12, 18, 20, -11}) {
    CAnnPointer pointer;
    pointer.m_ptBase = CPoint(100, 200);
    pointer.m_ptSecond = CPoint(2, 3);
    pointer.SetPointerDirection(code);
    EXPECT_EQ(pointer.m_ptSecond, CPoint(2, 3)) << code;
  }
  CAnnPointer pointer;
  pointer.m_ptBase = CPoint(100, 200);
  pointer.m_ptSecond = CPoint(2, 3);
  pointer.SetPointerDirection(19);
  EXPECT_EQ(pointer.m_ptSecond, CPoint(125, 200));
}

TEST(PointerDirection, WrapsAtTheEndsOfInt) {
  CAnnPointer pointer;
  pointer.m_ptBase = CPoint(INT_MAX, INT_MIN);
  pointer.m_ptSecond = CPoint(3, 3);
  pointer.SetPointerDirection(11);
  EXPECT_EQ(pointer.m_ptSecond, CPoint(INT_MIN + 17, INT_MAX - 17));
}

TEST(Pointer, ReadsCodesInVersions0And1) {
  for (const char* keyword : {"pointer", "pointer_x"}) {
    struct Row {
      const char* pair;
      CPoint tail;
    };
    for (const Row& row :
         {Row{"2 3", {10 + 25, 20}}, Row{"1 0", {10 + 8, 20 + 8}}, Row{"2 9", {10 + 25, 20}}}) {
      const OneLine one(annotationLine(keyword, row.pair));
      auto* const pointer = one.as<CAnnPointer>();
      ASSERT_NE(pointer, nullptr);
      EXPECT_EQ(pointer->m_ptSecond, row.tail) << keyword << " " << row.pair;
      EXPECT_STREQ(pointer->m_strValue, "");
    }
  }
}

TEST(Pointer, ReadsAPointInVersion2) {
  const OneLine one(annotationLine("freepointer_x", "2 3 here"));
  auto* const pointer = one.as<CAnnPointer>();
  ASSERT_NE(pointer, nullptr);
  EXPECT_EQ(pointer->m_ptSecond, CPoint(2, 3));
  EXPECT_EQ(pointer->m_Orientation, ei4::test::kOrientation);
  EXPECT_STREQ(pointer->m_strValue, "here");
}

TEST(Pointer, TakesATextFromItsOwnLineOnly) {
  const OneLine same(annotationLine("pointer", "2 3 a+b"));
  ASSERT_NE(same.as<CAnnPointer>(), nullptr);
  EXPECT_STREQ(same.as<CAnnPointer>()->m_strValue, "a b");
  for (const char* lineEnd : {"\n", "\r\n", " \r"}) {
    const OneLine next(annotationLine("pointer", "2 3") + lineEnd + "abc");
    ASSERT_NE(next.as<CAnnPointer>(), nullptr);
    EXPECT_STREQ(next.as<CAnnPointer>()->m_strValue, "");
  }
}

TEST(Pointer, MeasuresNothing) {
  const OneLine one(annotationLine("pointer", "2 3 5"));
  ASSERT_NE(one.as<CAnnPointer>(), nullptr);
  EXPECT_EQ(one.as<CAnnPointer>()->m_dValue, 0.0);
  EXPECT_EQ(one.as<CAnnPointer>()->GetAnnMode(), ANN_POINTER);
}

}  // namespace
