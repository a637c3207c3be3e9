// A picture that is drawn on, primitive by primitive. Each is one call of MagickCore.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "report/canvas.h"

namespace ei4::test {

/// Starts MagickCore for the life of the program, with the fonts of the type.xml in `fontFolder` in front of
/// all others. Throws std::runtime_error when a cell of the font is not kCellWidth x kCellHeight.
void startDrawing(const std::string& fontFolder);

inline constexpr int kCellWidth = 7;   ///< pixels that a character of a label counts for
inline constexpr int kCellHeight = 9;  ///< pixels that a label counts for, however many lines it has

struct Point {
  int x;
  int y;
};

/// A picture as bytes R, G, B.
struct Raster {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> bytes;
};

/// Reads a picture file. Throws std::runtime_error when there is none.
Raster readPicture(const std::string& path);
void writePicture(const Raster& raster, const std::string& path);

class Drawing {
 public:
  explicit Drawing(const Canvas& canvas);
  ~Drawing();
  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;

  // Outlines of one pixel, not filled. Colours are "#rrggbb".
  void line(const std::string& colour, Point from, Point to);
  void polygon(const std::string& colour, const std::vector<Point>& corners);
  void ellipse(const std::string& colour, Point centre, int radiusX, int radiusY);

  /// `at`: where the baseline of the first line begins.
  void text(const std::string& colour, Point at, const std::string& words);

  Raster raster() const;

  /// What can be seen of it in a file, as the format ("PNG", "JPEG") keeps it. quality 0: none given.
  Raster rasterInFile(const std::string& format, int quality) const;

 private:
  struct Parts;
  void draw(const std::string& primitive, const std::string& colour);
  std::unique_ptr<Parts> m_parts;
};

}  // namespace ei4::test
