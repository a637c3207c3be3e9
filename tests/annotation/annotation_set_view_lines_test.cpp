// The view lines of a report, one by one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "annotation/annotation_set.h"
#include "annotation/report_builder.h"

namespace {

using ei4::test::Report;
using testing::ElementsAre;

int readText(CAnnotationSet& set, std::string text) {
  return set.SetAnnotationSetReport(text.data(), {512, 400}, 1);
}

TEST(SizedLine, SetsSizeModeOrientationAndZoom) {
  CAnnotationSet set;
  (Report{"sized 1024 600 3 4"}).readInto(set, {512, 400});
  EXPECT_EQ(set.m_sizeImg, CSize(512, 400));
  EXPECT_EQ(set.m_sizeDst, CSize(1024, 600));
  EXPECT_EQ(set.m_ImageMode, IMAGE_FIT_ACTUAL);
  EXPECT_EQ(set.m_Orientation, 4);
  EXPECT_EQ(set.m_dZoomX, 2.0);
  EXPECT_EQ(set.m_dZoomY, 1.5);
}

TEST(SizedLine, ExchangesSidesForTheZoomOfOddOrientations) {
  for (const char* orientation : {"1", "3", "5", "7", "9", "-1"}) {
    CAnnotationSet set;
    (Report{std::string("sized 1024 600 0 ") + orientation}).readInto(set, {300, 256});
    EXPECT_EQ(set.m_sizeDst, CSize(1024, 600));
    EXPECT_EQ(set.m_dZoomX, 2.0) << "600 / 300";
    EXPECT_EQ(set.m_dZoomY, 4.0) << "1024 / 256";
  }
}

TEST(SizedLine, ConvertsTheModeCode) {
  const IMAGE_MODE expected[] = {IMAGE_ZOOM, IMAGE_FIT, IMAGE_ZOOM_ACTUAL, IMAGE_FIT_ACTUAL, IMAGE_FIT};
  for (int code = 0; code < 5; ++code) {
    CAnnotationSet set;
    (Report{"sized 1 1 " + std::to_string(code) + " 0"}).readInto(set);
    EXPECT_EQ(set.m_ImageMode, expected[code]) << code;
  }
}

TEST(SizedLine, TakesTheCallersSizeOnlyWithoutAZero) {
  for (const CSize& size : {CSize(0, 0), CSize(100, 0), CSize(0, 100)}) {
    CAnnotationSet set;
    (Report{"sized 512 128 0 0"}).readInto(set, size);
    EXPECT_EQ(set.m_sizeImg, CSize(256, 256));
    EXPECT_EQ(set.m_dZoomX, 2.0);
    EXPECT_EQ(set.m_dZoomY, 0.5);
  }
}

TEST(SizedLine, KeepsSidesOfAnyValue) {
  CAnnotationSet set;
  EXPECT_EQ((Report{"sized -5 0 x y"}).readInto(set, {10, 10}), 0);
  EXPECT_EQ(set.m_bReported[CAnnotationSet::REPORTED_SIZED], 1);
  EXPECT_EQ(set.m_sizeDst, CSize(-5, 0));
  EXPECT_EQ(set.m_dZoomX, -0.5);
}

TEST(RescaleLine, SetsItsThreeNumbers) {
  CAnnotationSet set;
  (Report{"rescale -1024.5 2.25 7"}).readInto(set);
  EXPECT_EQ(set.m_dRescale1, -1024.5);
  EXPECT_EQ(set.m_dRescale2, 2.25);
  EXPECT_EQ(set.m_nRescale, 7);
  EXPECT_THAT(set.m_bReported, ElementsAre(0, 1, 0, 0, 0));
}

TEST(PixelLine, SetsTheSpacing) {
  CAnnotationSet set;
  (Report{"pixel 0.25 1e-3"}).readInto(set);
  EXPECT_EQ(set.m_dPixelX, 0.25);
  EXPECT_EQ(set.m_dPixelY, 1e-3);
  EXPECT_THAT(set.m_bReported, ElementsAre(0, 0, 1, 0, 0));
}

TEST(LightLine, SetsWindowLevelAndFlags) {
  CAnnotationSet set;
  (Report{"light 400 -40 2 -1"}).readInto(set);
  EXPECT_EQ(set.m_nLightWindow, 400);
  EXPECT_EQ(set.m_nLightLevel, -40);
  EXPECT_EQ(set.m_bLight1, 1);
  EXPECT_EQ(set.m_bLight2, 1);
  EXPECT_THAT(set.m_bReported, ElementsAre(0, 0, 0, 0, 1));
  (Report{"light 1 2 0 x"}).readInto(set);
  EXPECT_EQ(set.m_bLight1, 0);
  EXPECT_EQ(set.m_bLight2, 0);
}

TEST(ClipLine, SetsZoomOffsetAndClip) {
  CAnnotationSet set;
  (Report{"clip 1.5 10 -20 100 90"}).readInto(set);
  EXPECT_EQ(set.m_dZoomX, 1.5);
  EXPECT_EQ(set.m_dZoomY, 1.5);
  EXPECT_EQ(set.m_ptOffset, CPoint(10, -20));
  EXPECT_EQ(set.m_sizeClip, CSize(100, 90));
  EXPECT_THAT(set.m_bReported, ElementsAre(0, 0, 0, 1, 0));
}

TEST(ClipLine, TakesASecondZoomFromItsOwnLineOnly) {
  CAnnotationSet same, next, carriageReturn;
  (Report{"clip 1.5 10 20 100 100 2.0"}).readInto(same);
  EXPECT_EQ(same.m_dZoomX, 1.5);
  EXPECT_EQ(same.m_dZoomY, 2.0);
  (Report{"clip 1.5 10 20 100 100", "2.0"}).readInto(next);
  EXPECT_EQ(next.m_dZoomY, 1.5);
  readText(carriageReturn, "clip 1.5 10 20 100 100\r2.0");
  EXPECT_EQ(carriageReturn.m_dZoomY, 1.5);
}

TEST(ClipLine, CentresAFittedPictureInTheClipBeforeThisOne) {
  CAnnotationSet set;
  // Mode code 1 is fit. The clip is 256 x 256 at first, the picture 100 x 151 on the display.
  (Report{"sized 100 151 1 0", "clip 1 10 20 999 999"}).readInto(set);
  EXPECT_EQ(set.m_ptOffset, CPoint((256 + 1 - 100) / 2, (256 + 1 - 151) / 2));
  EXPECT_EQ(set.m_ptOffset, CPoint(78, 53));
  (Report{"clip 1 10 20 5 5"}).readInto(set);
  EXPECT_EQ(set.m_ptOffset, CPoint(450, 424)) << "(999 + 1 - 100) / 2, (999 + 1 - 151) / 2";
  (Report{"clip 1 10 20 101 151"}).readInto(set);
  EXPECT_EQ(set.m_ptOffset, CPoint(0, 0)) << "the last clip, 5 x 5, is smaller than the picture";
  (Report{"clip 1 10 20 1 1"}).readInto(set);
  EXPECT_EQ(set.m_ptOffset, CPoint(1, 0)) << "one pixel of room, and none";
}

TEST(ClipLine, CentresInFitAtActualSizeTooAndNotInZoomModes) {
  CAnnotationSet fitActual, zoomActual;
  (Report{"sized 100 100 3 0", "clip 1 10 20 50 50"}).readInto(fitActual);
  EXPECT_EQ(fitActual.m_ptOffset, CPoint(78, 78));
  (Report{"sized 100 100 2 0", "clip 1 10 20 50 50"}).readInto(zoomActual);
  EXPECT_EQ(zoomActual.m_ptOffset, CPoint(10, 20));
}

TEST(ClipLine, CentresAtTheEndsOfInt) {
  CAnnotationSet set;
  (Report{"sized -2147483648 -2147483648 1 0", "clip 1 0 0 2147483647 2147483647", "clip 1 0 0 1 1"})
      .readInto(set);
  EXPECT_EQ(set.m_ptOffset.x, 1L << 31);
}

TEST(RoiLine, SetsFlagAndRectangle) {
  CAnnotationSet set;
  (Report{"roi y 1 -2 30 40"}).readInto(set);
  EXPECT_EQ(set.m_bRoiRead, 1);
  EXPECT_EQ(set.m_bRoi, 1);
  EXPECT_EQ(set.m_rectRoi, CRect(1, -2, 30, 40));
  (Report{"roi n 5 6 7 8"}).readInto(set);
  EXPECT_EQ(set.m_bRoiRead, 1);
  EXPECT_EQ(set.m_bRoi, 0);
  EXPECT_EQ(set.m_rectRoi, CRect(5, 6, 7, 8));
}

TEST(RoiLine, TakesNumbersAsScanfDoes) {
  CAnnotationSet set;
  for (const char* line : {"roi y1 2 3 4", "roi y\n1\r\n2\t3 4", "roi y 1 2 3 4x", "roi y +1 02 3 4.5",
                           "roix y 1 2 3 4", "roi\ny 1 2 3 4", "roi y 1\f2\v3 4"}) {
    set.m_rectRoi = CRect(0, 0, 0, 0);
    (Report{line}).readInto(set);
    EXPECT_EQ(set.m_bRoiRead, 1) << line;
    EXPECT_EQ(set.m_rectRoi, CRect(1, 2, 3, 4)) << line;
  }
}

TEST(RoiLine, FailsWithoutAFlagOrFourNumbers) {
  for (const char* line : {"roi", "roi ", "roi x 1 2 3 4", "roi Y 1 2 3 4", "roi 1 2 3 4", "roi y",
                           "roi y 1 2 3", "roi yes 1 2 3 4", "roi y 1, 2, 3, 4", "roi y 0x1 2 3 4",
                           "roi y - 1 2 3", "roiy 1 2 3 4", "roi y 1 2 3 x", "roi y 1.5 2 3 4"}) {
    CAnnotationSet set;
    set.m_bRoi = 1;
    set.m_bRoiRead = 1;
    set.m_rectRoi = CRect(9, 8, 7, 6);
    readText(set, line);
    EXPECT_EQ(set.m_bRoiRead, 0) << line;
    EXPECT_EQ(set.m_bRoi, 1) << line;
    EXPECT_EQ(set.m_rectRoi, CRect(9, 8, 7, 6)) << line;
  }
}

TEST(RoiLine, KeepsNumbersOf64Bits) {
  CAnnotationSet set;
  (Report{"roi y -99999999999999999999 4294967296 99999999999999999999 7"}).readInto(set);
  EXPECT_EQ(set.m_rectRoi.left, LONG_MIN);
  EXPECT_EQ(set.m_rectRoi.top, 1L << 32);
  EXPECT_EQ(set.m_rectRoi.right, LONG_MAX);
  EXPECT_EQ(set.m_rectRoi.bottom, 7);
}

TEST(PatientOrientationLine, SetsNumberAndCodes) {
  CAnnotationSet set;
  (Report{"patient_orientation -2 LP%48 F"}).readInto(set);
  EXPECT_EQ(set.m_nPatientOrientation, 0xFFFFFFFEu);
  EXPECT_STREQ(set.m_szOrientRow, "LPH");
  EXPECT_STREQ(set.m_szOrientCol, "F");
}

TEST(PatientOrientationLine, CutsCodesToThreeBytes) {
  CAnnotationSet set;
  (Report{"patient_orientation 1 " + std::string(100000, 'A') + " %41%42%43%44"}).readInto(set);
  EXPECT_STREQ(set.m_szOrientRow, "AAA");
  EXPECT_STREQ(set.m_szOrientCol, "ABC");
}

TEST(PatientOrientationLine, EndsCodesAtADecodedZeroAndLeavesNothingBehindThem) {
  CAnnotationSet set;
  (Report{"patient_orientation 1 LPH AFR", "patient_orientation 1 A%00B %00"}).readInto(set);
  EXPECT_THAT(set.m_szOrientRow, ElementsAre('A', '\0', '\0', '\0'));
  EXPECT_THAT(set.m_szOrientCol, ElementsAre('\0', '\0', '\0', '\0'));
}

TEST(PatientOrientationLine, NeedsItsThreeWords) {
  for (const char* line : {"patient_orientation", "patient_orientation 5", "patient_orientation 5 L"}) {
    CAnnotationSet set;
    readText(set, line);
    EXPECT_EQ(set.m_nPatientOrientation, 0xFFFFFFu) << line;
    EXPECT_STREQ(set.m_szOrientRow, "") << line;
  }
}

struct View {
  const char* line;
  int reported;  // index in m_bReported
};

class ViewLine : public testing::TestWithParam<View> {};
INSTANTIATE_TEST_SUITE_P(EachKind, ViewLine,
                         testing::Values(View{"sized 300 200 2 5", 0}, View{"rescale 3 4 5", 1},
                                         View{"pixel 3 4", 2}, View{"clip 3 4 5 6 7", 3},
                                         View{"light 3 4 5 6", 4}));

TEST_P(ViewLine, ChangesNothingButItsFlagWhenAWordIsMissing) {
  const std::vector<std::string> words = ei4::test::wordsOf(GetParam().line);
  std::string cut;
  for (std::size_t n = 0; n + 1 < words.size(); ++n) {
    cut += words[n] + " ";
    CAnnotationSet set;
    set.m_bReported[GetParam().reported] = 1;
    readText(set, cut);
    EXPECT_THAT(set.m_bReported, testing::Each(0)) << cut;
    EXPECT_EQ(set.m_sizeImg, CSize(256, 256));
    EXPECT_EQ(set.m_sizeDst, CSize(0, 0));
    EXPECT_EQ(set.m_ImageMode, IMAGE_ZOOM);
    EXPECT_EQ(set.m_Orientation, 0);
    EXPECT_EQ(set.m_dZoomX, 1.0);
    EXPECT_EQ(set.m_dZoomY, 1.0);
    EXPECT_EQ(set.m_ptOffset, CPoint(0, 0));
    EXPECT_EQ(set.m_sizeClip, CSize(256, 256));
    EXPECT_EQ(set.m_dPixelX, 0.0);
    EXPECT_EQ(set.m_dPixelY, 0.0);
    EXPECT_EQ(set.m_dRescale1, 0.0);
    EXPECT_EQ(set.m_dRescale2, 1.0);
    EXPECT_EQ(set.m_nRescale, 0);
    EXPECT_EQ(set.m_nLightWindow, 0);
    EXPECT_EQ(set.m_nLightLevel, 0);
    EXPECT_EQ(set.m_bLight1, 0);
    EXPECT_EQ(set.m_bLight2, 0);
  }
}

TEST_P(ViewLine, IsReportedWhenComplete) {
  CAnnotationSet set;
  readText(set, GetParam().line);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(set.m_bReported[i], i == GetParam().reported ? 1 : 0);
}

TEST(ViewLines, MayBeEvaluatedByThemselves) {
  CAnnotationSet set;
  EXPECT_EQ(set.EvalReportedSize(nullptr, {1, 1}), 0);
  EXPECT_EQ(set.EvalReportedRescale(nullptr), 0);
  EXPECT_EQ(set.EvalReportedPixel(nullptr), 0);
  EXPECT_EQ(set.EvalReportedClip(nullptr), 0);
  EXPECT_EQ(set.EvalReportedLight(nullptr), 0);
  EXPECT_EQ(set.EvalReportedRoi(nullptr), 0);
  EXPECT_EQ(set.EvalReportedPatientOrientation(nullptr), 0);
  std::string fields = "1 2 3 4";
  EXPECT_EQ(set.EvalReportedLight(fields.data()), 1);
  EXPECT_EQ(set.EvalReportedPatientOrientation(fields.data()), 1);
  EXPECT_THAT(set.m_bReported, testing::Each(0)) << "the flags are set by the report's reader";
}

}  // namespace
