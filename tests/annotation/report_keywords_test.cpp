#include "annotation/report_keywords.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

namespace {

const char* keywordOf(int code) { return m_pReportCodes[static_cast<std::size_t>(code)]; }

int codeOf(const std::string& keyword) {
  for (int code = 0; code < kReportCodes; ++code) {
    if (keywordOf(code) == keyword) return code;
  }
  return -1;
}

// What "compared with the keywords in their order, the first match wins" says, word for word.
int slowlyFoundCode(const char* line) {
  for (int code = 0; code < kReportCodes; ++code) {
    if (std::strncmp(line, keywordOf(code), std::strlen(keywordOf(code))) == 0) return code;
  }
  return -1;
}

struct AnnotationRow {
  const char* keyword;
  ANN_MODE kind;
  int version;
};

constexpr AnnotationRow kAnnotationRows[] = {
    {"ruler ", ANN_RULER, 0},         {"angle ", ANN_ANGLE, 0},       {"oval ", ANN_AREA, 0},
    {"houns ", ANN_LIGHT, 0},         {"text ", ANN_TEXT, 0},         {"pointer ", ANN_POINTER, 0},
    {"free ", ANN_FREE, 0},           {"calib ", ANN_CALIB, 0},       {"ruler_x ", ANN_RULER, 1},
    {"angle_x ", ANN_ANGLE, 1},       {"oval_x ", ANN_AREA, 1},       {"houns_x ", ANN_LIGHT, 1},
    {"text_x ", ANN_TEXT, 1},         {"pointer_x ", ANN_POINTER, 1}, {"freepointer_x ", ANN_POINTER, 2},
    {"free_x ", ANN_FREE, 1},         {"calib_x ", ANN_CALIB, 1},     {"spinelabel_x ", ANN_SPNLABEL, 1},
    {"cobangle_x ", ANN_COBANGLE, 1}, {"obm_gsd_x ", ANN_OB_GSD, 1},  {"obm_crl_x ", ANN_OB_CRL, 1},
    {"obm_bpd_x ", ANN_OB_BPD, 1},    {"obm_hc_x ", ANN_OB_HC, 1},    {"obm_ac_x ", ANN_OB_AC, 1},
    {"obm_fl_x ", ANN_OB_FL, 1},
};

}  // namespace

TEST(ReportKeywords, StandInTheirOrder) {
  constexpr const char* kInOrder[] = {"ID ",
                                      "sized ",
                                      "rescale ",
                                      "pixel ",
                                      "clip ",
                                      "light ",
                                      "ruler ",
                                      "angle ",
                                      "oval ",
                                      "houns ",
                                      "text ",
                                      "pointer ",
                                      "free ",
                                      "calib ",
                                      "ruler_x ",
                                      "angle_x ",
                                      "oval_x ",
                                      "houns_x ",
                                      "text_x ",
                                      "pointer_x ",
                                      "freepointer_x ",
                                      "free_x ",
                                      "calib_x ",
                                      "midrate",
                                      "origviewmark",
                                      "roi",
                                      "patient_orientation",
                                      "spinelabel_x ",
                                      "cobangle ",
                                      "cobangle_x ",
                                      "text_overlay_x ",
                                      "obm_gsd_x ",
                                      "obm_crl_x ",
                                      "obm_bpd_x ",
                                      "obm_hc_x ",
                                      "obm_ac_x ",
                                      "obm_fl_x "};
  static_assert(std::size(kInOrder) == kReportCodes);
  for (int code = 0; code < kReportCodes; ++code) EXPECT_STREQ(keywordOf(code), kInOrder[code]);
}

TEST(ReportKeywords, GiveAnnotationsTheirKindAndVersion) {
  for (const AnnotationRow& row : kAnnotationRows) {
    const ReportAction& action = reportAction(codeOf(row.keyword));
    EXPECT_EQ(action.line, ReportLine::annotation) << row.keyword;
    EXPECT_EQ(action.kind, row.kind) << row.keyword;
    EXPECT_EQ(action.version, row.version) << row.keyword;
  }
}

