#include "types/rect.h"

#include <algorithm>
#include <utility>

#include "types/wrapping.h"

// The corners are viewed in place, so a point's fields must lie where the edges do.
static_assert(sizeof(CPoint) == 2 * sizeof(long) && sizeof(CRect) == 4 * sizeof(long));

CRect::CRect(tagPOINT topLeft, tagSIZE size) {
  Set(topLeft.x, topLeft.y, wrappingAdd(topLeft.x, size.cx), wrappingAdd(topLeft.y, size.cy));
}

CRect::CRect(tagPOINT topLeft, tagPOINT bottomRight) {
  Set(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y);
}

CRect& CRect::operator=(const tagRECT& rect) {
  tagRECT::operator=(rect);
  return *this;
}

void CRect::SetRect(int l, int t, int r, int b) { *this = CRect(l, t, r, b); }
void CRect::SetRect(tagPOINT topLeft, tagPOINT bottomRight) { *this = CRect(topLeft, bottomRight); }
void CRect::SetRectEmpty() { *this = CRect(0, 0, 0, 0); }

long CRect::Width() const { return wrappingSubtract(right, left); }
long CRect::Height() const { return wrappingSubtract(bottom, top); }
CSize CRect::Size() const { return {low32(Width()), low32(Height())}; }

CPoint CRect::CenterPoint() const {
  return {low32(wrappingAdd(left, right) / 2), low32(wrappingAdd(top, bottom) / 2)};
}

CPoint& CRect::TopLeft() { return *reinterpret_cast<CPoint*>(&left); }
CPoint& CRect::BottomRight() { return *reinterpret_cast<CPoint*>(&right); }
const CPoint& CRect::TopLeft() const { return *reinterpret_cast<const CPoint*>(&left); }
const CPoint& CRect::BottomRight() const { return *reinterpret_cast<const CPoint*>(&right); }

bool CRect::IsRectEmpty() const { return left == right || top == bottom; }
bool CRect::IsRectNull() const { return *this == CRect(0, 0, 0, 0); }

bool CRect::PtInRect(tagPOINT point) const {
  return left <= point.x && point.x < right && top <= point.y && point.y < bottom;
}

bool CRect::EqualRect(const tagRECT* rect) const { return *this == *rect; }

void CRect::SwapLeftRight() { SwapLeftRight(this); }
void CRect::SwapLeftRight(tagRECT* rect) { std::swap(rect->left, rect->right); }

void CRect::NormalizeRect() {
  const auto order = [](long& first, long& second) {
    if (first <= second) return;
    const int narrowed = low32(first);  // Quirk normalize-narrows
    first = second;
    second = narrowed;
  };
  order(left, right);
  order(top, bottom);
}

void CRect::InflateRect(int dx, int dy) { InflateRect(CSize(dx, dy)); }
void CRect::InflateRect(tagSIZE size) {
  const tagRECT by{size.cx, size.cy, size.cx, size.cy};
  InflateRect(&by);
}
void CRect::InflateRect(int l, int t, int r, int b) { InflateRect(CRect(l, t, r, b)); }

void CRect::InflateRect(const tagRECT* rect) {
  const tagRECT by = *rect;  // the rectangle may be this one
  left = wrappingSubtract(left, by.left);
  top = wrappingSubtract(top, by.top);
  right = wrappingAdd(right, by.right);
  bottom = wrappingAdd(bottom, by.bottom);
}

void CRect::DeflateRect(int dx, int dy) { DeflateRect(CSize(dx, dy)); }
void CRect::DeflateRect(tagSIZE size) { InflateRect(-CSize(size)); }
void CRect::DeflateRect(int l, int t, int r, int b) { DeflateRect(CRect(l, t, r, b)); }

void CRect::DeflateRect(const tagRECT* rect) {
  const tagRECT by = *rect;
  left = wrappingAdd(left, by.left);
  top = wrappingAdd(top, by.top);
  right = wrappingSubtract(right, by.right);
  bottom = wrappingSubtract(bottom, by.bottom);
}

void CRect::OffsetRect(int dx, int dy) { OffsetRect(CSize(dx, dy)); }
void CRect::OffsetRect(tagPOINT point) { OffsetRect(CSize(point)); }

void CRect::OffsetRect(tagSIZE size) {
  left = wrappingAdd(left, size.cx);
  top = wrappingAdd(top, size.cy);
  right = wrappingAdd(right, size.cx);
  bottom = wrappingAdd(bottom, size.cy);
}

bool CRect::IntersectRect(const tagRECT* a, const tagRECT* b) {
  *this = tagRECT{std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                  std::min(a->bottom, b->bottom)};
  return right >= left && bottom >= top;  // Quirk touching-intersects
}

bool CRect::UnionRect(const tagRECT* a, const tagRECT* b) {
  *this = tagRECT{std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
                  std::max(a->bottom, b->bottom)};
  return true;
}

CRect& CRect::operator+=(tagPOINT point) {
  OffsetRect(point);
  return *this;
}

CRect& CRect::operator+=(tagSIZE size) {
  OffsetRect(size);
  return *this;
}

CRect& CRect::operator+=(const tagRECT* rect) {
  InflateRect(rect);
  return *this;
}

CRect& CRect::operator-=(tagPOINT point) {
  OffsetRect(-CPoint(point));
  return *this;
}

CRect& CRect::operator-=(tagSIZE size) {
  OffsetRect(-CSize(size));
  return *this;
}

CRect& CRect::operator-=(const tagRECT* rect) {
  DeflateRect(rect);
  return *this;
}

CRect CRect::operator+(tagPOINT point) const { return CRect(*this) += point; }
CRect CRect::operator+(tagSIZE size) const { return CRect(*this) += size; }
CRect CRect::operator+(const tagRECT* rect) const { return CRect(*this) += rect; }
CRect CRect::operator-(tagPOINT point) const { return CRect(*this) -= point; }
CRect CRect::operator-(tagSIZE size) const { return CRect(*this) -= size; }
CRect CRect::operator-(const tagRECT* rect) const { return CRect(*this) -= rect; }
