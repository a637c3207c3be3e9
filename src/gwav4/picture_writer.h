#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "gwav4/plane_rows.h"

namespace zel::gwav4 {

/// What is made of the planes' rows.
struct PictureFormat {
  int bytesPerPixel;  ///< 1 or 2: grey, of the first plane; 3: colour, of three planes
  int bits;  ///< 0: samples are truncated to the output's width; else they are clamped to [0, 2^bits - 1] first
  int step;  ///< a power of two: each pixel is the mean of a block of step x step samples
};

/// One plane's coefficient streams: as many of the levels' orders as are inverted, then the coarsest one.
using PlaneCursors = std::vector<OrderCursors>;

/// The picture that is asked of a decoder.
struct PictureSource {
  std::vector<PlaneCursors> planes;
  PlaneShape shape;
  std::vector<int> rowEnds;  ///< of each plane: rows of coefficients from there on are zeros
  const std::atomic<bool>* stopped;
  const std::atomic<bool>* killed;  ///< once true, nothing more is written
};

/// Writes the picture as packed rows; `out` is aligned to 2 for 2 bytes per pixel. The streams are used up.
/// Returns false when samples went beyond what lanes of 16 bits hold: `out` must then be written again with wider ones.
template <class Lane>
bool writePicture(const LaneKernel<Lane>& kernel, PictureSource& source, const PictureFormat& format,
                  void* out);

/// Copies the rows of the first plane, as T = short or int, by lanes of 32 bits.
template <class T>
void copyPlane(const LaneKernel<std::int32_t>& kernel, PictureSource& source, T* out);

}  // namespace zel::gwav4
