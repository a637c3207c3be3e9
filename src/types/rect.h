// CRect: a half-open rectangle of 64-bit signed edges. Nothing is normalised unless asked; overflow wraps.
#pragma once

#include "types/point_size.h"
#include "types/tags.h"

/// No function takes a null rectangle. A rectangle object may be passed wherever a
/// `const tagRECT*` is wanted.
class CRect : public tagRECT {
 public:
  CRect() = default;  ///< sets nothing
  constexpr CRect(int l, int t, int r, int b) { Set(l, t, r, b); }
  constexpr CRect(const tagRECT& rect) : tagRECT(rect) {}
  constexpr CRect(const tagRECT* rect) : tagRECT(*rect) {}
  CRect(tagPOINT topLeft, tagSIZE size);  ///< bottom right = point + size, in 64 bits
  CRect(tagPOINT topLeft, tagPOINT bottomRight);
  CRect& operator=(const tagRECT& rect);
  void SetRect(int l, int t, int r, int b);
  void SetRect(tagPOINT topLeft, tagPOINT bottomRight);
  void SetRectEmpty();  ///< all four edges 0

  long Width() const;
  long Height() const;
  CSize Size() const;          ///< width and height through 32-bit ints
  CPoint CenterPoint() const;  ///< the edges' sums halved toward zero, through 32-bit ints

  /// The corners themselves, viewed as points: writing to the result moves the corner.
  CPoint& TopLeft();
  CPoint& BottomRight();
  const CPoint& TopLeft() const;
  const CPoint& BottomRight() const;

  operator tagRECT*() { return this; }
  operator const tagRECT*() const { return this; }

  bool IsRectEmpty() const;  ///< equal edges only: a rectangle with right < left is not empty by this test
  bool IsRectNull() const;   ///< all four edges are 0
  bool PtInRect(tagPOINT point) const;
  bool EqualRect(const tagRECT* rect) const;

  void SwapLeftRight();
  static void SwapLeftRight(tagRECT* rect);
  /// Exchanges left with right and top with bottom where the first is greater. Quirk normalize-narrows: the
  /// value that moves into right or bottom keeps only its low 32 bits, sign-extended.
  void NormalizeRect();

  void InflateRect(int dx, int dy);
  void InflateRect(tagSIZE size);
  void InflateRect(int l, int t, int r, int b);
  void InflateRect(const tagRECT* rect);
  void DeflateRect(int dx, int dy);
  void DeflateRect(tagSIZE size);
  void DeflateRect(int l, int t, int r, int b);
  void DeflateRect(const tagRECT* rect);
  void OffsetRect(int dx, int dy);
  void OffsetRect(tagPOINT point);
  void OffsetRect(tagSIZE size);

  /// Stores the common part of both, edges crossed when there is none. Quirk touching-intersects: returns
  /// true also when they only touch along an edge, with a result of zero width or height.
  bool IntersectRect(const tagRECT* a, const tagRECT* b);
  /// Stores the smallest rectangle around both, empty ones included. Always true.
  bool UnionRect(const tagRECT* a, const tagRECT* b);

  CRect& operator+=(tagPOINT point);
  CRect& operator+=(tagSIZE size);
  CRect& operator+=(const tagRECT* rect);  ///< InflateRect
  CRect& operator-=(tagPOINT point);
  CRect& operator-=(tagSIZE size);
  CRect& operator-=(const tagRECT* rect);  ///< DeflateRect

  CRect operator+(tagPOINT point) const;
  CRect operator+(tagSIZE size) const;
  CRect operator+(const tagRECT* rect) const;
  CRect operator-(tagPOINT point) const;
  CRect operator-(tagSIZE size) const;
  CRect operator-(const tagRECT* rect) const;

 private:
  constexpr void Set(long l, long t, long r, long b) {
    left = l;
    top = t;
    right = r;
    bottom = b;
  }
};
