// Whole reports of a hostile kind, from the text to the picture.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "annotation/annotation_set.h"
#include "annotation/paint_fixture.h"
#include "annotation/report_builder.h"
#include "draw/file_watch.h"
#include "support/cli_temp_folder.h"
#include "text/url_code.h"

namespace {

using ei4::test::Picture;
using ei4::test::Report;

constexpr int kSide = 200;

std::string encoded(const std::string& text) {
  std::string out(3 * text.size() + 1, '\0');
  EncodeURL(text.c_str(), out.data());
  return out.c_str();
}

// The words of `label` in each place that a report has for a text.
Report reportWith(const std::string& label) {
  const std::string common = " 1 ffff 50 50 1 1 60 60 70 70 ";
  const std::string common1 = common + "0 | ";
  const auto line = [&label](const char* keyword, const std::string& fields, const char* more) {
    std::string all(keyword);
    return all.append(fields).append(more).append(label);
  };
  Report report{"sized 200 200 0 0", "light 255 128 0 0", "clip 1 0 0 200 200"};
  report.add(line("text", common, "| 0 ")).add(line("text_x", common1, "0 "));
  report.add(line("spinelabel_x", common1, "0 1 2 3 "));
  for (const char* keyword : {"ruler", "calib", "oval", "houns"})
    report.add(line(keyword, common, "| 90 90 ") + " 1.5");
  for (const char* keyword : {"obm_gsd_x", "obm_crl_x", "obm_bpd_x", "obm_hc_x", "obm_ac_x", "obm_fl_x"})
    report.add(line(keyword, common1, "90 90 "));
  report.add(line("angle", common, "| 90 90 120 40 "))
      .add(line("cobangle_x", common1, "90 90 120 40 10 10 "));
  report.add(line("pointer", common, "| 2 3 ")).add(line("freepointer_x", common1, "90 90 "));
  report.add(line("free", common, "| 3 10 10 20 30 30 10 "));
  return report.add("patient_orientation " + label + " " + label + " " + label);
}

std::vector<std::uint16_t> painted(const Report& report) {
  CAnnotationSet set;
  EXPECT_EQ(report.readInto(set, {kSide, kSide}), 1);
  EXPECT_EQ(set.m_listAnnotations.GetCount(), 18);
  const Picture picture(kSide, kSide);
  CDC dc(picture.image(), picture.info());
  set.PaintAnnotations(&dc, 1.0);
  set.PaintCalibrations(&dc, 1.0);
  set.PaintOrientation(&dc, set.m_ptOffset, set.GetDstImageSize(), set.m_sizeClip, 1.0);
  return picture.pixels();
}

TEST(ReportSafety, NoTextOpensAFile) {
  const ei4::test::TempFolder folder;
  const std::string path = folder.path("n");
  std::ofstream(path) << "a secret";
  ei4::test::FileWatch watch(folder.path("."));
  ASSERT_TRUE(watch.works());
  { const std::ifstream control(path); }
  ASSERT_TRUE(watch.sawAnything());

  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path("."));
  for (const std::string& text :
       {"@" + path, std::string("@n"), "a\n@" + path, "label:@" + path, "%[file:" + path + "]"}) {
    painted(reportWith(encoded(text)));
    EXPECT_FALSE(watch.sawAnything()) << text;
  }
  std::filesystem::current_path(before);
}

TEST(ReportSafety, EscapesAreDecodedOnce) {
  CAnnotationSet set;
  reportWith("%2540a%25%77+%25[w]").readInto(set);
  for (CAnnotation* annotation : ei4::test::annotationsOf(set)) {
    if (annotation->GetAnnMode() == ANN_TEXT || annotation->GetAnnMode() == ANN_SPNLABEL) continue;
    EXPECT_STREQ(annotation->m_strValue, "%40a%w %[w]");
  }
  EXPECT_STREQ(set.m_szOrientRow, "%40") << "3 bytes of it";
}

TEST(ReportSafety, TextsOfAnyBytesAreDrawnCleanly) {
  for (int first = 1; first < 256; first += 9) {
    std::string bytes;
    for (int i = 0; i < 24; ++i) bytes += static_cast<char>((first + i * 7) % 255 + 1);
    painted(reportWith(encoded(bytes)));
  }
  painted(reportWith("%00"));
  painted(reportWith("a%00@/etc/passwd"));
  painted(reportWith(std::string(3000, 'W')));
}

// A and B stand for numbers.
constexpr const char* kNumberedLines[] = {"sized 200 200 0 0",
                                          "light A B 0 0",
                                          "pixel A B",
                                          "clip A B A 200 200 B",
                                          "ruler_x A A A B 1 1 B A 9 9 B | A B x",
                                          "oval A A A B 1 1 B A 9 9 | B A x 1",
                                          "cobangle_x A A A B 1 1 B A 9 9 A | 1 2 A A B B x",
                                          "free A A A B 1 1 B A 9 9 | 3 A B B A 5 5 x",
                                          "pointer A A A B 1 1 B A 9 9 | A B x",
                                          "text A A A B 1 1 B A 9 9 | A x",
                                          "roi y A B B A"};

std::string filledIn(const std::string& line, const std::string& a, const std::string& b) {
  std::string filled;
  for (const char c : line) filled += c == 'A' ? a : c == 'B' ? b : std::string(1, c);
  return filled;
}

TEST(ReportSafety, NumbersOfAnyKindAreDrawnCleanly) {
  const std::vector<std::string> numbers{"nan",
                                         "inf",
                                         "-inf",
                                         "1e308",
                                         "-1e308",
                                         "1e-320",
                                         "0",
                                         "-1",
                                         "2147483647",
                                         "-2147483648",
                                         "99999999999999999999",
                                         "0x1p1023",
                                         "ffffffffff",
                                         "zz",
                                         "|"};
  for (const std::string& a : numbers) {
    for (const std::string& b : {std::string("1"), std::string("-2147483648"), std::string("nan"), a}) {
      Report report;
      for (const char* line : kNumberedLines) report.add(filledIn(line, a, b));
      CAnnotationSet set;
      report.readInto(set, {kSide, kSide});
      const Picture picture(kSide, kSide);
      CDC dc(picture.image(), picture.info());
      dc.LimitWork(ei4::kMostDrawingWork);
      set.PaintAnnotations(&dc, 1.0);
      set.PaintOrientation(&dc, set.m_ptOffset, set.GetDstImageSize(), set.m_sizeClip, 1.0);
      EXPECT_FALSE(dc.HasLeftOut()) << a << ' ' << b;
    }
  }
}

}  // namespace
