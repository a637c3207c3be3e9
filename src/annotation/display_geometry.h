// Arithmetic with display coordinates. They come from reports, so they may be any int: nothing here overflows.
#pragma once

#include "types/types.h"

/// `value` truncated toward zero; the nearest int when it fits none, 0 when it is not a number.
int Truncated(double value);

/// The point moved by (dx, dy). A coordinate that an int can't hold ends at its limits.
CPoint Moved(CPoint pt, long dx, long dy);
CPoint Moved(CPoint pt, CSize by);

/// The rectangle without extent at pt: a place for a text.
CRect PlaceAt(CPoint pt);

/// Half the way from a to b, halves truncated toward zero.
CPoint MiddleOf(CPoint a, CPoint b);

/// The straight way from one point to another.
class Way {
 public:
  Way(CPoint from, CPoint to);

  double Length() const { return m_length; }  ///< pixels
  double DX() const { return m_dx; }
  double DY() const { return m_dy; }

  /// The point after `part` of `whole`, which is above 0; each coordinate's distance from the start is truncated.
  CPoint PointAt(double part, double whole) const;

  /// A stretch of the way, in fractions of it: 0 <= from <= to <= 1.
  struct Stretch {
    double from;
    double to;
    bool any;  ///< false when no point of the way belongs to it
  };
  /// Where the way runs through a picture of `size` pixels or by it within `margin` pixels.
  Stretch StretchNear(CSize size, double margin) const;

 private:
  CPoint m_from;
  double m_dx;
  double m_dy;
  double m_length;
};

/// How far beside a line or outline its stroke and shadow can show, pixels.
inline constexpr long kStrokeReach = 4;

/// False when a figure with this bounding box, normalised, can't show on a picture of `size` pixels.
bool MayShow(const CRect& bounds, CSize size);
