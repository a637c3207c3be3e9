#include "driver/read_image.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "container/file.h"
#include "driver/picture_limit.h"

namespace {

bool fitsInt(long side) { return side >= INT_MIN && side <= INT_MAX; }

}  // namespace

std::unique_ptr<CDicomImage> ReadDicomImage(const char* path, CSize& size, COLOR_TYPE& colorType,
                                            CSize* /*ignored*/) {
  auto image = CreateDicomImage(colorType);
  if (!image || !fitsInt(size.cx) || !fitsInt(size.cy) ||
      image->Create(static_cast<int>(size.cx), static_cast<int>(size.cy)) == 0) {
    return nullptr;
  }
  const File file(path != nullptr ? std::fopen(path, "r") : nullptr);
  if (!file) return nullptr;

  const std::size_t wanted = image->m_nBufferSize;
  if (wanted == 0) return image;
  const std::size_t got = std::fread(image->m_pBuffer, 1, wanted, file.get());
  if (std::ferror(file.get()) != 0 || !ei4::inputMayClaim(size, static_cast<std::int64_t>(got)))
    return nullptr;
  // The buffer comes with whatever the memory held before.
  std::memset(image->m_pBuffer + got, 0, wanted - got);
  return image;
}
