#include "annotation/ob_measure_ruler.h"

#include <gtest/gtest.h>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;

struct Row {
  const char* keyword;
  ANN_MODE kind;
};

class ObstetricRuler : public testing::TestWithParam<Row> {};
INSTANTIATE_TEST_SUITE_P(EachKind, ObstetricRuler,
                         testing::Values(Row{"obm_gsd_x", ANN_OB_GSD}, Row{"obm_crl_x", ANN_OB_CRL},
                                         Row{"obm_bpd_x", ANN_OB_BPD}, Row{"obm_fl_x", ANN_OB_FL}));

TEST_P(ObstetricRuler, ReadsARulersFields) {
  const OneLine one(annotationLine(GetParam().keyword, "13 24 5+mm"));
  auto* const ruler = one.as<CObMeasureRuler>();
  ASSERT_NE(ruler, nullptr);
  EXPECT_EQ(ruler->GetAnnMode(), GetParam().kind);
  EXPECT_EQ(ruler->m_ptEnd, CPoint(13, 24));
  EXPECT_STREQ(ruler->m_strValue, "5 mm");
  EXPECT_EQ(ruler->m_Orientation, ei4::test::kOrientation);
}

TEST_P(ObstetricRuler, MeasuresNothing) {
  const OneLine one(annotationLine(GetParam().keyword, "13 24 5"));
  auto* const ruler = one.as<CAnnRuler>();
  ASSERT_NE(ruler, nullptr);
  EXPECT_EQ(ruler->m_dValue, 0.0);
  ruler->CountValue();
  EXPECT_EQ(ruler->m_dValue, 0.0);
}

TEST_P(ObstetricRuler, ChangesNothingInItsOtherForm) {
  const OneLine one(annotationLine(GetParam().keyword, "13 24 5"));
  auto* const ruler = one.as<CObMeasureRuler>();
  ASSERT_NE(ruler, nullptr);
  bool known = false;
  double value = 3.0;
  CString unit("cm");
  ruler->CountValue(known, value, unit);
  EXPECT_FALSE(known);
  EXPECT_EQ(value, 3.0);
  EXPECT_STREQ(unit, "cm");
}

TEST(ObstetricRulerBase, IsARulerThatMeasures) {
  CObMeasureRuler ruler;
  EXPECT_EQ(ruler.GetAnnMode(), ANN_RULER);
  ruler.m_ptEnd = CPoint(3, 4);
  static_cast<CAnnRuler&>(ruler).CountValue();
  EXPECT_EQ(ruler.m_dValue, 5.0);
}

}  // namespace
