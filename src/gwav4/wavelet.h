#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

namespace zel::gwav4 {

/// Coefficient planes of one image, all 0 at first. Row y of a plane starts y * stride() elements in; the
/// stride is the width.
template <class T>
class CWavelet {
 public:
  static constexpr int kMostPlanes = 3;
  static constexpr std::size_t kPlaneAlignment = 32;  ///< bytes

  /// count: 1 to 3 planes. width, height: 0 to 65535. Throws std::bad_alloc.
  CWavelet(int count, int width, int height) : storedPlanes(count), storedWidth(width), storedHeight(height) {
    constexpr std::size_t kSpare = kPlaneAlignment - 1;  // elements, so that the start can be moved up
    const std::size_t elements = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) + kSpare;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
      // Fresh zero pages cost nothing until a coefficient is stored in them.
      blocks[i].reset(std::calloc(elements, sizeof(T)));
      if (blocks[i] == nullptr) throw std::bad_alloc();
      const auto address = reinterpret_cast<std::uintptr_t>(blocks[i].get());
      const std::uintptr_t aligned = (address + kPlaneAlignment - 1) & ~std::uintptr_t{kPlaneAlignment - 1};
      starts[i] = static_cast<T*>(blocks[i].get()) + (aligned - address) / sizeof(T);
    }
  }

  int planeCount() const { return storedPlanes; }
  int width() const { return storedWidth; }
  int height() const { return storedHeight; }
  std::size_t stride() const { return static_cast<std::size_t>(storedWidth); }
  T* plane(int index) { return starts[static_cast<std::size_t>(index)]; }
  T* row(int index, int y) { return plane(index) + static_cast<std::size_t>(y) * stride(); }

  /// Makes every coefficient 0 again.
  void clear() {
    for (int i = 0; i < storedPlanes; ++i) {
      std::fill_n(plane(i), stride() * static_cast<std::size_t>(storedHeight), T{0});
    }
  }

 private:
  struct Free {
    void operator()(void* block) const noexcept { std::free(block); }
  };
  std::array<std::unique_ptr<void, Free>, kMostPlanes> blocks;
  std::array<T*, kMostPlanes> starts{};
  int storedPlanes;
  int storedWidth;
  int storedHeight;
};

}  // namespace zel::gwav4
