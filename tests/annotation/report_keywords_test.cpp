#include "annotation/report_keywords.h"

#include <gtest/gtest.h>

#include <string>

namespace {

int codeOf(const std::string& keyword) {
  for (int code = 0; code < kReportCodes; ++code) {
    if (m_pReportCodes[static_cast<std::size_t>(code)] == keyword) return code;
  }
  return -1;
}

}  // namespace

TEST(ReportKeywords, StandInTheirOrder) {
  EXPECT_EQ(codeOf("ID "), 0);
  EXPECT_EQ(codeOf("sized "), 1);
  EXPECT_EQ(codeOf("light "), 5);
  EXPECT_EQ(codeOf("calib_x "), 22);
  EXPECT_EQ(codeOf("roi"), 25);
  EXPECT_EQ(codeOf("obm_fl_x "), kReportCodes - 1);
}

TEST(ReportKeywords, GiveOvalsTheKindOfAreas) {
  const ReportAction& action = reportAction(codeOf("oval_x "));
  EXPECT_EQ(action.line, ReportLine::annotation);
  EXPECT_EQ(action.kind, ANN_AREA);
  EXPECT_EQ(action.version, 1);
}

TEST(ReportKeywords, TellVersionsApart) {
  EXPECT_EQ(reportAction(codeOf("pointer ")).version, 0);
  EXPECT_EQ(reportAction(codeOf("pointer_x ")).version, 1);
  EXPECT_EQ(reportAction(codeOf("freepointer_x ")).version, 2);
}

TEST(ReportKeywords, ReserveTheIgnoredOnes) {
  for (const char* keyword : {"ID ", "midrate", "origviewmark", "cobangle ", "text_overlay_x "}) {
    ASSERT_NE(codeOf(keyword), -1) << keyword;
    EXPECT_EQ(reportAction(codeOf(keyword)).line, ReportLine::ignored) << keyword;
  }
}

TEST(AnnMode, HasFixedValues) {
  EXPECT_EQ(ANN_RULER, 2);
  EXPECT_EQ(ANN_TEXT, 8);
  EXPECT_EQ(ANN_SPNLABEL, 10);
  EXPECT_EQ(ANN_OB_FL, 18);
}
