#include "driver/library_failure.h"

#include <magick/MagickCore.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

// Bytes. Names, locks and lists are smaller, pixels are larger.
constexpr std::size_t kSmallBlock = std::size_t{64} << 10;

int endStatus = 1;
bool endLine = true;

// Nothing of the library may be called any more, so its handlers at exit are passed by: but for what its handlers of
// signals call, too, which removes the files that hold pixels.
[[noreturn]] void endRun() {
  static bool isEnding = false;
  if (!isEnding) {
    isEnding = true;
    AsynchronousResourceComponentTerminus();
  }
  if (endLine) std::putchar('\n');
  std::fflush(stdout);
  std::_Exit(endStatus);
}

void endFatally(const ExceptionType /*severity*/, const char* /*reason*/, const char* /*description*/) {
  endRun();
}

void* orEnd(void* block, std::size_t size) {
  if (block == nullptr && size < kSmallBlock) endRun();
  return block;
}

void* acquire(std::size_t size) { return orEnd(std::malloc(size), size); }
void* resize(void* block, std::size_t size) { return orEnd(std::realloc(block, size), size); }

}  // namespace

namespace ei4 {

void endRunWhenLibraryFails() {
  SetMagickMemoryMethods(acquire, resize, std::free);
  SetFatalErrorHandler(endFatally);
}

void setEndAfterLibraryFailure(int status, bool emptyLine) {
  endStatus = status;
  endLine = emptyLine;
}

}  // namespace ei4
