#include "gwav4/wavelet_decoder.h"

#include <algorithm>
#include <cstdint>

#include "gwav4/directory.h"

namespace zel::gwav4 {

template <class T, class Filter>
CWaveletDecoder<T, Filter>::CWaveletDecoder(int planeCount, int xSize, int ySize, int skip, int fullX,
                                            int fullY)
    : CWavelet<T>(planeCount, xSize, ySize),
      state(new State(planeCount)),
      skipLevels(skip),
      fullXSize(fullX != 0 ? fullX : xSize),
      fullYSize(fullY != 0 ? fullY : ySize) {}

template <class T, class Filter>
PictureSource CWaveletDecoder<T, Filter>::sourceOf(int firstPlane, int planes) const {
  const int levels = std::max(decodedLevels, 0);
  PictureSource source;
  source.shape = {this->width(), this->height(), levelsToInvert(levels, this->width(), this->height()),
                  inverted};
  source.stopped = &stopped;
  source.killed = &killed;
  for (int plane = firstPlane; plane < firstPlane + planes; ++plane) {
    const int rowEnd = rowEnds[static_cast<std::size_t>(plane)];
    const auto cursors = [&](int order) {
      return rowEnd == 0 ? OrderCursors{} : state->cursors(plane, order);
    };
    PlaneCursors& orders = source.planes.emplace_back();
    for (int level = 0; level < source.shape.levels; ++level) orders.push_back(cursors(skipLevels + level));
    orders.push_back(cursors(levelCount));  // levels that the plane is too small for hold nothing
    source.rowEnds.push_back(rowEnd);
  }
  return source;
}

/// Makes a picture of the first plane or of all three.
template <class T, class Filter>
void CWaveletDecoder<T, Filter>::write(const PictureFormat& format, void* out) {
  if (killed) return;
  const int planes = format.bytesPerPixel == 3 ? 3 : 1;
  bool written = false;
  if (isNarrow()) {
    PictureSource source = sourceOf(0, planes);
    written = writePicture<std::int16_t>(kernels().narrow, source, format, out);
  }
  if (!written) {
    PictureSource source = sourceOf(0, planes);
    writePicture<std::int32_t>(Filter::kernel(), source, format, out);
  }
  if (stopped) {
    stopped = false;
    scanPaused = true;  // what was not read is read when it is asked for again
    resumePlane = 0;
    resumeRow = 0;
  }
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::copyPlane(int plane, T* to) {
  PictureSource source = sourceOf(plane, 1);
  zel::gwav4::copyPlane(Filter::kernel(), source, to);
}

/// Without an output the planes only count as inverted.
template <class T, class Filter>
template <class Pixel>
void CWaveletDecoder<T, Filter>::untransformToT_interleaved(Pixel* out, int bits) {
  if (killed) return;
  inverted = true;
  if (out != nullptr) write({int{sizeof(Pixel)}, bits, 1}, out);
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
  if (bytesPerPixel == 3 && this->planeCount() != 3) return;
  write({bytesPerPixel, bits, step}, out);
}

template <class T, class Filter>
int CWaveletDecoder<T, Filter>::readWavelet(CBitReader& reader, int level, bool resumable) {
  if (scanPaused || hasDirectory) {
    status = hasDirectory ? kComplete : kPartial;
  } else {
    // A directory that was cut short is read anew: the chunks that it placed may have been exhausted since.
    rowEnds = {};
    inverted = false;
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
  state->reset(-1);
  levelCount = 0;
  decodedLevels = -1;  // nothing to scan or to invert until both bytes are there
  const int topField = static_cast<int>(reader.takeBits(8));
  const int levels = static_cast<int>(reader.takeBits(8));
  const int top = topField == kNoTopPosition ? -1 : topField;
  if (levels > kMaxLevels || top >= kBitPositions<T>) {
    status = kBadStream;
    return false;
  }
  levelCount = levels;
  decodedLevels = levels - skipLevels;
  state->reset(top, skipLevels, levelCount);
  return true;
}

template <class T, class Filter>
void CWaveletDecoder<T, Filter>::readDirectory(CBitReader& reader, int chunkLimit) {
  if (decodedLevels < 0) throw int{kEndOfData};  // the stream holds no level as coarse as the ones asked for
  const int lengthBits = lengthFieldWidth(fullXSize, fullYSize, sizeMode);
  int chunks = 0;
  for (;;) {
    const DirectoryEntry entry = takeDirectoryEntry(reader, lengthBits, sizeMode);
    if (entry.plane == kEndOfDirectory) return;
    if (entry.plane >= this->planeCount() || entry.order > levelCount) {
      status = kBadStream;
      return;
    }
    readChunk(reader, entry.plane, entry.order, entry.refinement, entry.length);
    if (status != kComplete) return;
    if (chunkLimit > 0 && ++chunks == chunkLimit) throw int{kChunkLimit};
    reader.skipBits(entry.length);  // Quirk chunks-unbounded: what was placed may read on behind its chunk
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
  if (order >= skipLevels) {  // the others are only passed over
    if (refinement) {
      state->placeRefinement(plane, order, position, reader);
    } else {
      state->placeSignificance(plane, order, position, bits != 0, reader);
    }
  }
  if (refinement && killed) status = kKilled;  // Quirk kill-seen-at-refinement-only
}

/// The rows of each plane are scanned in order, from the resume position up to the row behind which a stop or a row limit
/// ends the scan.
template <class T, class Filter>
void CWaveletDecoder<T, Filter>::scanCoefficients(int level) {
  const std::int64_t lastRow = level < 0 ? -static_cast<std::int64_t>(level) : -1;
  for (; resumePlane < this->planeCount(); ++resumePlane) {
    if (resumeRow < this->height()) {
      const bool endsHere = stopped || (lastRow >= resumeRow && lastRow < this->height());
      const int row = stopped ? resumeRow : static_cast<int>(endsHere ? lastRow : this->height() - 1);
      rowEnds[static_cast<std::size_t>(resumePlane)] = row + 1;
      if (endsHere) {
        stopped = false;
        resumeRow = row + 1;
        scanPaused = resumeRow < this->height() || resumePlane + 1 < this->planeCount();
        return;
      }
    }
    resumeRow = 0;
  }
  scanPaused = false;
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