TEST(ReportKeywords, GiveTheViewTheRest) {
  EXPECT_EQ(reportAction(codeOf("sized ")).line, ReportLine::size);
  EXPECT_EQ(reportAction(codeOf("rescale ")).line, ReportLine::rescale);
  EXPECT_EQ(reportAction(codeOf("pixel ")).line, ReportLine::pixel);
  EXPECT_EQ(reportAction(codeOf("clip ")).line, ReportLine::clip);
  EXPECT_EQ(reportAction(codeOf("light ")).line, ReportLine::light);
  EXPECT_EQ(reportAction(codeOf("roi")).line, ReportLine::roi);
  EXPECT_EQ(reportAction(codeOf("patient_orientation")).line, ReportLine::patientOrientation);
}

TEST(ReportKeywords, ReserveTheIgnoredOnes) {
  for (const char* keyword : {"ID ", "midrate", "origviewmark", "cobangle ", "text_overlay_x "}) {
    ASSERT_NE(codeOf(keyword), -1) << keyword;
    EXPECT_EQ(reportAction(codeOf(keyword)).line, ReportLine::ignored) << keyword;
  }
}

TEST(FindReportCode, FindsEachKeywordAtTheBeginningOfALine) {
  for (int code = 0; code < kReportCodes; ++code) {
    const std::string keyword = keywordOf(code);
    EXPECT_EQ(findReportCode(keyword.c_str()), code) << keyword;
    EXPECT_EQ(findReportCode((keyword + "1 2 3").c_str()), code) << keyword;
    EXPECT_EQ(findReportCode((" " + keyword).c_str()), -1) << keyword;
  }
}

TEST(FindReportCode, WantsTheBlankThatEndsAKeyword) {
  for (const char* line : {"", "I", "ID", "sized", "sized\t1", "light\n", "ruler", "rulers ", "ruler_y ",
                           "text_", "Sized ", "obm_", "obm_xx_x ", "#sized ", "\xFF"})
    EXPECT_EQ(findReportCode(line), -1) << line;
}

TEST(FindReportCode, TakesAnyLineThatBeginsWithAKeywordWithoutBlank) {
  EXPECT_EQ(findReportCode("roix 1 2"), codeOf("roi"));
  EXPECT_EQ(findReportCode("midrates"), codeOf("midrate"));
  EXPECT_EQ(findReportCode("patient_orientations"), codeOf("patient_orientation"));
}

TEST(FindReportCode, EqualsTheComparisonInOrder) {
  // Each beginning of each keyword, with each of a few characters behind it.
  for (int code = 0; code < kReportCodes; ++code) {
    const std::string keyword = keywordOf(code);
    for (std::size_t n = 0; n <= keyword.size(); ++n) {
      for (const char* tail : {"", " ", "_x ", "x", "\t"}) {
        const std::string line = keyword.substr(0, n) + tail;
        EXPECT_EQ(findReportCode(line.c_str()), slowlyFoundCode(line.c_str())) << line;
      }
    }
  }
}

TEST(AnnMode, HasFixedValues) {
  EXPECT_EQ(ANN_OVAL, 0);
  EXPECT_EQ(ANN_RULER, 2);
  EXPECT_EQ(ANN_ANGLE, 3);
  EXPECT_EQ(ANN_LIGHT, 4);
  EXPECT_EQ(ANN_AREA, 5);
  EXPECT_EQ(ANN_FREE, 6);
  EXPECT_EQ(ANN_POINTER, 7);
  EXPECT_EQ(ANN_TEXT, 8);
  EXPECT_EQ(ANN_SPNLABEL, 10);
  EXPECT_EQ(ANN_COBANGLE, 11);
  EXPECT_EQ(ANN_CALIB, 12);
  EXPECT_EQ(ANN_OB_GSD, 13);
  EXPECT_EQ(ANN_OB_CRL, 14);
  EXPECT_EQ(ANN_OB_BPD, 15);
  EXPECT_EQ(ANN_OB_HC, 16);
  EXPECT_EQ(ANN_OB_AC, 17);
  EXPECT_EQ(ANN_OB_FL, 18);
}
