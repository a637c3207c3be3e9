// The one object that a client of the codec sees.
#pragma once

#include <memory>

#include "gwav4/header.h"
#include "gwav4/status.h"

namespace zel::gwav4 {

class CBitReader;
class IWaveletDecoder;

/// A coded image that can be decoded once into a packed pixel buffer.
class IGWavDecompressor {
 public:
  virtual int getBytesPerPixel() const = 0;  ///< 1, 2 or 3; other values as the header has them
  virtual int getBitsPerPixel() const = 0;   ///< significant bits of one sample
  virtual int getXSize() const = 0;          ///< output width, pixels
  virtual int getYSize() const = 0;          ///< output height, pixels
  virtual ~IGWavDecompressor() = default;

  /// Decodes into `out`: getYSize() rows of getXSize() pixels of getBytesPerPixel() bytes, no padding; 16-bit pixels in
  /// host byte order and aligned to 2, colour as three interleaved bytes.
  /// outSize  bytes at `out`. A larger buffer is not touched behind the picture.
  /// level    limits the work. Positive: chunks of the directory to read; -m: rows 0 to m of the first plane and nothing
  ///          of the others; 0: no limit.
  /// Returns kComplete, kPartial (a whole picture, detail missing), kKilled or kBadStream (no output), or
  /// kBufferTooSmall (`out` is untouched). Throws std::bad_alloc only.
  /// A further call decodes and writes nothing: it returns the status of the coefficients that were read.
  /// Quirk too-small-then-nothing: so after kBufferTooSmall it answers kComplete or kPartial, without output.
  virtual int decompress(void* out, unsigned long outSize, int level) = 0;

  /// Before decompress: the coefficients of row 0 only are read. While it works: the picture is made of what was read by
  /// then. The status does not tell. May come from another thread, as may kill().
  virtual void stop() = 0;
  /// As stop(), and no picture is made; while one is being written, what `out` holds afterwards is unspecified.
  /// Quirk killed-late-answers-complete: the status is kKilled only where the directory notices; from then on it is
  /// kComplete or kPartial, with `out` untouched.
  virtual void kill() = 0;
};

/// Decompressor of a GW40/GW41 stream held in memory.
class CGWavDecompressor final : public IGWavDecompressor, public CGWavHeader {
 public:
  /// stream  the 16-byte header followed by `length` bytes of coded data; they must stay alive and unchanged
  ///         until decompress has returned.
  /// factor  halvings of both sides, as from getBestFactor; a negative one counts as 0.
  /// The last argument has no meaning to the decoder. Sizes and formats can be asked at once. Throws std::bad_alloc.
  CGWavDecompressor(const unsigned char* stream, unsigned long length, int factor, int unused);

  int getBytesPerPixel() const override { return headerBytesPerPixel(); }
  int getBitsPerPixel() const override { return headerBitsPerPixel(); }
  int getXSize() const override { return halveUp(headerWidth(), outputShift); }
  int getYSize() const override { return halveUp(headerHeight(), outputShift); }
  ~CGWavDecompressor() override;
  int decompress(void* out, unsigned long outSize, int level) override;
  void stop() override;
  void kill() override;

 private:
  void writePicture(void* out, int bits);

  // Destroyed in the reverse order: the reader first, then the decoder.
  std::unique_ptr<IWaveletDecoder> decoder;  ///< null when bytesPerPixel is none of 1, 2, 3
  int status = kNotDecoded;
  std::unique_ptr<CBitReader> reader;
  int outputShift;
};

}  // namespace zel::gwav4
