// Pixels that are the means of blocks of samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gwav4/output_kernel.h"

namespace zel::gwav4 {

/// Reduces a picture: each pixel is the mean of a block of step x step samples, cut at the picture's right and lower edge.
/// The sums run row by row, left to right, in single precision; a mean is truncated toward zero, then clamped and stored
/// as OutputKernel does. T is short or int.
template <class T>
class MeanRows {
 public:
  /// step           a power of two, at least 1.
  /// out            packed rows; aligned to 2 for 2 bytes per pixel.
  /// bytesPerPixel  1 or 2: grey. 3: colour, whose components are made before the means.
  MeanRows(int width, int height, int step, void* out, int bytesPerPixel, int bits);

  /// Takes the next row.
  void add(const SampleRows<T>& rows);

 private:
  void addInOrder(const SampleRows<T>& rows);
  void storeBand();
  std::int64_t meanOf(float sum, std::size_t block) const;
  void gatherColumns();
  void storeExactly();

  std::size_t columns;
  std::int64_t rowsLeft;
  std::size_t blockSize;
  std::size_t components;
  std::size_t blocks;  ///< in a row
  int pixelBytes;
  int sampleBits;
  unsigned char* to;
  bool exact;                  ///< sums are whole numbers that single precision holds, in any order
  std::int64_t rowsTaken = 0;  ///< of the band at hand
  std::vector<float> sums;     ///< of the band's blocks, component by component; if exact, of none
  std::vector<std::int32_t>
      columnSums;  ///< of the band's columns, likewise, if exact; then in front their means
};

extern template class MeanRows<short>;
extern template class MeanRows<int>;

}  // namespace zel::gwav4
