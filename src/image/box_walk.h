// The overlap of destination pixels with source pixels along one axis, in whole units.
#pragma once

#include <algorithm>
#include <cstdint>

/// What one destination pixel covers: source pixel `begin` with weight `first`, then `full` whole pixels from
/// `fullBegin` on, then pixel `end` with weight `last`. A weight of 0 touches nothing.
struct BoxSpan {
  std::int64_t begin, first;
  std::int64_t fullBegin, full;
  std::int64_t end, last;

  bool IsEmpty() const { return first == 0 && full == 0 && last == 0; }

  /// What is touched lies at First() <= i < Last(); for spans that are not empty.
  std::int64_t First() const { return first != 0 ? begin : full != 0 ? fullBegin : end; }
  std::int64_t Last() const { return last != 0 ? end + 1 : full != 0 ? fullBegin + full : begin + 1; }

  /// Drops what lies at or behind `limit`: it reads as 0.
  void CutAt(std::int64_t limit) {
    if (begin >= limit) first = 0;
    if (end >= limit) last = 0;
    full = std::clamp<std::int64_t>(limit - fullBegin, 0, full);
  }
};

/// Hands out the spans of consecutive destination pixels. A source pixel is `refill` units
/// wide, a destination pixel `unit`; `counter` units are left of the first source pixel, which
/// has the index `position`.
struct BoxWalk {
  std::int64_t counter;  ///< 0..refill; at 0 the walk moves on before it takes anything
  std::int64_t unit;     ///< 0 or more
  std::int64_t refill;   ///< 1 or more for Next
  std::int64_t position;

  /// The walk over `source` pixels shown as `displayed`, from displayed pixel `first` on.
  static BoxWalk From(std::int64_t first, std::int64_t source, std::int64_t displayed,
                      std::int64_t position) {
    return {displayed - (first * source) % displayed, source, displayed, position};
  }

  void Halve() {
    counter /= 2;
    unit /= 2;
    refill /= 2;
  }

  BoxSpan Next() {
    BoxSpan span{};
    std::int64_t left = unit;
    span.begin = position;
    if (counter < refill) {
      span.first = std::min(left, counter);
      counter -= span.first;
      left -= span.first;
      if (counter < 1) {
        counter = refill;
        ++position;
      }
    }
    // Whatever is left starts at the edge of a source pixel.
    span.fullBegin = position;
    span.full = left / refill;
    position += span.full;
    span.end = position;
    span.last = left % refill;
    counter -= span.last;
    return span;
  }
};
