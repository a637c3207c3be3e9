// From samples to packed pixels. Each function is defined for T = short and int.
#pragma once

#include <array>
#include <cstddef>

namespace zel::gwav4 {

/// One line of each plane of a picture; the second and third are null for grey.
template <class T>
using PlaneRows = std::array<const T*, 3>;

/// Stores `count` samples as unsigned pixels of 1 or 2 bytes, 16 bits in host byte order and aligned to 2. bits > 0: a sample
/// is clamped to [0, 2^bits - 1] first; bits 0: it is not. Then its low 8 or 16 bits are stored.
template <class T>
void storeGrey(const T* samples, std::size_t count, void* out, int bytesPerPixel, int bits);

/// Stores `count` colour pixels of 3 bytes. With the planes' samples p0, p1, p2 and g = p0 - ((p1 + p2) >>
/// 2), the reversible colour transform of JPEG 2000, they are p1 + g, g, p2 + g, each clamped as above.
template <class T>
void storeColour(const PlaneRows<T>& rows, std::size_t count, void* out, int bits);

/// A picture whose blocks of step x step samples become pixels; blocks are cut at its right and lower edge.
template <class T>
struct BlockSource {
  PlaneRows<T> planes;  ///< first sample of each plane
  int width;
  int height;
  std::size_t stride;  ///< elements between rows
  int step;            ///< a power of two, at least 1
};

/// Stores the mean of each block, truncated toward zero and then clamped as above. The sums run row by row,
/// left to right, in single precision. bytesPerPixel 3 needs three planes.
template <class T>
void storeMeans(const BlockSource<T>& source, void* out, int bytesPerPixel, int bits);

}  // namespace zel::gwav4
