// Reading whole reports.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "annotation/ann_free.h"
#include "annotation/ann_text.h"
#include "annotation/annotation_set.h"
#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::annotationsOf;
using ei4::test::Report;
using ei4::test::viewed;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kText = annotationLine("text", "0 hello");

std::vector<int> numbersIn(const CAnnotationSet& set) {
  std::vector<int> numbers;
  for (const CAnnotation* annotation : annotationsOf(set)) numbers.push_back(annotation->m_nIndex);
  return numbers;
}

std::string numberedText(int number) { return "text " + std::to_string(number) + " 0 0 0 0 0 0 0 0 0 | 0 a"; }

int readText(CAnnotationSet& set, std::string text) {
  return set.SetAnnotationSetReport(text.data(), {512, 400}, 1);
}

TEST(Report, IsGoodWithSizedAndLight) {
  CAnnotationSet set;
  EXPECT_EQ(viewed().readInto(set), 1);
  EXPECT_THAT(set.m_bReported, ElementsAre(1, 0, 0, 0, 1));
}

TEST(Report, IsNotGoodWithoutEither) {
  CAnnotationSet a, b, c;
  EXPECT_EQ((Report{"sized 512 400 0 0"}).readInto(a), 0);
  EXPECT_EQ((Report{"light 400 40 0 0"}).readInto(b), 0);
  EXPECT_EQ(readText(c, ""), 0);
}

TEST(Report, MayBeNull) {
  CAnnotationSet set;
  EXPECT_EQ(set.SetAnnotationSetReport(nullptr, {1, 1}, 1), 0);
  viewed().readInto(set);
  EXPECT_EQ(set.SetAnnotationSetReport(nullptr, {1, 1}, 1), 1) << "answers as it stands";
  EXPECT_EQ(set.m_sizeImg, CSize(512, 400));
}

TEST(Report, CountsAnnotationsOnlyBehindSizedAndLight) {
  CAnnotationSet early;
  EXPECT_EQ((Report{kText, "sized 512 400 0 0", kText, "light 400 40 0 0"}).readInto(early), 1);
  EXPECT_THAT(annotationsOf(early), IsEmpty());
  CAnnotationSet between;
  EXPECT_EQ((Report{"light 400 40 0 0", kText, "sized 512 400 0 0", kText}).readInto(between), 1);
  EXPECT_EQ(annotationsOf(between).size(), 1u);
}

TEST(Report, BlocksAnnotationsBehindAFailedViewLine) {
  CAnnotationSet set;
  // A line of three words fails only where the text ends: any line below it would lend it a fourth.
  std::string text = viewed().text() + kText + "\n" + "light 1 2 3";
  EXPECT_EQ(readText(set, text), 0);
  EXPECT_EQ(annotationsOf(set).size(), 1u);
  EXPECT_THAT(set.m_bReported, ElementsAre(1, 0, 0, 0, 0));
  EXPECT_EQ(set.m_nLightWindow, 400) << "it changes nothing else";
  EXPECT_EQ(readText(set, kText), 0);
  EXPECT_EQ(annotationsOf(set).size(), 1u);
  EXPECT_EQ(readText(set, "light 5 6 0 0\n" + kText), 1);
  EXPECT_EQ(annotationsOf(set).size(), 2u);
}

TEST(Report, LetsLaterViewLinesWin) {
  CAnnotationSet set;
  viewed().add("light 1 2 1 1").add("sized 100 50 2 1").readInto(set);
  EXPECT_EQ(set.m_nLightWindow, 1);
  EXPECT_EQ(set.m_sizeDst, CSize(100, 50));
  EXPECT_EQ(set.m_ImageMode, IMAGE_ZOOM_ACTUAL);
}

TEST(Report, BordersFieldsAndLinesAtTheSameCharacters) {
  CAnnotationSet set;
  EXPECT_EQ(readText(set, "sized 512\n400 0\r\n0\nlight 400\t40\r0 0"), 1);
  EXPECT_EQ(set.m_sizeDst, CSize(512, 400));
  EXPECT_EQ(set.m_nLightLevel, 40);
}

// The fields of a line may come from the lines below, which are then read as lines of their own as well.
TEST(Report, FillsAShortLineFromTheLinesBelow) {
  CAnnotationSet set;
  EXPECT_EQ(readText(set, "light 1 2\nsized 512 400 0 0"), 1);
  EXPECT_EQ(set.m_nLightLevel, 2);
  EXPECT_EQ(set.m_bLight1, 0) << "\"sized\" is no number";
  EXPECT_EQ(set.m_bLight2, 1) << "512";
}

TEST(Report, ReadsCrLfLines) {
  CAnnotationSet set;
  EXPECT_EQ(readText(set, "sized 512 400 0 0\r\nlight 400 40 0 0\r\n" + kText + "\r\n" + kText + "\r\n"), 1);
  ASSERT_EQ(annotationsOf(set).size(), 2u);
  EXPECT_STREQ(dynamic_cast<CAnnText&>(*annotationsOf(set)[0]).m_strText, "hello");
}

