#include "annotation/ann_ruler.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;

struct Ruler : CAnnRuler {
  Ruler(CPoint base, CPoint end, double pixelX, double pixelY) {
    m_ptBase = base;
    m_ptEnd = end;
    m_dPixelX = pixelX;
    m_dPixelY = pixelY;
    CountValue();
  }
};

TEST(Ruler, ReadsItsEndAndText) {
  for (const char* keyword : {"ruler", "ruler_x"}) {
    const OneLine one(annotationLine(keyword, "13 24 5+pix"));
    auto* const ruler = one.as<CAnnRuler>();
    ASSERT_NE(ruler, nullptr);
    EXPECT_EQ(ruler->GetAnnMode(), ANN_RULER);
    EXPECT_EQ(ruler->m_ptEnd, CPoint(13, 24));
    EXPECT_STREQ(ruler->m_strValue, "5 pix");
    EXPECT_EQ(ruler->m_dValue, 5.0) << "from (10, 20): 3 and 4";
    EXPECT_EQ(ruler->m_bTicks, 0);
  }
}

TEST(Ruler, MeasuresPixelsWithoutASpacing) { EXPECT_EQ(Ruler({1, 2}, {-2, 6}, 0.0, 0.0).m_dValue, 5.0); }

TEST(Ruler, MeasuresEachDirectionWithItsSpacing) {
  EXPECT_EQ(Ruler({0, 0}, {6, 4}, 0.5, 1.0).m_dValue, 5.0);
  EXPECT_EQ(Ruler({0, 0}, {6, 4}, -0.5, -1.0).m_dValue, 5.0);
}

TEST(Ruler, NeedsBothSpacings) {
  EXPECT_EQ(Ruler({0, 0}, {3, 4}, 2.0, 0.0).m_dValue, 5.0);
  EXPECT_EQ(Ruler({0, 0}, {3, 4}, 0.0, 2.0).m_dValue, 5.0);
}

TEST(Ruler, TakesASpacingThatIsNoNumberAsKnown) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(Ruler({0, 0}, {3, 4}, nan, 1.0).m_dValue));
  EXPECT_TRUE(std::isnan(Ruler({0, 0}, {3, 4}, 1.0, nan).m_dValue));
  EXPECT_EQ(Ruler({0, 0}, {3, 4}, 0.0, nan).m_dValue, 5.0);
}

TEST(Ruler, StoresNoLengthAsOne) {
  EXPECT_EQ(Ruler({5, 5}, {5, 5}, 0.0, 0.0).m_dValue, 1.0);
  EXPECT_EQ(Ruler({5, 5}, {5, 5}, 0.25, 0.25).m_dValue, 1.0);
  const OneLine one(annotationLine("ruler", "10 20 a"));
  ASSERT_NE(one.as<CAnnRuler>(), nullptr);
  EXPECT_EQ(one.as<CAnnRuler>()->m_dValue, 1.0);
}

TEST(Ruler, MeasuresFromEndToEndOfInt) {
  EXPECT_EQ(Ruler({INT_MIN, 7}, {INT_MAX, 7}, 0.0, 0.0).m_dValue, 4294967295.0);
}

TEST(Ruler, HasNoValueOffsetOfItsOwn) { EXPECT_EQ(CAnnRuler().GetRulerValueOffset(), CSize(0, 0)); }

TEST(Calibration, ReadsARulersFieldsAndMeasuresNothing) {
  for (const char* keyword : {"calib", "calib_x"}) {
    const OneLine one(annotationLine(keyword, "13 24 50+mm"));
    auto* const calibration = one.as<CAnnCalib>();
    ASSERT_NE(calibration, nullptr);
    EXPECT_EQ(calibration->GetAnnMode(), ANN_CALIB);
    EXPECT_EQ(calibration->m_ptEnd, CPoint(13, 24));
    EXPECT_STREQ(calibration->m_strValue, "50 mm");
    EXPECT_EQ(calibration->m_dValue, 0.0);
  }
}

}  // namespace
