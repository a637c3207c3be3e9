#include "annotation/ann_oval.h"

#include <gtest/gtest.h>

#include <string>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;

TEST(Oval, IsReadAsAnArea) {
  for (const char* keyword : {"oval", "oval_x"}) {
    const OneLine one(annotationLine(keyword, "1 2 3+cm2"));
    auto* const area = one.as<CAnnArea>();
    ASSERT_NE(area, nullptr);
    EXPECT_EQ(area->GetAnnMode(), ANN_AREA);
    EXPECT_EQ(area->m_ptSecond, CPoint(1, 2));
    EXPECT_STREQ(area->m_strValue, "3 cm2");
    EXPECT_EQ(area->m_dValue, 0.0);
  }
}

TEST(Oval, MayHaveANumberOnItsLine) {
  const OneLine one(annotationLine("oval", "1 2 a 3.5 more"));
  ASSERT_NE(one.as<CAnnArea>(), nullptr);
  EXPECT_EQ(one.as<CAnnArea>()->m_dValue, 3.5);
}

TEST(Oval, TakesNoNumberFromTheNextLine) {
  for (const char* lineEnd : {"\n", "\r\n", "\r", " \n"}) {
    const OneLine one(annotationLine("oval", "1 2 a") + lineEnd + "3.5");
    ASSERT_NE(one.as<CAnnArea>(), nullptr);
    EXPECT_EQ(one.as<CAnnArea>()->m_dValue, 0.0);
  }
}

TEST(Oval, KeepsTheNumberWhenMeasured) {
  const OneLine one(annotationLine("oval", "1 2 a 3.5"));
  ASSERT_NE(one.as<CAnnArea>(), nullptr);
  one.as<CAnnArea>()->CountValue();
  EXPECT_EQ(one.as<CAnnArea>()->m_dValue, 3.5);
  EXPECT_STREQ(one.as<CAnnArea>()->m_strValue, "a");
}

TEST(Oval, ReadsTheSameFieldsByItself) {
  CAnnotationSet set;
  CAnnOval oval;
  oval.Initialize(&set, 1, CPoint(0, 0), 0, ORIENTATION_AS_STORED);
  std::string text = ei4::test::commonFields(0) + " 1 2 a 3.5";
  EXPECT_EQ(oval.SetAnnotationReport(0, text.data(), 1), 1);
  EXPECT_EQ(oval.m_ptSecond, CPoint(1, 2));
  EXPECT_EQ(oval.m_dValue, 3.5);
  EXPECT_EQ(oval.GetAnnMode(), ANN_OVAL);
}

TEST(Light, TakesItsNumberFromTheSameOrALaterLine) {
  for (const char* between : {" ", "\n", "\r\n\r\n"}) {
    const OneLine one(annotationLine("houns", "1 2 a+b") + between + "-42.5");
    auto* const light = one.as<CAnnLight>();
    ASSERT_NE(light, nullptr);
    EXPECT_EQ(light->m_ptSecond, CPoint(1, 2));
    EXPECT_STREQ(light->m_strValue, "a b");
    EXPECT_EQ(light->m_dValue, -42.5);
  }
}

TEST(Light, ReadsItsOrientationInVersion1) {
  const OneLine one(annotationLine("houns_x", "1 2 a 5"));
  ASSERT_NE(one.as<CAnnLight>(), nullptr);
  EXPECT_EQ(one.as<CAnnLight>()->m_Orientation, ei4::test::kOrientation);
}

// A kind that measures 1 whenever it is asked.
struct MeasuringLight : CAnnLight {
  void CountValue() override { m_dValue = 1.0; }
};

TEST(Light, LetsTheReportedNumberWin) {
  CAnnotationSet set;
  MeasuringLight light;
  light.Initialize(&set, 1, CPoint(0, 0), 0, ORIENTATION_AS_STORED);
  std::string text = ei4::test::commonFields(0) + " 1 2 a 3.5";
  EXPECT_EQ(light.SetAnnotationReport(0, text.data(), /*nCalc=*/1), 1);
  EXPECT_EQ(light.m_dValue, 3.5);
}

}  // namespace
