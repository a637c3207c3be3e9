// The plain structures under CSize, CPoint and CRect: what is passed where only the numbers matter.
#pragma once

/// A width and a height, in whatever unit the owner counts.
struct tagSIZE {
  long cx;
  long cy;
};

/// A position. It may alias: CRect hands out its corners viewed as points (see CRect::TopLeft).
struct [[gnu::may_alias]] tagPOINT {
  long x;
  long y;
};

/// A rectangle; `right` and `bottom` lie just outside it.
struct tagRECT {
  long left;
  long top;
  long right;
  long bottom;
};

// Equality serves the structures and the classes derived from them alike.
constexpr bool operator==(const tagSIZE& a, const tagSIZE& b) { return a.cx == b.cx && a.cy == b.cy; }
constexpr bool operator==(const tagPOINT& a, const tagPOINT& b) { return a.x == b.x && a.y == b.y; }
constexpr bool operator==(const tagRECT& a, const tagRECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
