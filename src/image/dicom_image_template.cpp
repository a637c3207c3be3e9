// The operations of the three picture formats.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>

#include "image/dicom_image.h"
#include "image/image_line.h"
#include "image/paint_image.h"

namespace {

/// The bytes of a picture; nothing when a side is negative or an unsigned int cannot count them.
std::optional<unsigned int> byteSize(int width, int height, unsigned int bytesPerPixel) {
  if (width < 0 || height < 0) return std::nullopt;
  std::uint64_t bytes = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
  if (__builtin_mul_overflow(bytes, bytesPerPixel, &bytes)) return std::nullopt;
  if (bytes > std::numeric_limits<unsigned int>::max()) return std::nullopt;
  return static_cast<unsigned int>(bytes);
}

bool fitsInt(long value) { return value >= 0 && value <= std::numeric_limits<int>::max(); }

void destroy(CDicomImage** image) {
  delete *image;
  *image = nullptr;
}

/// Colour types without a format: what the caller holds gets the asked size, but nothing is painted.
int recreateOnly(CSize size, CDicomImage** image) {
  if (*image == nullptr) return 0;
  if (!fitsInt(size.cx) || !fitsInt(size.cy)) {
    destroy(image);
    return 0;
  }
  // Create keeps no earlier buffer and leaves the ownership alone, so both are settled before it.
  if ((*image)->m_bOwnBuffer) delete[](*image)->m_pBuffer;
  (*image)->m_pBuffer = nullptr;
  (*image)->m_bOwnBuffer = true;
  if ((*image)->Create(static_cast<int>(size.cx), static_cast<int>(size.cy)) == 0) destroy(image);
  return 0;
}

}  // namespace

template <class Pixel, class Accumulator>
int CDicomImageTemplate<Pixel, Accumulator>::PaintImage(CSize dstSize, CPoint offset, CSize displayedSize,
                                                        CRect clip, ORIENTATION orientation, int unused,
                                                        void* table, unsigned long background, int mode,
                                                        COLOR_TYPE colorType, CDicomImage** ppDst) const {
  const auto paintInto = [&]<class Destination>(Destination* destination) {
    *ppDst = destination;
    if (destination == nullptr) return 0;
    // Without a table some destinations are written in the source's pixel size.
    const unsigned int room = table == nullptr ? sizeof(Pixel) : 0;
    if (!fitsInt(dstSize.cx) || !fitsInt(dstSize.cy) ||
        destination->CreateWithRoom(static_cast<int>(dstSize.cx), static_cast<int>(dstSize.cy), room) == 0) {
      destroy(ppDst);
      return 0;
    }
    return PaintImage_<Pixel, Accumulator>(static_cast<const Pixel*>(Pixels()), m_Size, destination->Pixels(),
                                           dstSize, offset, displayedSize, clip, orientation, unused, table,
                                           background, mode);
  };
  switch (colorType) {
    case COLOR_TYPE_C08:
      return paintInto(new (std::nothrow) CDicomImageTemplate<CPixelC08, CPixelCCC>);
    case COLOR_TYPE_M08:
      return paintInto(new (std::nothrow) CDicomImageTemplate<CPixelM08, CPixelDDD>);
    case COLOR_TYPE_M16:
      return paintInto(new (std::nothrow) CDicomImageTemplate<CPixelM16, CPixelDDD>);
  }
  return recreateOnly(dstSize, ppDst);
}

template <class Pixel, class Accumulator>
int CDicomImageTemplate<Pixel, Accumulator>::Create(int width, int height) {
  return CreateWithRoom(width, height, sizeof(Pixel));
}

template <class Pixel, class Accumulator>
int CDicomImageTemplate<Pixel, Accumulator>::CreateWithRoom(int width, int height,
                                                            unsigned int bytesPerPixel) {
  const auto bytes = byteSize(width, height, sizeof(Pixel));
  if (!bytes) return 0;
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  auto* buffer = new (std::nothrow) unsigned char[std::max<std::size_t>(*bytes, pixels * bytesPerPixel)];
  if (buffer == nullptr) return 0;
  m_pBuffer = buffer;  // Quirk create-keeps-no-buffer
  m_Size = CSize(width, height);
  m_nBufferSize = *bytes;
  return 1;
}

template <class Pixel, class Accumulator>
int CDicomImageTemplate<Pixel, Accumulator>::Create(int width, int height, void* buffer) {
  const auto bytes = byteSize(width, height, sizeof(Pixel));
  if (!bytes || (buffer == nullptr && *bytes != 0)) return 0;
  m_pBuffer = static_cast<unsigned char*>(buffer);
  m_Size = CSize(width, height);
  m_nBufferSize = *bytes;
  m_bOwnBuffer = false;
  return 1;
}

template <class Pixel, class Accumulator>
unsigned char* CDicomImageTemplate<Pixel, Accumulator>::GetImageLine(int x, int y) const {
  if (x < 0 || y < 0 || x >= m_Size.cx || y >= m_Size.cy) return nullptr;
  return reinterpret_cast<unsigned char*>(Pixels() + std::int64_t{y} * m_Size.cx + x);
}

template <class Pixel, class Accumulator>
const unsigned char* CDicomImageTemplate<Pixel, Accumulator>::GetImageLine(int x, int y, int count,
                                                                           unsigned char* scratch) const {
  return reinterpret_cast<const unsigned char*>(
      ::GetImageLine<Pixel>(Pixels(), m_Size, x, y, count, reinterpret_cast<Pixel*>(scratch)));
}

template <class Pixel, class Accumulator>
int CDicomImageTemplate<Pixel, Accumulator>::ResampleImage(CDicomImage** ppDst, int& width,
                                                           int& height) const {
  if (width <= 0 || height <= 0 || *ppDst != nullptr) return 0;
  const CSize fitted = EncapsulatedSize(CSize(width, height));
  if (fitted == CSize(0, 0)) return 0;
  width = static_cast<int>(fitted.cx);
  height = static_cast<int>(fitted.cy);
  constexpr int kSmooth = 1;
  return PaintImage(fitted, CPoint(0, 0), fitted, CRect(0, 0, width, height), ORIENTATION_AS_STORED, 0,
                    nullptr, 0, kSmooth, GetColorType(), ppDst);
}

template <class Pixel, class Accumulator>
COLOR_TYPE CDicomImageTemplate<Pixel, Accumulator>::GetColorType() const {
  return Pixel::kColorType;
}

template class CDicomImageTemplate<CPixelM08, CPixelDDD>;
template class CDicomImageTemplate<CPixelM16, CPixelDDD>;
template class CDicomImageTemplate<CPixelC08, CPixelCCC>;
