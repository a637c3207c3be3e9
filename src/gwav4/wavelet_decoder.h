// Coefficients of one image: read from the stream, transformed back, converted to pixels.
#pragma once

#include <array>
#include <atomic>
#include <memory>

#include "gwav4/bit_reader.h"
#include "gwav4/decoder_state.h"
#include "gwav4/filter5_3.h"
#include "gwav4/picture_writer.h"
#include "gwav4/status.h"
#include "gwav4/wavelet.h"

namespace zel::gwav4 {

class IWaveletDecoder {
 public:
  virtual ~IWaveletDecoder() = default;

  /// From now on the planes are samples instead of coefficients. Does nothing once kill() was called.
  virtual void untransform() = 0;

  /// Inverse transform of plane 0 with its samples written to `out` as packed rows, unsigned. Nothing more is written
  /// once kill() was called.
  /// out            aligned to 2 for 2 bytes per pixel.
  /// bytesPerPixel  1 or 2; 3 throws kUnsupportedOutput.
  /// bits           0: samples are truncated to the output's width; else they are clamped to [0, 2^bits - 1] first.
  virtual void untransformTo(void* out, int bytesPerPixel, int bits) = 0;

  /// Reads the directory of the coded data, and settles which of the coefficients will be read when a picture is made of
  /// them. Until then the block must stay alive.
  /// reader     at the first bit behind the stream header.
  /// level      chunk or row limit, as in IGWavDecompressor::decompress.
  /// resumable  a final kPartial becomes kResumable.
  /// Returns a status of status.h. It does not tell whether a stop or a row limit left rows out.
  ///
  /// A further call goes on with the rows that a stop or a row limit left out, on the block of the first call. When
  /// there are none and the directory had been cut short, it reads the longer stream that `reader` brings, again from
  /// its first bit. Else there is nothing left to do.
  virtual int readWavelet(CBitReader& reader, int level, bool resumable) = 0;

  /// Conversion of the planes. step, a power of two: each output pixel is the mean of a block of step x step samples, cut
  /// at the picture's edge. Colour needs three planes; otherwise nothing is written. Nothing more is written once kill()
  /// was called.
  virtual void convertAndCopyTo(void* out, int bytesPerPixel, int bits, int step) = 0;

  /// Ends the reading of coefficients: those not read yet are zeros, until readWavelet is called again. While a picture is
  /// being made, all that is missing of it may be.
  virtual void stop() = 0;
  virtual void kill() = 0;

  /// true: the length fields of a GW40 stream; false, from the start: those of GW41.
  virtual void setSizeMode(bool gw40) = 0;
};

/// Decoder with coefficients of type T: short for up to 11 significant bits and colour, int above.
template <class T, class Filter>
class CWaveletDecoder final : public IWaveletDecoder, public CWavelet<T> {
 public:
  /// planeCount       1 or 3.
  /// xSize, ySize     of the planes that are decoded.
  /// skip             finest levels left out.
  /// fullX, fullY     the stream's full size; 0: the planes' size.
  CWaveletDecoder(int planeCount, int xSize, int ySize, int skip, int fullX, int fullY);

  void untransform() override;
  void untransformTo(void* out, int bytesPerPixel, int bits) override;
  int readWavelet(CBitReader& reader, int level, bool resumable) override;
  void convertAndCopyTo(void* out, int bytesPerPixel, int bits, int step) override;
  void stop() override { stopped = true; }
  void kill() override {
    killed = true;  // first: whoever sees the stop must see the kill behind it
    stopped = true;
  }
  void setSizeMode(bool gw40) override { sizeMode = gw40; }

  /// Copies a plane as it stands: coefficients, or samples after untransform(). `to` takes width() * height() of them.
  void copyPlane(int plane, T* to);

 private:
  using State = DecoderState<kBitPositions<T>>;

  bool readPreamble(CBitReader& reader);
  void readDirectory(CBitReader& reader, int chunkLimit);
  void readChunk(CBitReader& reader, int plane, int order, bool refinement, std::uint64_t bits);
  void scanCoefficients(int level);
  int finish(bool resumable);

  template <class Pixel>
  void untransformToT_interleaved(Pixel* out, int bits);
  void write(const PictureFormat& format, void* out);
  PictureSource sourceOf(int firstPlane, int planes) const;
  bool isNarrow() const { return state->topPosition() < kNarrowPositions; }

  std::atomic<bool> stopped = false;
  std::atomic<bool> killed = false;
  int status = kNotDecoded;
  std::unique_ptr<State> state;
  int skipLevels;
  int fullXSize;
  int fullYSize;
  bool sizeMode = false;
  int levelCount = 0;         ///< of the stream, from its preamble
  int decodedLevels = 0;      ///< levelCount less skipLevels: what there is to invert
  bool hasDirectory = false;  ///< a complete directory is held
  bool inverted = false;      ///< the planes are samples
  bool scanPaused = false;    ///< rows are left from the resume position on
  int resumePlane = 0;
  int resumeRow = 0;
  std::array<int, CWavelet<T>::kMostPlanes> rowEnds{};  ///< of each plane, behind the rows to be read
};

extern template class CWaveletDecoder<short, CFilter5_3<short>>;
extern template class CWaveletDecoder<int, CFilter5_3<int>>;

}  // namespace zel::gwav4
