#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace zel::gwav4 {

/// Gives the classes derived from it allocation aligned to `Alignment` bytes.
/// Throws std::bad_alloc, like the operators it stands for.
template <std::size_t Alignment>
class CAligned {
 public:
  static void* operator new(std::size_t size) {
    void* block = nullptr;
    if (posix_memalign(&block, Alignment, size) != 0) throw std::bad_alloc();
    return block;
  }
  static void* operator new(std::size_t, void* where) noexcept { return where; }
  static void operator delete(void* block) noexcept { std::free(block); }
  static void operator delete(void*, void*) noexcept {}
};

}  // namespace zel::gwav4