TEST(Report, SkipsCommentsBlankLinesAndIndents) {
  CAnnotationSet set;
  const std::string text = "# a report\n\n \t \n  sized 512 400 0 0\n\t# more\n#\n \tlight 400 40 0 0\n\n" +
                           std::string("#") + kText + "\n   # " + kText + "\n   " + kText;
  EXPECT_EQ(readText(set, text), 1);
  EXPECT_EQ(annotationsOf(set).size(), 1u);
}

TEST(Report, SkipsNothingInFrontOfItsFirstLine) {
  CAnnotationSet set;
  EXPECT_EQ(readText(set, " sized 512 400 0 0\nlight 400 40 0 0"), 0);
  EXPECT_EQ(readText(set, "\nsized 512 400 0 0\nlight 400 40 0 0"), 1) << "an empty line is a line";
}

TEST(Report, SkipsUnknownAndIgnoredLines) {
  CAnnotationSet set;
  const std::string fields = " " + ei4::test::commonFields(1) + " 1 2 3 4 5 6 7 8";
  Report report = viewed();
  for (const char* keyword : {"ID", "cobangle", "text_overlay_x", "midrate", "origviewmark", "unknown",
                              "oval_y", "Ruler", "rulers", "obm_xx_x"})
    report.add(keyword + fields);
  EXPECT_EQ(report.add("sized\t1 1 1 1").readInto(set), 1);
  EXPECT_THAT(annotationsOf(set), IsEmpty());
  EXPECT_EQ(set.m_sizeDst, CSize(512, 400)) << "the keyword ends with a blank";
}

TEST(Report, KeepsAnnotationsInTheOrderOfTheText) {
  CAnnotationSet set;
  Report report = viewed();
  for (const int number : {5, 3, 9, 3}) report.add(numberedText(number));
  report.readInto(set);
  EXPECT_THAT(numbersIn(set), ElementsAre(5, 3, 9, 3));
}

TEST(Report, LeavesNoAnnotationForABadLine) {
  CAnnotationSet set;
  viewed().add(numberedText(1)).add("text 2 0 0 0 0 0 0 0 0 0 / 0 a").add(numberedText(3)).readInto(set);
  EXPECT_THAT(numbersIn(set), ElementsAre(1, 3));
}

TEST(Report, GivesAnnotationsTheOrientationOfTheirView) {
  CAnnotationSet set;
  Report report{"sized 512 400 0 6",
                "light 400 40 0 0",
                annotationLine("ruler", "1 2 a"),
                annotationLine("ruler_x", "1 2 a"),
                "sized 512 400 0 9",
                annotationLine("ruler", "1 2 a")};
  report.readInto(set);
  const std::vector<CAnnotation*> all = annotationsOf(set);
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0]->m_Orientation, 6);
  EXPECT_EQ(all[1]->m_Orientation, 3) << "its own";
  EXPECT_EQ(all[2]->m_Orientation, 9);
}

TEST(Report, GivesAnnotationsTheSpacingInFrontOfThem) {
  CAnnotationSet set;
  const std::string ruler = "ruler 1 0 0 0 0 0 0 0 0 0 | 30 40 a";
  viewed().add(ruler).add("pixel 0.5 0.5").add(ruler).add("pixel 2 2").add(ruler).readInto(set);
  const std::vector<CAnnotation*> all = annotationsOf(set);
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0]->m_dValue, 50.0);
  EXPECT_EQ(all[1]->m_dValue, 25.0);
  EXPECT_EQ(all[2]->m_dValue, 100.0);
}

TEST(Report, MeasuresOnlyWhenAsked) {
  CAnnotationSet set;
  viewed().add(annotationLine("ruler", "30 40 a")).readInto(set, {512, 400}, /*nCalc=*/0);
  ASSERT_EQ(annotationsOf(set).size(), 1u);
  EXPECT_EQ(annotationsOf(set)[0]->m_dValue, 0.0);
}

TEST(Report, OfManyAnnotationsIsRead) {
  CAnnotationSet set;
  std::string text = viewed().text();
  for (int i = 0; i < 1000; ++i) text += numberedText(i % 2 == 0 ? i : -i) + "\ntext 1 2 / bad\n";
  EXPECT_EQ(readText(set, text), 1);
  EXPECT_EQ(set.m_listAnnotations.GetCount(), 1000);
  EXPECT_EQ(annotationsOf(set).back()->m_nIndex, -999);
}

TEST(Report, LetsOutlinesShareWordsWithinReason) {
  CAnnotationSet set;
  viewed().add("free 1 ff 0 0 0 0 0 0 0 0 | 7 1 1").add("free 2 ff 0 0 0 0 0 0 0 0 | 0 a").readInto(set);
  ASSERT_THAT(numbersIn(set), ElementsAre(1, 2));
  EXPECT_EQ(dynamic_cast<CAnnFree&>(*annotationsOf(set)[0]).m_arrVertices.GetSize(), 7);
}

}  // namespace
