// CSize and CPoint: value types with two 64-bit signed fields and the same set of operators.
//
// Quirk sums-wrap-at-32-bits: the binary + and - of two sizes or points compute each field in 32-bit
// arithmetic and sign-extend the result; the compound forms (+=, -=, Offset) and the unary minus use all 64
// bits. Every overflow wraps.
#pragma once

#include "types/tags.h"

class CPoint;
class CRect;  // complete in types/rect.h

class CSize : public tagSIZE {
 public:
  CSize() = default;  ///< sets nothing
  constexpr CSize(int width, int height) { Set(width, height); }
  constexpr CSize(tagSIZE size) : tagSIZE(size) {}
  constexpr CSize(tagPOINT point) { Set(point.x, point.y); }
  /// Unpacks two signed 16-bit numbers: cx from bits 0..15, cy from bits 16..31.
  explicit CSize(unsigned long dw);

  CSize& operator+=(tagSIZE size);
  CSize& operator-=(tagSIZE size);
  CSize operator-() const;

  CSize operator+(tagSIZE size) const;
  CSize operator-(tagSIZE size) const;
  CPoint operator+(tagPOINT point) const;
  CPoint operator-(tagPOINT point) const;  ///< this size minus the point

  /// A copy of the rectangle moved by (+) or against (-) this size. The rectangle is never null.
  CRect operator+(const tagRECT* rect) const;
  CRect operator-(const tagRECT* rect) const;

 private:
  constexpr void Set(long width, long height) {
    cx = width;
    cy = height;
  }
};

class [[gnu::may_alias]] CPoint : public tagPOINT {
 public:
  CPoint() = default;  ///< sets nothing
  constexpr CPoint(int px, int py) { Set(px, py); }
  constexpr CPoint(tagPOINT point) : tagPOINT(point) {}
  constexpr CPoint(tagSIZE size) { Set(size.cx, size.cy); }
  /// Unpacks two signed 16-bit numbers: x from bits 0..15, y from bits 16..31.
  explicit CPoint(unsigned long dw);

  CPoint& operator+=(tagSIZE size);
  CPoint& operator-=(tagSIZE size);
  CPoint& operator+=(tagPOINT point);
  CPoint& operator-=(tagPOINT point);
  void Offset(int dx, int dy);
  void Offset(tagPOINT point);
  void Offset(tagSIZE size);
  CPoint operator-() const;

  CPoint operator+(tagSIZE size) const;
  CPoint operator-(tagSIZE size) const;
  CPoint operator+(tagPOINT point) const;
  CSize operator-(tagPOINT point) const;  ///< the way from the other point to this one

  /// A copy of the rectangle moved by (+) or against (-) this point. The rectangle is never null.
  CRect operator+(const tagRECT* rect) const;
  CRect operator-(const tagRECT* rect) const;

 private:
  constexpr void Set(long px, long py) {
    x = px;
    y = py;
  }
};
