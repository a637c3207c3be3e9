#include "annotation/ann_free.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "annotation/annotation_set.h"
#include "annotation/report_fields.h"

namespace {

// As many of `count` points as are there. The count is not trusted: memory grows with what has been read.
std::vector<CPoint> takePoints(ReportFields& fields, int count, long allowance) {
  const char* const begin = fields.End();
  std::vector<CPoint> points;
  for (int i = 0; i < count && fields.End() - begin < allowance; ++i) {
    const CPoint point = fields.TakePoint();
    if (fields.Missing()) break;
    points.push_back(point);
  }
  return points;
}

}  // namespace

CAnnFree::~CAnnFree() = default;

CPoint CAnnFree::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnFree::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnFree::GetValueCenter() { return m_ptBase + m_sizeValueOffset; }
void CAnnFree::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - m_ptBase; }
void CAnnFree::CountValue() {}
ANN_MODE CAnnFree::GetAnnMode() { return ANN_FREE; }

int CAnnFree::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const int count = fields.TakeInt();
  if (fields.Missing() || count < 0 || m_pSet->m_allowance.outlineBytes <= 0) return 0;

  const char* const begin = fields.End();
  const std::vector<CPoint> points = takePoints(fields, count, m_pSet->m_allowance.outlineBytes);
  const bool haveAll = points.size() == static_cast<std::size_t>(count);
  CString value = haveAll ? fields.TakeText() : CString();
  m_pSet->m_allowance.outlineBytes -= fields.End() - begin;
  if (!haveAll || fields.Missing()) return 0;

  m_arrVertices.SetSize(count);
  std::copy(points.begin(), points.end(), m_arrVertices.GetData());
  m_strValue = std::move(value);
  LimitVertices();
  CalcNewAnnotation(nCalc);
  return 1;
}

void CAnnFree::LimitVertices() {
  const long right = std::max(m_pSet->m_sizeImg.cx - 1, 0L);
  const long bottom = std::max(m_pSet->m_sizeImg.cy - 1, 0L);
  for (int i = 0; i < m_arrVertices.GetSize(); ++i) {
    CPoint& vertex = m_arrVertices[i];
    vertex.x = std::clamp(vertex.x, 0L, right);
    vertex.y = std::clamp(vertex.y, 0L, bottom);
  }
}
