#include "annotation/ann_text.h"

#include <gtest/gtest.h>

#include <string>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;

TEST(Text, ReadsItsOrientationAndText) {
  for (const char* keyword : {"text", "text_x"}) {
    const OneLine one(annotationLine(keyword, "5 a+b%0Ac"));
    auto* const text = one.as<CAnnText>();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->GetAnnMode(), ANN_TEXT);
    EXPECT_EQ(text->m_Orientation, 5) << "the last one counts";
    EXPECT_STREQ(text->m_strText, "a b\r\nc");
    EXPECT_STREQ(text->m_strValue, "");
  }
}

TEST(Text, HasNoValueOnceMeasured) {
  CAnnText text;
  text.m_dValue = 5.0;
  text.m_strValue = "5";
  text.m_strText = "a";
  text.CountValue();
  EXPECT_EQ(text.m_dValue, 0.0);
  EXPECT_STREQ(text.m_strValue, "");
  EXPECT_STREQ(text.m_strText, "a");
}

TEST(Text, MayHave4000Bytes) {
  const std::string content(4000, 'x');
  const OneLine one(annotationLine("text", "0 " + content));
  ASSERT_NE(one.as<CAnnText>(), nullptr);
  EXPECT_EQ(one.as<CAnnText>()->m_strText.GetLength(), 4000);
}

TEST(SpineLabel, ReadsOrientationNumberPairAndText) {
  const OneLine one(annotationLine("spinelabel_x", "6 17 40 -50 L+5"));
  auto* const label = one.as<CAnnSpnLabel>();
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->GetAnnMode(), ANN_SPNLABEL);
  EXPECT_EQ(label->m_Orientation, 6);
  EXPECT_EQ(label->m_nSpn, 17);
  EXPECT_EQ(label->m_sizeSpn, CSize(40, -50));
  EXPECT_STREQ(label->m_strText, "L 5");
  EXPECT_EQ(label->m_bFromReport, 1);
}

TEST(SpineLabel, IsMarkedByTheReportOnly) {
  CAnnotationSet set;
  CAnnSpnLabel label;
  label.Initialize(&set, 1, CPoint(0, 0), 0, ORIENTATION_AS_STORED);
  std::string text = ei4::test::commonFields(1) + " 6 17 40 50 L5";
  EXPECT_EQ(label.SetAnnotationReport(1, text.data(), 1), 1);
  EXPECT_EQ(label.m_bFromReport, 0);
}

TEST(SpineLabel, HasNoPlainKeyword) {
  EXPECT_TRUE(OneLine(annotationLine("spinelabel", "6 17 40 50 L5")).leavesNothing());
}

}  // namespace
