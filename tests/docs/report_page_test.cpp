// docs/formats.md: the view and the annotations that a reader makes of the report of the page.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>

#include "annotation/ann_text.h"
#include "annotation/annotation_set.h"
#include "docs/page.h"
#include "driver/read_annotation.h"

namespace ei4::test {
namespace {

template <class... Value>
std::string text(const Value&... values) {
  std::ostringstream out;
  const char* between = "";
  ((out << between << values, between = " "), ...);
  return out.str();
}
std::string pointText(CPoint pt) { return text(pt.x, pt.y); }

class ReportOfThePage : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(ReadAnnotation(m_Set, (docsFolder() / "examples/report.txt").c_str(), CSize(512, 512)), 1);
  }

  CAnnotationSet m_Set;
};

TEST_F(ReportOfThePage, HasTheStatedView) {
  const CSize display = m_Set.GetDstImageSize();
  const std::map<std::string, std::string> view = {
      {"display", text(display.cx, display.cy)},
      {"mode", text(ImageMode2Int(m_Set.m_ImageMode))},
      {"orientation", text(static_cast<int>(m_Set.m_Orientation))},
      {"zoom", text(m_Set.m_dZoomX, m_Set.m_dZoomY)},
      {"corner", pointText(m_Set.m_ptOffset)},
      {"visible", text(m_Set.m_sizeClip.cx, m_Set.m_sizeClip.cy)},
      {"spacing", text(m_Set.m_dPixelX, m_Set.m_dPixelY)},
      {"window", text(m_Set.m_nLightWindow, m_Set.m_nLightLevel)},
      {"invert", text(m_Set.m_bLight1)},
      {"letters", text(m_Set.m_szOrientRow, m_Set.m_szOrientCol)},
  };
  std::map<std::string, std::string> stated;
  for (const auto& row : formatsPage().table("view")) stated[row.at(0)] = row.at(1);
  EXPECT_EQ(view, stated);
}

TEST_F(ReportOfThePage, HasTheStatedAnnotations) {
  const std::map<ANN_MODE, std::string> names = {
      {ANN_RULER, "ruler"}, {ANN_ANGLE, "angle"}, {ANN_TEXT, "text"}};
  std::vector<std::vector<std::string>> found;
  for (POSITION at = m_Set.m_listAnnotations.GetHeadPosition(); at != nullptr;) {
    CAnnotation* const annotation = m_Set.m_listAnnotations.GetNext(at);
    const auto* const label = dynamic_cast<const CAnnText*>(annotation);
    char color[7];
    std::snprintf(color, sizeof color, "%06X", annotation->m_crColor & 0xFFFFFFU);
    found.push_back({names.at(annotation->GetAnnMode()), text(annotation->m_nIndex), color,
                     pointText(annotation->m_ptBase), pointText(m_Set.ImageToDisplay(annotation->m_ptBase)),
                     static_cast<const char*>(label != nullptr ? label->m_strText : annotation->m_strValue),
                     pointText(annotation->m_ptValue), text(annotation->m_dValue)});
  }
  EXPECT_EQ(found, formatsPage().table("annotations"));
}

}  // namespace
}  // namespace ei4::test
