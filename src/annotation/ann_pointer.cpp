#include "annotation/ann_pointer.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "annotation/report_fields.h"

namespace {

constexpr int kDefaultLength = 25;
constexpr std::array kLengths{12, 15, 20, 25, 30, 45, 60, 80};

struct Direction {
  int x;
  int y;
};
constexpr std::array<Direction, 8> kDirections{
    {{0, 1}, {1, 1}, {1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}}};

constexpr bool isCode(long value) { return value >= 0 && value < 8; }

// From the tip to the tail, for a pair of codes.
CSize tailOffset(long direction, long length) {
  if (!isCode(direction)) return {0, 0};
  int along = isCode(length) ? kLengths[static_cast<std::size_t>(length)] : kDefaultLength;
  const bool isDiagonal = direction % 2 != 0;
  if (isDiagonal) along = static_cast<int>(std::floor(along / 1.4142135623730951 + 0.5));
  const Direction way = kDirections[static_cast<std::size_t>(direction)];
  return {way.x * along, way.y * along};
}

}  // namespace

CAnnPointer::~CAnnPointer() = default;

CPoint CAnnPointer::GetIndexCenter() { return m_ptBase + m_sizeIndexOffset; }
void CAnnPointer::SetIndexCenter(CPoint pt) { m_sizeIndexOffset = pt - m_ptBase; }
CPoint CAnnPointer::GetValueCenter() { return m_ptBase + m_sizeValueOffset; }
void CAnnPointer::SetValueCenter(CPoint pt) { m_sizeValueOffset = pt - m_ptBase; }
void CAnnPointer::CountValue() {}
ANN_MODE CAnnPointer::GetAnnMode() { return ANN_POINTER; }

int CAnnPointer::SetAnnotationReport(unsigned int version, char* text, int nCalc) {
  ReportFields fields(SetAnnotationReportBase(version, text));
  const CPoint pair = fields.TakePoint();
  if (fields.Missing()) return 0;

  m_ptSecond = pair;
  m_strValue = fields.MoreOnLine() ? fields.TakeText() : CString();
  const bool holdsCodes = version < 2;
  if (holdsCodes) SetPointerDirection(11);
  CalcNewAnnotation(nCalc);
  return 1;
}

void CAnnPointer::SetPointerDirection(int code) {
  if (code != 11 && code != 19) return;
  m_ptSecond = m_ptBase + tailOffset(m_ptSecond.x, m_ptSecond.y);
}
