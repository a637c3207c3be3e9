#include "types/point_size.h"

#include <cstdint>

#include "types/rect.h"
#include "types/wrapping.h"

namespace {

long lowWord(unsigned long dw) { return static_cast<std::int16_t>(dw & 0xFFFF); }
long highWord(unsigned long dw) { return static_cast<std::int16_t>((dw >> 16) & 0xFFFF); }

// Quirk sums-wrap-at-32-bits: wrapping a 64-bit sum and keeping its low half is the 32-bit sum.
int sum32(long a, long b) { return low32(wrappingAdd(a, b)); }
int difference32(long a, long b) { return low32(wrappingSubtract(a, b)); }

}  // namespace

CSize::CSize(unsigned long dw) { Set(lowWord(dw), highWord(dw)); }

CSize& CSize::operator+=(tagSIZE size) {
  cx = wrappingAdd(cx, size.cx);
  cy = wrappingAdd(cy, size.cy);
  return *this;
}

CSize& CSize::operator-=(tagSIZE size) {
  cx = wrappingSubtract(cx, size.cx);
  cy = wrappingSubtract(cy, size.cy);
  return *this;
}

CSize CSize::operator-() const { return tagSIZE{wrappingSubtract(0, cx), wrappingSubtract(0, cy)}; }

CSize CSize::operator+(tagSIZE size) const { return {sum32(cx, size.cx), sum32(cy, size.cy)}; }
CSize CSize::operator-(tagSIZE size) const { return {difference32(cx, size.cx), difference32(cy, size.cy)}; }
CPoint CSize::operator+(tagPOINT point) const { return {sum32(cx, point.x), sum32(cy, point.y)}; }
CPoint CSize::operator-(tagPOINT point) const {
  return {difference32(cx, point.x), difference32(cy, point.y)};
}

CRect CSize::operator+(const tagRECT* rect) const { return CRect(rect) + *this; }
CRect CSize::operator-(const tagRECT* rect) const { return CRect(rect) - *this; }

CPoint::CPoint(unsigned long dw) { Set(lowWord(dw), highWord(dw)); }

CPoint& CPoint::operator+=(tagSIZE size) {
  Offset(size);
  return *this;
}

CPoint& CPoint::operator-=(tagSIZE size) {
  Offset(-CSize(size));
  return *this;
}

CPoint& CPoint::operator+=(tagPOINT point) {
  Offset(point);
  return *this;
}

CPoint& CPoint::operator-=(tagPOINT point) {
  Offset(-CPoint(point));
  return *this;
}

void CPoint::Offset(int dx, int dy) { Offset(CSize(dx, dy)); }
void CPoint::Offset(tagPOINT point) { Offset(CSize(point)); }

void CPoint::Offset(tagSIZE size) {
  x = wrappingAdd(x, size.cx);
  y = wrappingAdd(y, size.cy);
}

CPoint CPoint::operator-() const { return tagPOINT{wrappingSubtract(0, x), wrappingSubtract(0, y)}; }

CPoint CPoint::operator+(tagSIZE size) const { return {sum32(x, size.cx), sum32(y, size.cy)}; }
CPoint CPoint::operator-(tagSIZE size) const { return {difference32(x, size.cx), difference32(y, size.cy)}; }
CPoint CPoint::operator+(tagPOINT point) const { return {sum32(x, point.x), sum32(y, point.y)}; }
CSize CPoint::operator-(tagPOINT point) const { return {difference32(x, point.x), difference32(y, point.y)}; }

CRect CPoint::operator+(const tagRECT* rect) const { return CRect(rect) + *this; }
CRect CPoint::operator-(const tagRECT* rect) const { return CRect(rect) - *this; }
