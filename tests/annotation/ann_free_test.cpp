#include "annotation/ann_free.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "annotation/report_builder.h"

namespace {

using ei4::test::annotationLine;
using ei4::test::OneLine;
using testing::ElementsAre;

std::vector<CPoint> verticesOf(const CAnnFree& outline) {
  const CPoint* const first = outline.m_arrVertices.GetData();
  return {first, first + outline.m_arrVertices.GetSize()};
}

TEST(Free, ReadsCountVerticesAndText) {
  for (const char* keyword : {"free", "free_x"}) {
    const OneLine one(annotationLine(keyword, "3 1 2 3 4 5 6 7+cm2 8 9"));
    auto* const outline = one.as<CAnnFree>();
    ASSERT_NE(outline, nullptr);
    EXPECT_THAT(verticesOf(*outline), ElementsAre(CPoint(1, 2), CPoint(3, 4), CPoint(5, 6)));
    EXPECT_STREQ(outline->m_strValue, "7 cm2");
    EXPECT_EQ(outline->GetAnnMode(), ANN_FREE);
    EXPECT_EQ(outline->m_dValue, 0.0) << "it measures nothing";
  }
}

TEST(Free, MayHaveNoVertices) {
  const OneLine one(annotationLine("free", "0 text"));
  auto* const outline = one.as<CAnnFree>();
  ASSERT_NE(outline, nullptr);
  EXPECT_TRUE(outline->m_arrVertices.IsEmpty());
  EXPECT_STREQ(outline->m_strValue, "text");
}

TEST(Free, RefusesANegativeCount) {
  EXPECT_TRUE(OneLine(annotationLine("free", "-1 1 2 a")).leavesNothing());
}

TEST(Free, RefusesACountBeyondItsVertices) {
  EXPECT_TRUE(OneLine(annotationLine("free", "2 1 2 3 4")).leavesNothing()) << "no text";
  EXPECT_TRUE(OneLine(annotationLine("free", "2 1 2 3")).leavesNothing());
  EXPECT_TRUE(OneLine(annotationLine("free", "2147483647 1 2 3 4 a")).leavesNothing());
}

TEST(Free, MovesVerticesIntoThePicture) {
  const OneLine one(annotationLine("free", "4 -1 -5 512 400 511 399 2147483647 -2147483648 a"));
  auto* const outline = one.as<CAnnFree>();
  ASSERT_NE(outline, nullptr);
  EXPECT_THAT(verticesOf(*outline),
              ElementsAre(CPoint(0, 0), CPoint(511, 399), CPoint(511, 399), CPoint(511, 0)));
}

TEST(LimitVertices, LeavesTheCornerOfAPictureWithoutPixels) {
  for (const CSize& size : {CSize(0, 0), CSize(-5, 1)}) {
    CAnnotationSet set;
    set.m_sizeImg = size;
    CAnnFree outline;
    outline.Initialize(&set, 1, CPoint(0, 0), 0, ORIENTATION_AS_STORED);
    outline.m_arrVertices.Add(CPoint(7, -7));
    outline.LimitVertices();
    EXPECT_THAT(verticesOf(outline), ElementsAre(CPoint(0, 0)));
  }
}

TEST(Free, ReadsManyVertices) {
  constexpr int kCount = 50000;
  std::string fields = std::to_string(kCount);
  for (int i = 0; i < kCount; ++i) fields += " " + std::to_string(i % 500) + "\n" + std::to_string(i % 400);
  const OneLine one(annotationLine("free", fields + " a"));
  auto* const outline = one.as<CAnnFree>();
  ASSERT_NE(outline, nullptr);
  ASSERT_EQ(outline->m_arrVertices.GetSize(), kCount);
  EXPECT_EQ(outline->m_arrVertices[kCount - 1], CPoint(499, 399));
}

class FreeAllowance : public testing::Test {
 protected:
  // What the class answers when it may still read so many bytes behind its count.
  int readWith(long bytes) {
    CAnnotationSet set;
    set.m_allowance.outlineBytes = bytes;
    CAnnFree outline;
    outline.Initialize(&set, 1, CPoint(0, 0), 0, ORIENTATION_AS_STORED);
    std::string text = ei4::test::commonFields(0) + " 3 1 2 3 4 5 6 abc def";
    const int answer = outline.SetAnnotationReport(0, text.data(), 1);
    left = set.m_allowance.outlineBytes;
    return answer;
  }
  long left = 0;
};

TEST_F(FreeAllowance, CountsWhatIsReadBehindTheCount) {
  EXPECT_EQ(readWith(1000), 1);
  EXPECT_EQ(left, 1000 - 16) << "\" 1 2 3 4 5 6 abc\"";
}

TEST_F(FreeAllowance, RefusesTheOutlineThatUsesItUp) {
  EXPECT_EQ(readWith(9), 1) << "the last vertex begins within it";
  EXPECT_EQ(left, 9 - 16);
  EXPECT_EQ(readWith(8), 0);
  EXPECT_EQ(left, 0);
}

TEST_F(FreeAllowance, RefusesOutlinesOnceItIsUsedUp) {
  EXPECT_EQ(readWith(0), 0);
  EXPECT_EQ(left, 0);
  EXPECT_EQ(readWith(-7), 0);
  EXPECT_EQ(left, -7) << "nothing was read";
}

}  // namespace
