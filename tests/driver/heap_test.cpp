#include "driver/heap.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kOwnHeap = false;  // the sanitizer's allocator takes no settings and tells nothing
#else
constexpr bool kOwnHeap = true;
#endif

namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

// The settings hold for a whole process, so each test looks at them in one of its own.
template <class Check>
void inProcessOfItsOwn(const Check& holds) {
  EXPECT_EXIT(_exit(holds() ? 0 : 1), testing::ExitedWithCode(0), "");
}

// Memory that is written to, which also keeps the compiler from leaving the allocation out. For std::free.
unsigned char* touched(std::size_t bytes) {
  auto* block = static_cast<unsigned char*>(std::malloc(bytes));
  volatile unsigned char* const writable = block;
  for (std::size_t i = 0; block != nullptr && i < bytes; i += 1024) writable[i] = 1;
  return block;
}

std::size_t heapBytes() { return mallinfo2().arena; }

std::size_t residentBytes() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// The kernel's flags of the memory that an address lies in, "" when there is none.
std::string flagsOf(const void* block) {
  const auto wanted = reinterpret_cast<std::uintptr_t>(block);
  std::ifstream map("/proc/self/smaps");
  bool inside = false;
  for (std::string line; std::getline(map, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    std::istringstream fields(line);
    if (fields >> std::hex >> begin >> dash >> end && dash == '-') inside = begin <= wanted && wanted < end;
    if (inside && line.starts_with("VmFlags:")) return line + " ";
  }
  return "";
}

bool kernelTakesAdvice() {
  void* block = mmap(nullptr, 4 * kMebibyte, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  const bool taken = madvise(block, 4 * kMebibyte, MADV_HUGEPAGE) == 0;
  munmap(block, 4 * kMebibyte);
  return taken;
}

}  // namespace

TEST(Heap, SetsAsideAStretchForTheJob) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(2048, 2048), 3 * kMebibyte);
    return heapBytes() >= (16 * 4 + 3) * kMebibyte;
  });
}

TEST(Heap, SetsAsideMemoryForCodedBytesAlone) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(0, 0), 50 * kMebibyte);
    return heapBytes() >= 50 * kMebibyte;
  });
}

TEST(Heap, TouchesNothing) {
  inProcessOfItsOwn([] {
    const std::size_t before = residentBytes();
    ei4::prepareHeap(CSize(8000, 8000), 0);
    return residentBytes() < before + 4 * kMebibyte;
  });
}

TEST(Heap, AsksForHugePages) {
  if (!kOwnHeap || !kernelTakesAdvice()) GTEST_SKIP();
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(2048, 2048), 0);
    const unsigned char* block = touched(8 * kMebibyte);
    return flagsOf(block + 4 * kMebibyte).find(" hg ") != std::string::npos;
  });
}

TEST(Heap, UsesAgainWhatWasFreed) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(1024, 1024), 0);
    const std::size_t before = heapBytes();
    std::uintptr_t first = 0;
    for (int i = 0; i < 10; ++i) {
      unsigned char* block = touched(12 * kMebibyte);
      if (i == 0) first = reinterpret_cast<std::uintptr_t>(block);
      if (reinterpret_cast<std::uintptr_t>(block) != first || heapBytes() != before) return false;
      std::free(block);
    }
    return heapBytes() == before;
  });
}

TEST(Heap, GoesOnBeyondTheStretch) {
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(512, 512), 0);
    unsigned char* block = touched(64 * kMebibyte);
    std::free(block);
    return block != nullptr;
  });
}

TEST(Heap, SetsNothingAsideForSmallJobs) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    const std::size_t before = heapBytes();
    ei4::prepareHeap(CSize(128, 128), 32'768);
    return heapBytes() == before;
  });
}

TEST(Heap, UsesMemoryOfSmallJobsAgain) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(128, 128), 32'768);
    unsigned char* block = touched(kMebibyte);
    const std::size_t grown = heapBytes();
    std::free(block);
    for (int i = 0; i < 10; ++i) std::free(touched(kMebibyte));
    return grown >= kMebibyte && heapBytes() == grown;
  });
}

TEST(Heap, IgnoresImpossibleSizes) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    constexpr long kMost = std::numeric_limits<long>::max();
    const std::size_t before = heapBytes();
    for (const CSize size : {CSize(-1, 4096), CSize(4096, -1), CSize(-4096, -4096),
                             CSize(tagSIZE{kMost, kMost}), CSize(65'536, 1), CSize(tagSIZE{1, -kMost})}) {
      ei4::prepareHeap(size, 0);
    }
    return heapBytes() == before;
  });
}

TEST(Heap, SetsAsideNoMoreThanTwoGibibytes) {
  if (!kOwnHeap) GTEST_SKIP();
  inProcessOfItsOwn([] {
    ei4::prepareHeap(CSize(65'535, 65'535), std::numeric_limits<std::size_t>::max());
    return heapBytes() <= 2049 * kMebibyte;
  });
}

TEST(Heap, DoesWithoutWhereMemoryIsShort) {
  if (!kOwnHeap) GTEST_SKIP();  // the sanitizer needs its own address space
  inProcessOfItsOwn([] {
    const rlimit most = {.rlim_cur = 512 * kMebibyte, .rlim_max = 512 * kMebibyte};
    if (setrlimit(RLIMIT_AS, &most) != 0) return false;
    ei4::prepareHeap(CSize(16'000, 16'000), 0);
    unsigned char* block = touched(32 * kMebibyte);
    const bool goesOn = block != nullptr;
    std::free(block);
    return goesOn;
  });
}

TEST(Heap, LeavesALimitedAddressSpaceToOthers) {
  if (!kOwnHeap) GTEST_SKIP();  // the sanitizer needs its own address space
  inProcessOfItsOwn([] {
    const rlimit most = {.rlim_cur = 512 * kMebibyte, .rlim_max = 512 * kMebibyte};
    if (setrlimit(RLIMIT_AS, &most) != 0) return false;
    const std::size_t before = heapBytes();
    ei4::prepareHeap(CSize(2048, 2048), 0);
    return heapBytes() == before;
  });
}
