#include "driver/heap.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>

namespace ei4 {

namespace {

// A JPEG's pixels take 8 bytes each in the library and up to 6 as coefficients; the picture itself, before and
// after painting, is gone or smaller by then. Address space that is not touched costs nothing.
constexpr std::uint64_t kBytesPerPixel = 16;

// Bytes: huge pages cost more than they save below the one, and jobs beyond the other are slow anyway.
constexpr std::uint64_t kSmallestStretch = std::uint64_t{4} << 20;
constexpr std::uint64_t kLongestStretch = std::uint64_t{2} << 30;

constexpr std::size_t kHugePage = std::size_t{2} << 20;

// Advises those huge pages that lie wholly inside the block.
void adviseHugePages(void* block, std::size_t size) {
  if (std::align(kHugePage, kHugePage, block, size) == nullptr) return;
  madvise(block, size / kHugePage * kHugePage, MADV_HUGEPAGE);
}

// What is set aside then is missing where the libraries map their own: an encoder that finds no room to be loaded.
bool isAddressSpaceLimited() {
  rlimit limit = {};
  return getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur != RLIM_INFINITY;
}

}  // namespace

void prepareHeap(CSize size, std::size_t more) {
  constexpr long kLongestSide = std::numeric_limits<std::uint16_t>::max();
  if (size.cx < 0 || size.cx > kLongestSide || size.cy < 0 || size.cy > kLongestSide) return;
  if (isAddressSpaceLimited()) return;
  const auto pixels = static_cast<std::uint64_t>(size.cx) * static_cast<std::uint64_t>(size.cy);
  const std::uint64_t bytes =
      std::min(pixels * kBytesPerPixel + std::min<std::uint64_t>(more, kLongestStretch), kLongestStretch);
#ifdef M_MMAP_MAX
  mallopt(M_MMAP_MAX, 0);         // no blocks of their own: they would be new memory each time
  mallopt(M_TRIM_THRESHOLD, -1);  // nothing is given back
#endif
  if (bytes < kSmallestStretch) return;
  // What this block leaves behind when it is freed is the stretch that the following ones are cut from.
  void* block = std::malloc(bytes);
  if (block == nullptr) return;
  adviseHugePages(block, bytes);
  std::free(block);
}

}  // namespace ei4
