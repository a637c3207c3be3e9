// Pictures in memory: rows of pixels on end in one of three formats, with their size.
#pragma once

#include <memory>

#include "image/color_type.h"
#include "image/pixel.h"
#include "types/orientation.h"
#include "types/types.h"

/// What every picture can do, whatever its format. All results are 1 for success and 0 for
/// failure; nothing throws.
///
/// Ownership: `m_pBuffer` belongs to the image while `m_bOwnBuffer` is set; the destructor then frees it with
/// array delete. Otherwise it belongs to whoever lent it and must outlive the image. Images cannot be copied.
class CDicomImage {
 public:
  unsigned char* m_pBuffer = nullptr;  ///< the first pixel; row y starts y * width pixels in, without padding
  CSize m_Size = CSize(0, 0);          ///< pixels
  unsigned int m_nBufferSize = 0;      ///< bytes: width * height * bytes per pixel
  bool m_bOwnBuffer = true;            ///< the image allocated m_pBuffer and frees it

  CDicomImage() = default;
  CDicomImage(const CDicomImage&) = delete;
  CDicomImage& operator=(const CDicomImage&) = delete;

  /// Paints this picture into a new one.
  /// dstSize        pixels of the destination.
  /// offset         where the displayed picture's top left corner lies in the destination.
  /// displayedSize  the size at which the whole picture is shown, in destination orientation.
  /// clip           what may be painted, in destination pixels.
  /// table          null, or one entry for every source value (256; 65536 for a 16-bit source): 16-bit
  ///                entries, aligned so, for a 16-bit destination, else bytes.
  /// background     0xRRGGBB, what shows where the picture does not.
  /// mode           0: nearest sample; else averaged when it shrinks, interpolated when it grows.
  /// colorType      the destination's format. For any of the three, *ppDst receives a new image, whatever it
  ///                held. For another value an image that *ppDst holds is created anew at the destination
  ///                size (destroyed and cleared if that fails) and 0 comes back.
  /// ppDst          never null. *ppDst belongs to the caller, also after a refusal, which leaves it either
  ///                cleared or filled with the background.
  ///
  /// Refuses a destination that Create refuses, an averaging whose counters would be halved to nothing, and
  /// memory running short. A source or displayed side outside 1..INT_MAX, or an orientation outside 0..7,
  /// shows nothing but the background.
  ///
  /// Quirk no-table-keeps-source-pixels: 16-bit grey or colour painted into 8-bit grey without a
  /// table is stored in the source's pixel size, in a destination whose allocation (not its
  /// m_nBufferSize) has room for that.
  virtual int PaintImage(CSize dstSize, CPoint offset, CSize displayedSize, CRect clip,
                         ORIENTATION orientation, int unused, void* table, unsigned long background, int mode,
                         COLOR_TYPE colorType, CDicomImage** ppDst) const = 0;

  virtual ~CDicomImage();

  /// Allocates width x height pixels, contents unspecified. Refuses a negative side, more than 2^32 - 1
  /// bytes, and memory running short; the image is then as before.
  /// Quirk create-keeps-no-buffer: an earlier buffer is neither freed nor kept, and
  /// m_bOwnBuffer stays as it is.
  virtual int Create(int width, int height);

  /// Adopts the caller's buffer of width x height pixels, aligned for them, which the image then never
  /// frees. Refuses what the other Create refuses, and a null buffer for a picture with pixels. An
  /// earlier buffer is not freed.
  virtual int Create(int width, int height, void* buffer);

  /// The pixel (x, y) in the buffer; null outside the picture.
  virtual unsigned char* GetImageLine(int x, int y) const;

  /// `count` pixels of row y from column x on, 0 outside the picture: either the image itself or a padded
  /// copy in `scratch`, which has room for `count` pixels, aligned for them. Read only.
  virtual const unsigned char* GetImageLine(int x, int y, int count, unsigned char* scratch) const;

  /// Fits this picture into the box (width, height), keeping its shape and format, and writes the fitted size
  /// back. Returns 0 at once, nothing changed, unless both are positive, *ppDst is null and the picture fits
  /// (see EncapsulatedSize). The caller owns *ppDst, also when painting then fails (see PaintImage).
  virtual int ResampleImage(CDicomImage** ppDst, int& width, int& height) const = 0;

  virtual COLOR_TYPE GetColorType() const = 0;

  /// Writes the buffer to a file: rows top to bottom, no header. Returns 0 when the path is null or cannot be
  /// opened; the write's own result is not examined.
  int SaveToFile(const char* path) const;

  /// The largest size of this picture's shape inside the box; the picture's own size where a side would come
  /// out as 0; doubled until both sides have at least 32 pixels. A box of the picture's own size is returned
  /// as it is. Returns (0, 0) when there is no such size: a picture without pixels, a negative result, or a
  /// product or side that an int cannot hold.
  CSize EncapsulatedSize(CSize box) const;
};

/// A picture of one format. Accumulator: the wide sum of averaged pixels, CPixelDDD for
/// grey, CPixelCCC for colour.
template <class Pixel, class Accumulator>
class CDicomImageTemplate : public CDicomImage {
 public:
  int PaintImage(CSize dstSize, CPoint offset, CSize displayedSize, CRect clip, ORIENTATION orientation,
                 int unused, void* table, unsigned long background, int mode, COLOR_TYPE colorType,
                 CDicomImage** ppDst) const override;
  int Create(int width, int height) override;
  int Create(int width, int height, void* buffer) override;
  unsigned char* GetImageLine(int x, int y) const override;
  const unsigned char* GetImageLine(int x, int y, int count, unsigned char* scratch) const override;
  int ResampleImage(CDicomImage** ppDst, int& width, int& height) const override;
  COLOR_TYPE GetColorType() const override;

  /// As Create(width, height), with room in the allocation for pixels of
  /// `bytesPerPixel` when these are larger.
  int CreateWithRoom(int width, int height, unsigned int bytesPerPixel);

  /// The first pixel; null before Create.
  Pixel* Pixels() const { return reinterpret_cast<Pixel*>(m_pBuffer); }
};

extern template class CDicomImageTemplate<CPixelM08, CPixelDDD>;
extern template class CDicomImageTemplate<CPixelM16, CPixelDDD>;
extern template class CDicomImageTemplate<CPixelC08, CPixelCCC>;

/// A new image without a buffer: 1 gives CPixelM08, 2 CPixelM16, any other value CPixelC08.
/// Null when memory is short.
std::unique_ptr<CDicomImage> CreateDicomImage(COLOR_TYPE colorType);
