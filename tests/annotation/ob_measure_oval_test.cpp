#include "annotation/ob_measure_oval.h"

#include <gtest/gtest.h>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;

TEST(ObstetricOval, ReadsTheTextAsItsNumberToo) {
  for (const char* keyword : {"obm_hc_x", "obm_ac_x"}) {
    const OneLine one(annotationLine(keyword, "1 2 12.5+mm 99"));
    auto* const oval = one.as<CObMeasureOval>();
    ASSERT_NE(oval, nullptr);
    EXPECT_EQ(oval->m_ptSecond, CPoint(1, 2));
    EXPECT_STREQ(oval->m_strValue, "12.5 mm");
    EXPECT_EQ(oval->m_dValue, 12.5) << "there is no number of its own behind the text";
    EXPECT_EQ(oval->m_Orientation, ei4::test::kOrientation);
  }
}

TEST(ObstetricOval, ReadsTheNumberBeforeDecoding) {
  const OneLine one(annotationLine("obm_hc_x", "1 2 %31%32"));
  ASSERT_NE(one.as<CObMeasureHC>(), nullptr);
  EXPECT_STREQ(one.as<CObMeasureHC>()->m_strValue, "12");
  EXPECT_EQ(one.as<CObMeasureHC>()->m_dValue, 0.0);
}

TEST(ObstetricOval, KnowsItsKindAndMeasure) {
  const OneLine head(annotationLine("obm_hc_x", "1 2 a"));
  ASSERT_NE(head.as<CObMeasureHC>(), nullptr);
  EXPECT_EQ(head.as<CObMeasureHC>()->GetAnnMode(), ANN_OB_HC);
  EXPECT_EQ(head.as<CObMeasureHC>()->m_nMeasure, 34);
  const OneLine abdomen(annotationLine("obm_ac_x", "1 2 a"));
  ASSERT_NE(abdomen.as<CObMeasureAC>(), nullptr);
  EXPECT_EQ(abdomen.as<CObMeasureAC>()->GetAnnMode(), ANN_OB_AC);
  EXPECT_EQ(abdomen.as<CObMeasureAC>()->m_nMeasure, 35);
  EXPECT_EQ(CObMeasureOval().GetAnnMode(), ANN_AREA);
}

TEST(ObstetricOval, MeasuresNothingInEitherForm) {
  CObMeasureHC head;
  head.m_dValue = 12.5;
  head.CountValue();
  EXPECT_EQ(head.m_dValue, 12.5);
  bool known = true;
  double value = 3.0;
  CString unit("cm");
  head.CountValue(known, value, unit);
  EXPECT_TRUE(known);
  EXPECT_EQ(value, 3.0);
  EXPECT_STREQ(unit, "cm");
}

TEST(ObstetricOval, HasNoPlainKeyword) {
  EXPECT_TRUE(OneLine(annotationLine("obm_hc", "1 2 a")).leavesNothing());
  EXPECT_TRUE(OneLine(annotationLine("obm_ac", "1 2 a")).leavesNothing());
}

}  // namespace
