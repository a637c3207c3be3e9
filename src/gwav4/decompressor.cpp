#include "gwav4/decompressor.h"

#include <algorithm>
#include <cstdint>

#include "gwav4/bit_reader.h"
#include "gwav4/wavelet_decoder.h"

namespace zel::gwav4 {
namespace {

/// Sixteen halvings bring every size down to one pixel, so more of them make no difference.
constexpr int kMostOutputHalvings = 16;

template <class T>
std::unique_ptr<IWaveletDecoder> setup(int planes, const LevelChoice& levels, int fullX, int fullY) {
  return std::make_unique<CWaveletDecoder<T, CFilter5_3<T>>>(planes, levels.xSize, levels.ySize,
                                                             levels.skipLevels, fullX, fullY);
}

std::unique_ptr<IWaveletDecoder> makeDecoder(const CGWavHeader& header, const LevelChoice& levels) {
  constexpr int kMostBitsOfShort = 11;  // a sample's bits grow by up to 5 in the transform, its sign included
  const int fullX = header.headerWidth();
  const int fullY = header.headerHeight();
  switch (header.headerBytesPerPixel()) {
    case 1:
      return setup<short>(1, levels, fullX, fullY);
    case 2:
      return header.headerBitsPerPixel() <= kMostBitsOfShort ? setup<short>(1, levels, fullX, fullY)
                                                             : setup<int>(1, levels, fullX, fullY);
    case 3:
      return setup<short>(3, levels, fullX, fullY);
    default:
      return nullptr;
  }
}

}  // namespace

CGWavDecompressor::CGWavDecompressor(const unsigned char* stream, unsigned long length, int factor,
                                     int /*unused*/)
    : CGWavHeader(stream), reader(std::make_unique<CBitReader>(stream + kHeaderBytes, length)) {
  const LevelChoice levels = chooseLevels(headerWidth(), headerHeight(), factor);
  outputShift = std::min(levels.outputShift, kMostOutputHalvings);
  decoder = makeDecoder(*this, levels);
  replaceSize(levels.xSize, levels.ySize);
}

CGWavDecompressor::~CGWavDecompressor() = default;

int CGWavDecompressor::decompress(void* out, unsigned long outSize, int level) {
  if (status != kNotDecoded && status != kResumable) return status;
  status = kPartial;
  if (version() == Version::unknown || decoder == nullptr) return status = kBadStream;
  if (version() == Version::gw40) decoder->setSizeMode(true);

  try {
    status = decoder->readWavelet(*reader, level, false);
  } catch (int) {
    // What was read before the failure is decoded.
  }
  if ((status & ~kPartial) != 0) return status;

  const std::uint64_t needed = static_cast<std::uint64_t>(getBytesPerPixel()) *
                               static_cast<std::uint64_t>(getXSize()) *
                               static_cast<std::uint64_t>(getYSize());
  if (needed > outSize) return kBufferTooSmall;
  // A complete decode gives back the samples as they were; only an approximation can leave their range.
  writePicture(out, status == kPartial ? getBitsPerPixel() : 0);
  return status;
}

void CGWavDecompressor::writePicture(void* out, int bits) {
  const int pixelBytes = getBytesPerPixel();
  if (pixelBytes == 3 || outputShift != 0) {
    decoder->untransform();
    decoder->convertAndCopyTo(out, pixelBytes, bits, 1 << outputShift);
  } else {
    decoder->untransformTo(out, pixelBytes, bits);
  }
}

void CGWavDecompressor::stop() {
  if (decoder != nullptr) decoder->stop();
}

void CGWavDecompressor::kill() {
  if (decoder != nullptr) decoder->kill();
}

}  // namespace zel::gwav4
