#include "annotation/orientation_marks.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "annotation/annotation_set.h"
#include "annotation/display_geometry.h"
#include "annotation/paint_style.h"
#include "annotation/shadowed_text.h"

namespace {

constexpr unsigned int kMarkColor = 0x00FF00;

enum Edge : std::size_t { kRight, kLeft, kBottom, kTop, kEdges };

/// The edges of the row code, its opposite, the column code, its opposite, by orientation: where the stored
/// picture's axes and their opposites point on the display.
constexpr std::array<std::array<Edge, 4>, 8> kEdgesOfMarks{{
    {kRight, kLeft, kBottom, kTop},
    {kBottom, kTop, kLeft, kRight},
    {kLeft, kRight, kTop, kBottom},
    {kTop, kBottom, kRight, kLeft},
    {kLeft, kRight, kBottom, kTop},
    {kTop, kBottom, kLeft, kRight},
    {kRight, kLeft, kTop, kBottom},
    {kBottom, kTop, kRight, kLeft},
}};

char opposite(char direction) {
  switch (direction) {
    case 'A':
      return 'P';
    case 'P':
      return 'A';
    case 'F':
      return 'H';
    case 'H':
      return 'F';
    case 'L':
      return 'R';
    case 'R':
      return 'L';
    default:
      return direction;
  }
}

CString oppositeOf(const char* code) {
  CString copy(code);
  CAnnotationSet::InvPatientOrientationCode(copy.GetBuffer());
  return copy;
}

void restrict(long& coordinate, long size, long margin) {
  if (2 * margin >= size) {
    coordinate = size / 2;
  } else if (coordinate < margin) {
    coordinate = margin;
  } else if (coordinate >= size - margin) {
    coordinate = size - margin - 1;
  }
}

// The middles of the rectangle's sides, `margin` inside, but never on the wrong side of its centre.
std::array<CPoint, kEdges> anchorsIn(CRect rect, int margin) {
  const CPoint center = rect.CenterPoint();
  const CPoint first = Moved(rect.TopLeft(), margin, margin);
  const CPoint last = Moved(rect.BottomRight(), -long{margin}, -long{margin});
  const CPoint before = Moved(center, -long{margin}, -long{margin});
  const CPoint behind = Moved(center, margin, margin);
  std::array<CPoint, kEdges> anchors{center, center, center, center};
  anchors[kRight].x = std::max(last.x, behind.x);
  anchors[kLeft].x = std::min(first.x, before.x);
  anchors[kBottom].y = std::max(last.y, behind.y);
  anchors[kTop].y = std::min(first.y, before.y);
  return anchors;
}

}  // namespace

void RestrictPoint(CPoint& pt, CSize size, int margin) {
  restrict(pt.x, size.cx, margin);
  restrict(pt.y, size.cy, margin);
}

void CAnnotationSet::InvPatientOrientationCode(char* code) {
  for (; *code != '\0'; ++code) *code = opposite(*code);
}

void CAnnotationSet::PaintOrientation(CDC* dc, CPoint /*pt*/, CSize /*sizeA*/, CSize sizeDst, double scale) {
  const CRect picture(CPoint(0, 0), sizeDst);
  const CRect roi = GetRoiDisplay();
  CRect visible(0, 0, 0, 0);
  visible.IntersectRect(picture, roi);  // Quirk marks-of-nothing: its edges cross when nothing is visible
  PaintOrientation(m_szOrientRow, m_szOrientCol, m_Orientation, dc, visible, sizeDst, scale);
}

void CAnnotationSet::PaintOrientation(const char* codeRow, const char* codeCol, ORIENTATION orient, CDC* dc,
                                      CRect rect, CSize sizeDst, double scale) {
  const std::array<CString, 4> marks{codeRow, oppositeOf(codeRow), codeCol, oppositeOf(codeCol)};
  const int margin = Truncated(scale * 10 + 0.5);
  std::array<CPoint, kEdges> anchors = anchorsIn(rect, margin);
  for (CPoint& anchor : anchors) RestrictPoint(anchor, sizeDst, margin);

  const int row = IsOrientation(orient) ? orient : ORIENTATION_AS_STORED;
  const auto& edges = kEdgesOfMarks[static_cast<std::size_t>(row)];
  for (std::size_t i = 0; i < marks.size(); ++i) {
    DrawShadowedText(dc, marks[i], PlaceAt(anchors[edges[i]]), kMarkColor, kLabelCentered, scale);
  }
}
