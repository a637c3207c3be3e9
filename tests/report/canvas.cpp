#include "report/canvas.h"

#include <array>

#include "report/script.h"

namespace ei4::test {

namespace {

constexpr int kWhite = 255;

unsigned char shade(int value, const Shades& shades) {
  int grey = 0;
  if (value >= shades.high) {
    grey = kWhite;
  } else if (value > shades.low) {
    grey = (value - shades.low) * kWhite / (shades.high - shades.low);
  }
  return static_cast<unsigned char>(shades.inverted ? kWhite - grey : grey);
}

struct Position {
  int x;
  int y;
};

// The source pixel that is seen at (x, y) of the turned picture, which is w x h pixels large.
Position sourceOf(int orientation, int x, int y, int w, int h) {
  const int fromRight = w - 1 - x;
  const int fromBottom = h - 1 - y;
  const std::array<Position, 8> map = {{{x, y},
                                        {y, fromRight},
                                        {fromRight, fromBottom},
                                        {fromBottom, x},
                                        {fromRight, y},
                                        {fromBottom, fromRight},
                                        {x, fromBottom},
                                        {y, x}}};
  return map.at(static_cast<std::size_t>(orientation));
}

}  // namespace

Canvas::Canvas(int width, int height) : m_width(width), m_height(height) {
  if (width < 1 || height < 1) throw ScriptError("a picture has at least one pixel");
  m_pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

void Canvas::put(int x, int y, Rgb colour) {
  if (x < 0 || y < 0 || x >= m_width || y >= m_height) return;
  m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x)] =
      colour;
}

void Canvas::fill(const Box& box, Rgb colour) {
  for (int y = box.top; y < box.bottom; ++y) {
    for (int x = box.left; x < box.right; ++x) put(x, y, colour);
  }
}

void Canvas::blackenOutside(const Box& box) {
  fill({0, 0, m_width, box.top}, {});
  fill({0, box.bottom, m_width, m_height}, {});
  fill({0, 0, box.left, m_height}, {});
  fill({box.right, 0, m_width, m_height}, {});
}

void Canvas::show(const Source& source, int orientation, int left, int top, const Shades& shades) {
  if (orientation < 0 || orientation > 7) throw ScriptError("orientations are 0 to 7");
  const bool exchanged = orientation % 2 == 1;
  const int w = exchanged ? source.height : source.width;
  const int h = exchanged ? source.width : source.height;
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const Position from = sourceOf(orientation, x, y, w, h);
      const auto component = [&](int c) {
        return shade(source.sample(from.x, from.y, source.components == 1 ? 0 : c), shades);
      };
      put(left + x, top + y, {component(0), component(1), component(2)});
    }
  }
}

}  // namespace ei4::test
