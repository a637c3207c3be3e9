#include "driver/report_image.h"

#include <gtest/gtest.h>

#include "settings_fixture.h"

namespace {

using ReportImage = ei4::test::SettingsTest;

int make(const char* out, int hasQuality) {
  return CreateReportImageFile("in.raw", COLOR_TYPE_M08, CSize(1, 1), out, CSize(0, 0), hasQuality, 90,
                               "report.txt", 0, 1);
}

}  // namespace

TEST_F(ReportImage, RefusesAJpgWithoutAQuality) { EXPECT_EQ(make("out.jpg", 0), 0); }

TEST_F(ReportImage, SucceedsInAllOtherCases) {
  EXPECT_EQ(make("out.jpg", 1), 1);
  EXPECT_EQ(make("out.png", 0), 1);
  EXPECT_EQ(make(nullptr, 0), 1);
}

TEST_F(ReportImage, ConsumesTheDecodedInput) {
  pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
  EXPECT_EQ(make("out.png", 0), 1);
  EXPECT_EQ(pImageFromEI4, nullptr);
}
