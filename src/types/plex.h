// CPlex: memory blocks in a chain, from which a list carves its nodes.
#pragma once

/// The header of a block; its elements follow it. The blocks are raw memory: whoever makes elements there
/// also ends their lives.
struct alignas(16) CPlex {
  CPlex* pNext;  ///< the block made before this one; null at the end of the chain

  /// Makes a block of count * elementSize bytes behind its header, uninitialised, and puts it in front of
  /// `head`, which may be null. The chain owns it. Throws std::bad_alloc when there is no room.
  static CPlex* Create(CPlex*& head, unsigned int count, unsigned int elementSize);

  void* data() { return this + 1; }  ///< the first element, aligned for any type that is not over-aligned

  /// Frees this block and all behind it. A null chain needs no call.
  void FreeDataChain();
};

static_assert(sizeof(CPlex) == 16, "the elements start 16 bytes into the block");
