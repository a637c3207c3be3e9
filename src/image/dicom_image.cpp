#include "image/dicom_image.h"

#include <cstdint>
#include <cstdio>
#include <limits>
#include <new>

CDicomImage::~CDicomImage() {
  if (m_pBuffer != nullptr && m_bOwnBuffer) delete[] m_pBuffer;
}

int CDicomImage::Create(int /*width*/, int /*height*/) { return 0; }
int CDicomImage::Create(int /*width*/, int /*height*/, void* /*buffer*/) { return 0; }
unsigned char* CDicomImage::GetImageLine(int /*x*/, int /*y*/) const { return nullptr; }
const unsigned char* CDicomImage::GetImageLine(int /*x*/, int /*y*/, int /*count*/,
                                               unsigned char* /*scratch*/) const {
  return nullptr;
}

int CDicomImage::SaveToFile(const char* path) const {
  if (path == nullptr) return 0;
  std::FILE* file = std::fopen(path, "w");
  if (file == nullptr) return 0;
  // Quirk raw-write-unchecked: what does not fit on the disk is missing, and no failure.
  if (m_nBufferSize != 0) std::fwrite(m_pBuffer, 1, m_nBufferSize, file);
  std::fflush(file);
  std::fclose(file);
  return 1;
}

CSize CDicomImage::EncapsulatedSize(CSize box) const {
  if (box == m_Size) return box;

  constexpr std::int64_t kMax = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t kSmallestSide = 32;
  const auto fits = [](std::int64_t value) { return value >= -kMax - 1 && value <= kMax; };
  const CSize none(0, 0);
  const std::int64_t width = m_Size.cx;
  const std::int64_t height = m_Size.cy;
  if (width <= 0 || height <= 0 || !fits(width) || !fits(height) || !fits(box.cx) || !fits(box.cy))
    return none;

  const std::int64_t boxWide = box.cx * height;
  const std::int64_t boxHigh = box.cy * width;
  if (!fits(boxWide) || !fits(boxHigh)) return none;
  std::int64_t cx = box.cx;
  std::int64_t cy = box.cy;
  if (boxWide >= boxHigh) {
    cx = boxHigh / height;
  } else {
    cy = boxWide / width;
  }
  if (cx == 0 || cy == 0) {
    cx = width;
    cy = height;
  }
  if (cx < 0 || cy < 0) return none;
  // Quirk small-sizes-doubled: if need be beyond the box.
  while (cx < kSmallestSide || cy < kSmallestSide) {
    cx *= 2;
    cy *= 2;
  }
  if (!fits(cx) || !fits(cy)) return none;
  return {static_cast<int>(cx), static_cast<int>(cy)};
}

std::unique_ptr<CDicomImage> CreateDicomImage(COLOR_TYPE colorType) {
  std::unique_ptr<CDicomImage> image;
  switch (colorType) {
    case COLOR_TYPE_M08:
      image.reset(new (std::nothrow) CDicomImageTemplate<CPixelM08, CPixelDDD>);
      break;
    case COLOR_TYPE_M16:
      image.reset(new (std::nothrow) CDicomImageTemplate<CPixelM16, CPixelDDD>);
      break;
    case COLOR_TYPE_C08:
    default:
      image.reset(new (std::nothrow) CDicomImageTemplate<CPixelC08, CPixelCCC>);
      break;
  }
  return image;
}
