#include "annotation/ann_angle.h"

#include <gtest/gtest.h>

#include <climits>

#include "annotation/report_builder.h"

namespace {

TEST(Angle, ReadsTwoPointsAndAText) {
  const ei4::test::OneLine one(ei4::test::annotationLine("angle", "1 2 -3 4 45+deg"));
  auto* const angle = one.as<CAnnAngle>();
  ASSERT_NE(angle, nullptr);
  EXPECT_EQ(angle->m_ptSecond, CPoint(1, 2));
  EXPECT_EQ(angle->m_ptThird, CPoint(-3, 4));
  EXPECT_STREQ(angle->m_strValue, "45 deg");
  EXPECT_EQ(angle->m_dValue, 0.0) << "it measures nothing";
}

TEST(Angle, ReadsItsOrientationInVersion1) {
  const ei4::test::OneLine one(ei4::test::annotationLine("angle_x", "1 2 3 4 a"));
  auto* const angle = one.as<CAnnAngle>();
  ASSERT_NE(angle, nullptr);
  EXPECT_EQ(angle->m_Orientation, ei4::test::kOrientation);
}

TEST(Angle, HangsItsValueOnTheMiddleOfTheArmEnds) {
  CAnnAngle angle;
  angle.m_ptSecond = CPoint(10, 20);
  angle.m_ptThird = CPoint(30, -20);
  angle.SetValueCenter(CPoint(25, 7));
  angle.m_ptBase = CPoint(100, 100);  // does not matter
  EXPECT_EQ(angle.GetValueCenter(), CPoint(25, 7));
  angle.m_ptSecond = CPoint(14, 30);  // the middle moves by (2, 5)
  EXPECT_EQ(angle.GetValueCenter(), CPoint(27, 12));
}

TEST(Angle, TruncatesTheMiddleTowardZero) {
  CAnnAngle angle;
  angle.SetValueCenter(CPoint(0, 0));  // both ends at (0, 0): no offset
  angle.m_ptSecond = CPoint(-3, 3);
  EXPECT_EQ(angle.GetValueCenter(), CPoint(-1, 1));
}

TEST(Angle, HasAMiddleBetweenTheEndsOfInt) {
  CAnnAngle angle;
  angle.SetValueCenter(CPoint(0, 0));
  angle.m_ptSecond = CPoint(INT_MAX, INT_MIN);
  angle.m_ptThird = CPoint(INT_MAX, INT_MIN);
  EXPECT_EQ(angle.GetValueCenter(), CPoint(INT_MAX, INT_MIN));
}

TEST(Angle, HangsItsIndexOnTheVertex) {
  CAnnAngle angle;
  angle.m_ptBase = CPoint(10, 10);
  angle.SetIndexCenter(CPoint(12, 7));
  angle.m_ptBase = CPoint(0, 0);
  EXPECT_EQ(angle.GetIndexCenter(), CPoint(2, -3));
}

}  // namespace
