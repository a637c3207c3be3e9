#include "annotation/ann_cob_angle.h"

#include <gtest/gtest.h>

#include "annotation/report_builder.h"

namespace {

TEST(CobbAngle, ReadsThreePointsAndAText) {
  const ei4::test::OneLine one(ei4::test::annotationLine("cobangle_x", "1 2 3 4 5 6 12%b0"));
  auto* const angle = one.as<CAnnCOBAngle>();
  ASSERT_NE(angle, nullptr);
  EXPECT_EQ(angle->m_ptSecond, CPoint(1, 2));
  EXPECT_EQ(angle->m_ptTop, CPoint(3, 4));
  EXPECT_EQ(angle->m_ptBottom, CPoint(5, 6));
  EXPECT_STREQ(angle->m_strValue, "12\xB0");
  EXPECT_EQ(angle->m_Orientation, ei4::test::kOrientation);
  EXPECT_EQ(angle->m_dValue, 0.0) << "it measures nothing";
}

TEST(CobbAngle, IsNotReadFromThePlainKeyword) {
  EXPECT_TRUE(ei4::test::OneLine(ei4::test::annotationLine("cobangle", "1 2 3 4 5 6 12")).leavesNothing());
}

TEST(CobbAngle, StoresTopAndBottom) {
  CAnnCOBAngle angle;
  angle.SetCOBTop(CPoint(1, 2));
  angle.SetCOBBottom(CPoint(3, 4));
  EXPECT_EQ(angle.m_ptTop, CPoint(1, 2));
  EXPECT_EQ(angle.m_ptBottom, CPoint(3, 4));
}

}  // namespace
