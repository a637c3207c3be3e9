#pragma once

#include <cstddef>

namespace zel::gwav4 {

/// The coefficient planes of one image, as far as they are known without their contents. They are never held as a whole:
/// rows are made when they are asked for (see plane_rows.h).
template <class T>
class CWavelet {
 public:
  static constexpr int kMostPlanes = 3;

  /// count: 1 to 3 planes. width, height: 0 to 65535.
  CWavelet(int count, int width, int height)
      : storedPlanes(count), storedWidth(width), storedHeight(height) {}

  int planeCount() const { return storedPlanes; }
  int width() const { return storedWidth; }
  int height() const { return storedHeight; }

 private:
  int storedPlanes;
  int storedWidth;
  int storedHeight;
};

}  // namespace zel::gwav4
