#include "gwav4/wavelet_decoder.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "gwav4/inverse_transform.h"
#include "gwav4/sample_output.h"

namespace zel::gwav4 {
namespace {

constexpr int kEndOfDirectory = 3;  ///< plane code

/// Reads a field of `width` bits, up to 64; one of width 0 or less takes no bits and is 0.
std::uint64_t readField(CBitReader& reader, int width) { return reader.takeBits(width); }

/// Width of the length fields of order 0 in a plane of the stream's full size; exact for every size.
int lengthFieldWidth(int fullX, int fullY, bool gw40) {
  std::uint64_t samples = static_cast<std::uint64_t>(fullX) * static_cast<std::uint64_t>(fullY);
  if (!gw40) samples += samples / 2;
  return static_cast<int>(std::bit_width(2 * samples + 1)) - 1;
}

/// Sends finished rows to the caller's pixel buffer.
template <class T, class Pixel>
class GreyRows final : public RowSink<T> {
 public:
  GreyRows(Pixel* out, int rowLength, int sampleBits)
      : to(out), width(static_cast<std::size_t>(rowLength)), bits(sampleBits) {}
  void put(int y, const T* row) override {
    storeGrey(row, width, to + static_cast<std::size_t>(y) * width, int{sizeof(Pixel)}, bits);
  }

