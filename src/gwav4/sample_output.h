// From rows of samples to packed pixels. All of it is defined for T = short and int.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zel::gwav4 {

/// One row of each plane of a picture; the second and third are null for grey.
template <class T>
using SampleRows = std::array<const T*, 3>;

/// Stores `count` samples as unsigned pixels of 1 or 2 bytes, 16 bits in host byte order and aligned to 2. bits > 0: a sample
/// is clamped to [0, 2^bits - 1] first; bits 0: it is not. Then its low 8 or 16 bits are stored. `out` may be `samples`
/// when both have the same size.
template <class T>
void storeGrey(const T* samples, std::size_t count, void* out, int bytesPerPixel, int bits);

/// Stores `count` colour pixels of 3 bytes. With the planes' samples p0, p1, p2 and g = p0 - ((p1 + p2) >>
/// 2), the reversible colour transform of JPEG 2000, they are p1 + g, g, p2 + g, each clamped as above.
template <class T>
void storeColour(const SampleRows<T>& rows, std::size_t count, void* out, int bits);

/// Pixels that are the means of blocks of step x step samples, cut at the picture's right and lower edge. The sums run
/// row by row, left to right, in single precision; a mean is truncated toward zero and then clamped as above.
template <class T>
class MeanRows {
 public:
  /// step           a power of two, at least 1.
  /// bytesPerPixel  3 for colour: its components are made before the means.
  MeanRows(int width, int height, int step, void* out, int bytesPerPixel, int bits);

  /// Takes the next row.
  void add(const SampleRows<T>& rows);

 private:
  template <class Component>
  void addComponent(std::size_t component, Component sampleAt);
  void storeBand();

  std::size_t columns;  ///< of the picture
  std::int64_t rowsLeft;
  std::size_t blockSize;
  unsigned char* to;
  int pixelBytes;
  int sampleBits;
  std::int64_t rowsTaken = 0;  ///< of the band at hand
  std::size_t components;
  std::vector<float> sums;  ///< of the band's blocks, component by component
};

extern template class MeanRows<short>;
extern template class MeanRows<int>;

}  // namespace zel::gwav4
