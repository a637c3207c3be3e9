// The picture below the figures.
#pragma once

#include <string>
#include <vector>

#include "report/sources.h"

namespace ei4::test {

struct Rgb {
  unsigned char red = 0;
  unsigned char green = 0;
  unsigned char blue = 0;
};

/// Half-open: right and bottom are outside.
struct Box {
  int left;
  int top;
  int right;
  int bottom;
};

/// How stored values become shades: black below `low`, white from `high` on, a straight line between.
struct Shades {
  int low = 0;
  int high = 255;
  bool inverted = false;
};

/// Starts black. Whatever lies outside it is left out.
class Canvas {
 public:
  Canvas(int width, int height);

  int width() const { return m_width; }
  int height() const { return m_height; }
  const std::vector<Rgb>& pixels() const { return m_pixels; }

  void fill(const Box& box, Rgb colour);
  void blackenOutside(const Box& box);

  /// Puts the source, each pixel as large as it is, with its top left corner at (left, top) after turning.
  /// orientation 0 as stored, 1 to 3 turned by as many quarters, 4 to 7 mirrored: left to right, about the
  /// other diagonal, top to bottom, about the main diagonal.
  void show(const Source& source, int orientation, int left, int top, const Shades& shades);

 private:
  void put(int x, int y, Rgb colour);

  int m_width;
  int m_height;
  std::vector<Rgb> m_pixels;
};

}  // namespace ei4::test