 private:
  Pixel* to;
  std::size_t width;
  int bits;
};

}  // namespace

template <class T, class Filter>
CWaveletDecoder<T, Filter>::CWaveletDecoder(int planeCount, int xSize, int ySize, int skip, int fullX,
                                            int fullY)
    : CWavelet<T>(planeCount, xSize, ySize),
      state(new State(planeCount)),
      rowBits(xSize, kBitPositions<T>),
      skipLevels(skip),
      fullXSize(fullX != 0 ? fullX : xSize),
      fullYSize(fullY != 0 ? fullY : ySize) {}

template <class T, class Filter>
int CWaveletDecoder<T, Filter>::transformLevels() const {
  return levelsToInvert(std::max(decodedLevels, 0), this->width(), this->height());
}

/// Without an output all planes are inverted in place; with one only plane 0, which goes there row by row.
template <class T, class Filter>
template <class Pixel>
void CWaveletDecoder<T, Filter>::untransformToT_interleaved(Pixel* out, int bits) {
  if (killed) return;
  const auto view = [this](int i) {
    return PlaneView<T>{this->plane(i), this->width(), this->height(), this->stride()};
  };
  if (out != nullptr) {
    GreyRows<T, Pixel> rows(out, this->width(), bits);
    invertPlane<T>(view(0), transformLevels(), &rows);
    return;
  }
  for (int i = 0; i < this->planeCount(); ++i) invertPlane<T>(view(i), transformLevels(), nullptr);
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::untransform() {
  untransformToT_interleaved<T>(nullptr, 0);
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::untransformTo(void* out, int bytesPerPixel, int bits) {
  if (bytesPerPixel == 3) throw int{kUnsupportedOutput};
  if (bytesPerPixel == 1) {
    untransformToT_interleaved(static_cast<std::uint8_t*>(out), bits);
  } else {
    untransformToT_interleaved(static_cast<std::uint16_t*>(out), bits);
  }
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::convertAndCopyTo(void* out, int bytesPerPixel, int bits, int step) {
  if (killed || (bytesPerPixel == 3 && this->planeCount() != 3)) return;
  PlaneRows<T> planes{};
  for (int i = 0; i < this->planeCount(); ++i) planes[static_cast<std::size_t>(i)] = this->plane(i);
  if (step > 1) {
    storeMeans<T>({planes, this->width(), this->height(), this->stride(), step}, out, bytesPerPixel, bits);
    return;
  }
  const std::size_t samples = this->stride() * static_cast<std::size_t>(this->height());
  if (bytesPerPixel == 3) {
    storeColour<T>(planes, samples, out, bits);
  } else {
    storeGrey<T>(planes[0], samples, out, bytesPerPixel, bits);
  }
}

template <class T, class Filter>
int CWaveletDecoder<T, Filter>::readWavelet(CBitReader& reader, int level, bool resumable) {
  if (scanPaused || hasDirectory) {
    status = hasDirectory ? kComplete : kPartial;
  } else {
    // A directory that was cut short is read anew: the chunks that it placed may have been exhausted since.
    if (status != kNotDecoded) this->clear();
    resumePlane = 0;
    resumeRow = 0;
    status = kComplete;
    try {
      if (!readPreamble(reader)) return status;
      readDirectory(reader, std::max(level, 0));
      if (status != kComplete) return status;
      hasDirectory = true;
    } catch (int reason) {
      if (reason != kEndOfData && reason != kChunkLimit) throw;
      status = kPartial;
    }
  }
  if (decodedLevels >= 0) scanCoefficients(level);
  return finish(resumable);
}

/// False: the stream can't be decoded, and status says why. Throws kEndOfData.
template <class T, class Filter>
bool CWaveletDecoder<T, Filter>::readPreamble(CBitReader& reader) {
  constexpr int kNoTop = 255;
  state->reset(-1);
  levelCount = 0;
  decodedLevels = -1;  // nothing to scan or to invert until both bytes are there
  const int topField = static_cast<int>(readField(reader, 8));
  const int levels = static_cast<int>(readField(reader, 8));
  const int top = topField == kNoTop ? -1 : topField;
  if (levels > kMaxLevels || top >= kBitPositions<T>) {
    status = kBadStream;
    return false;
  }
  levelCount = levels;
  decodedLevels = levels - skipLevels;
  state->reset(top);
  return true;
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::readDirectory(CBitReader& reader, int chunkLimit) {
  if (decodedLevels < 0) throw int{kEndOfData};  // the stream holds no level as coarse as the ones asked for
  const int lengthBits = lengthFieldWidth(fullXSize, fullYSize, sizeMode);
  int chunks = 0;
  for (;;) {
    const int plane = static_cast<int>(readField(reader, 2));
    if (plane == kEndOfDirectory) return;
    const int order = static_cast<int>(readField(reader, 4));
    const bool refinement = readField(reader, 1) != 0;
    const int shorter = refinement && !sizeMode ? 1 : 0;
    const std::uint64_t length = readField(reader, lengthBits - 2 * order + 1 - shorter);
    if (plane >= this->planeCount() || order > levelCount) {
      status = kBadStream;
      return;
    }
    readChunk(reader, plane, order, refinement, length);
    if (status != kComplete) return;
    if (chunkLimit > 0 && ++chunks == chunkLimit) throw int{kChunkLimit};
    reader.skipBits(length);  // Quirk chunks-unbounded: what was placed may read on behind its chunk
  }
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::readChunk(CBitReader& reader, int plane, int order, bool refinement,
                                           std::uint64_t bits) {
  const int position =
      state->takePosition(plane, order, refinement ? ChunkKind::refinement : ChunkKind::significance);
  if (!State::isPosition(position)) {
    status = kBadStream;
    return;
  }
  if (refinement) {
    state->placeRefinement(plane, order, position, reader);
    if (killed) status = kKilled;  // Quirk kill-seen-at-refinement-only
  } else {
    state->placeSignificance(plane, order, position, bits != 0, reader);
  }
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::scanCoefficients(int level) {
  for (; resumePlane < this->planeCount(); ++resumePlane) {
    while (resumeRow < this->height()) {
      const int y = resumeRow++;
      scanRow(resumePlane, y);
      if (stopped || (level < 0 && -static_cast<std::int64_t>(level) == y)) {
        stopped = false;
        scanPaused = resumeRow < this->height() || resumePlane + 1 < this->planeCount();
        return;
      }
    }
    resumeRow = 0;
  }
  scanPaused = false;
}

/// Coefficients of the order o stand at the odd multiples of 2^o; in the rows of their own order also at the
/// even ones. Rows and columns count in the decoded grid, orders in the stream's.
template <class T, class Filter>
void CWaveletDecoder<T, Filter>::scanRow(int plane, int y) {
  const unsigned row = static_cast<unsigned>(y) << skipLevels;
  const int rowOrder = row == 0 ? levelCount : std::min(std::countr_zero(row), levelCount);
  T* const samples = this->row(plane, y);
  for (int order = skipLevels; order <= rowOrder; ++order) {
    const int spacing = 1 << (order - skipLevels);
    const int first = order == rowOrder ? 0 : spacing;
    const int step = order == rowOrder ? spacing : 2 * spacing;
    if (first >= this->width()) continue;
    const int count = (this->width() - first + step - 1) / step;
    rowBits.decode(state->streams(plane, order), count, samples + first, step);
  }
}

template <class T, class Filter>
int CWaveletDecoder<T, Filter>::finish(bool resumable) {
  if (skipLevels != 0 || decodedLevels < 0) status = kPartial;
  if (resumable && status == kPartial) status = kResumable;
  return status;
}

template class CWaveletDecoder<short, CFilter5_3<short>>;
template class CWaveletDecoder<int, CFilter5_3<int>>;

}  // namespace zel::gwav4
