#include "annotation/report_limits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "annotation/annotation_set.h"
#include "annotation/report_builder.h"

namespace {

using ei4::kMostAnnotations;
using ei4::kMostBytesOfLabels;
using ei4::kMostLabelBytes;
using ei4::kMostVertices;
using ei4::test::annotationLine;
using ei4::test::Report;
using ei4::test::viewed;

const std::string kText = annotationLine("text", "0 a");

std::string repeated(const std::string& what, long count) {
  std::string all;
  for (long i = 0; i < count; ++i) all += what;
  return all;
}

std::string label(long bytes) { return annotationLine("text", "0 " + repeated("x", bytes)); }

std::string outline(long vertices) {
  return annotationLine("free", std::to_string(vertices) + repeated(" 1 2", vertices) + " a");
}

class ReportLimits : public testing::Test {
 protected:
  void expectTaken(const Report& report, int annotations) {
    CAnnotationSet set;
    EXPECT_EQ(report.readInto(set), 1);
    EXPECT_EQ(set.m_listAnnotations.GetCount(), annotations);
  }
  void expectRefused(const Report& report) {
    CAnnotationSet set;
    EXPECT_EQ(report.readInto(set), 0);
    EXPECT_TRUE(set.m_listAnnotations.IsEmpty()) << "nothing is left that could be drawn";
  }
};

TEST_F(ReportLimits, CountTheAnnotations) {
  Report report = viewed();
  for (int i = 0; i < kMostAnnotations; ++i) report.add(kText);
  expectTaken(report, kMostAnnotations);
  expectRefused(report.add(annotationLine("calib", "1 2 a")));
}

TEST_F(ReportLimits, CountNoLinesThatLeaveNoAnnotation) {
  Report report = viewed();
  for (int i = 0; i < 3 * kMostAnnotations; ++i)
    report.add("text 1 2 / bad").add("cobangle 1 2").add("# text");
  expectTaken(report.add(kText), 1);
}

TEST_F(ReportLimits, CountTheBytesOfALabel) {
  expectTaken(viewed().add(label(kMostLabelBytes)), 1);
  expectRefused(viewed().add(label(kMostLabelBytes + 1)));
  expectRefused(viewed().add(annotationLine("ruler", "1 2 " + repeated("x", kMostLabelBytes + 1))));
  expectRefused(viewed().add(label(kMostLabelBytes + 1)).add(kText).add(label(1)));
}

TEST_F(ReportLimits, CountLabelsAsTheyAreDrawn) {
  expectTaken(viewed().add(annotationLine("text", "0 " + repeated("%41", kMostLabelBytes))), 1);
  expectRefused(viewed().add(annotationLine("text", "0 " + repeated("%0a", kMostLabelBytes / 2 + 1))));
  expectTaken(viewed().add(annotationLine("text", "0 x%00" + repeated("x", 2L * kMostLabelBytes))), 1);
}

TEST_F(ReportLimits, CountTheBytesOfAllLabels) {
  constexpr long kBytes = kMostLabelBytes;
  Report report = viewed();
  for (long rest = kMostBytesOfLabels; rest > 0; rest -= kBytes) report.add(label(std::min(rest, kBytes)));
  expectTaken(report, (kMostBytesOfLabels + kBytes - 1) / kBytes);
  expectRefused(report.add(annotationLine("pointer", "1 1 x")));
}

TEST_F(ReportLimits, CountTheVerticesOfAllOutlines) {
  expectTaken(viewed().add(outline(kMostVertices)), 1);
  expectRefused(viewed().add(outline(kMostVertices + 1)));
  const Report two = viewed().add(outline(kMostVertices / 2)).add(outline(kMostVertices - kMostVertices / 2));
  expectTaken(two, 2);
  expectRefused(Report(two).add(outline(1)));
}

TEST_F(ReportLimits, LeaveOutAnOutlineThatStatesMoreThanIsThere) {
  expectTaken(viewed().add(annotationLine("free", "2000000000 1 2 3 4 a")).add(kText), 1);
  expectTaken(viewed().add(annotationLine("free", "2000000000" + repeated(" 1 2", 2 * kMostVertices))), 0);
}

// Outlines whose counts reach over all lines below them: without a bound this takes minutes.
TEST_F(ReportLimits, BoundWhatOutlinesReadOfEachOther) {
  Report report = viewed();
  for (int i = 0; i < 20000; ++i) report.add("free 1 ff 0 0 0 0 0 0 0 0 | 2000000000");
  expectRefused(report.add(kText));
}

TEST_F(ReportLimits, LetOutlinesShareWordsWithinReason) {
  expectTaken(viewed()
                  .add("free 1 ff 0 0 0 0 0 0 0 0 | 2000000000")
                  .add("free 1 ff 0 0 0 0 0 0 0 0 | 2000000000")
                  .add("free 2 ff 0 0 0 0 0 0 0 0 | 0 a"),
              1);
}

TEST_F(ReportLimits, EndTheReading) {
  CAnnotationSet set;
  EXPECT_EQ(viewed().add(label(kMostLabelBytes + 1)).add("light 7 8 0 0").readInto(set), 0);
  EXPECT_EQ(set.m_nLightWindow, 400) << "the line behind it has not been read";
  EXPECT_EQ(set.SetAnnotationSetReport(nullptr, {1, 1}, 1), 0) << "it stays refused";
}

TEST_F(ReportLimits, AreThoseOfOneText) {
  CAnnotationSet set;
  EXPECT_EQ(viewed().add(label(kMostLabelBytes + 1)).readInto(set), 0);
  EXPECT_EQ(viewed().add(kText).readInto(set), 1);
  EXPECT_EQ(set.m_listAnnotations.GetCount(), 1);
}

}  // namespace
