#include "types/plex.h"

#include <cstddef>
#include <cstdint>
#include <new>

CPlex* CPlex::Create(CPlex*& head, unsigned int count, unsigned int elementSize) {
  const std::uint64_t elements = std::uint64_t{count} * elementSize;  // two 32-bit numbers cannot overflow it
  if (elements > PTRDIFF_MAX - sizeof(CPlex)) throw std::bad_alloc();
  void* const block = ::operator new(sizeof(CPlex) + static_cast<std::size_t>(elements));
  head = ::new (block) CPlex{head};
  return head;
}

void CPlex::FreeDataChain() {
  for (CPlex* block = this; block != nullptr;) {
    CPlex* const next = block->pNext;
    ::operator delete(block);
    block = next;
  }
}
