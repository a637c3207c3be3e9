// CList: a doubly linked list, whose nodes come from blocks of its own.
#pragma once

#include <cassert>
#include <climits>
#include <cstddef>
#include <new>
#include <type_traits>

#include "types/plex.h"

struct ListPlace {};  ///< nothing by itself: what a position points at

/// A place in a list, good until its element is removed. Null is the place behind the last element and in
/// front of the first. A position serves its own list alone, and that is not checked.
using POSITION = ListPlace*;

/// Elements of TYPE, passed in as ARG; TYPE is something that copies without failing, such as a pointer. What
/// elements point at stays the caller's. Elements never move in memory. Removed nodes serve again later;
/// their memory is freed by RemoveAll and with the list.
template <class TYPE, class ARG>
class CList {
  static_assert(std::is_nothrow_constructible_v<TYPE, ARG> && std::is_nothrow_copy_constructible_v<TYPE>);

 public:
  explicit CList(int blockSize = 10) : m_nBlockSize(blockSize > 0 ? blockSize : 1) {}  ///< in nodes
  CList(const CList&) = delete;
  CList& operator=(const CList&) = delete;
  ~CList() { RemoveAll(); }

  int GetCount() const { return m_nCount; }
  bool IsEmpty() const { return m_nCount == 0; }

  /// These four want a list that is not empty.
  TYPE& GetHead() { return At(m_pHead).data; }
  const TYPE& GetHead() const { return At(m_pHead).data; }
  TYPE& GetTail() { return At(m_pTail).data; }
  const TYPE& GetTail() const { return At(m_pTail).data; }

  /// Null when the list is empty.
  POSITION GetHeadPosition() const { return m_pHead; }
  POSITION GetTailPosition() const { return m_pTail; }

  /// The element at a position, which is not null; the position then moves to the next (previous) one, and
  /// becomes null behind the last (in front of the first).
  TYPE& GetNext(POSITION& position) { return Step(position, &CNode::pNext); }
  const TYPE& GetNext(POSITION& position) const { return Step(position, &CNode::pNext); }
  TYPE& GetPrev(POSITION& position) { return Step(position, &CNode::pPrev); }
  const TYPE& GetPrev(POSITION& position) const { return Step(position, &CNode::pPrev); }

  TYPE& GetAt(POSITION position) { return At(position).data; }  ///< never null
  const TYPE& GetAt(POSITION position) const { return At(position).data; }
  void SetAt(POSITION position, ARG element) { At(position).data = element; }

  /// The new element's place. Throws std::bad_alloc, and changes nothing, when there is no room for it.
  POSITION AddHead(ARG element) { return Insert(nullptr, m_pHead, element); }
  POSITION AddTail(ARG element) { return Insert(m_pTail, nullptr, element); }
  POSITION InsertBefore(POSITION position, ARG element);  ///< at the head when null
  POSITION InsertAfter(POSITION position, ARG element);   ///< at the tail when null

  TYPE RemoveHead() { return Take(m_pHead); }  ///< of a list that is not empty; the element
  TYPE RemoveTail() { return Take(m_pTail); }
  void RemoveAt(POSITION position) { Take(position); }  ///< never null
  void RemoveAll();

  /// The first equal element behind `startAfter`, or from the head on when that is null; null if there is
  /// none.
  POSITION Find(ARG element, POSITION startAfter = nullptr) const;

 private:
  struct CNode : ListPlace {
    CNode(CNode* prev, CNode* next, ARG element) : pPrev(prev), pNext(next), data(element) {}
    CNode* pPrev;
    CNode* pNext;
    TYPE data;
  };
  /// A node's memory while it holds no element.
  struct CFreeNode {
    CFreeNode* pNext;
  };
  static_assert(alignof(CNode) <= alignof(CPlex));

  static CNode& At(POSITION position) {
    assert(position != nullptr);
    return *static_cast<CNode*>(position);
  }
  static TYPE& Step(POSITION& position, CNode* CNode::*way) {
    CNode& node = At(position);
    position = node.*way;
    return node.data;
  }
  POSITION Insert(CNode* prev, CNode* next, ARG element);  ///< between two neighbours, null beyond the ends
  TYPE Take(POSITION position);
  void AddBlock();

  CNode* m_pHead = nullptr;
  CNode* m_pTail = nullptr;
  int m_nCount = 0;
  CFreeNode* m_pFree = nullptr;
  CPlex* m_pBlocks = nullptr;
  int m_nBlockSize;
};

template <class TYPE, class ARG>
POSITION CList<TYPE, ARG>::InsertBefore(POSITION position, ARG element) {
  if (position == nullptr) return AddHead(element);
  CNode& node = At(position);
  return Insert(node.pPrev, &node, element);
}

template <class TYPE, class ARG>
POSITION CList<TYPE, ARG>::InsertAfter(POSITION position, ARG element) {
  if (position == nullptr) return AddTail(element);
  CNode& node = At(position);
  return Insert(&node, node.pNext, element);
}

template <class TYPE, class ARG>
void CList<TYPE, ARG>::RemoveAll() {
  while (!IsEmpty()) RemoveHead();
  if (m_pBlocks != nullptr) m_pBlocks->FreeDataChain();
  m_pBlocks = nullptr;
  m_pFree = nullptr;
}

template <class TYPE, class ARG>
POSITION CList<TYPE, ARG>::Find(ARG element, POSITION startAfter) const {
  for (CNode* node = startAfter == nullptr ? m_pHead : At(startAfter).pNext; node != nullptr;
       node = node->pNext) {
    if (node->data == element) return node;
  }
  return nullptr;
}

template <class TYPE, class ARG>
POSITION CList<TYPE, ARG>::Insert(CNode* prev, CNode* next, ARG element) {
  if (m_nCount == INT_MAX) throw std::bad_alloc();
  if (m_pFree == nullptr) AddBlock();
  void* const memory = m_pFree;
  m_pFree = m_pFree->pNext;
  CNode* const node = ::new (memory) CNode(prev, next, element);
  (prev != nullptr ? prev->pNext : m_pHead) = node;
  (next != nullptr ? next->pPrev : m_pTail) = node;
  ++m_nCount;
  return node;
}

template <class TYPE, class ARG>
TYPE CList<TYPE, ARG>::Take(POSITION position) {
  CNode& node = At(position);
  (node.pPrev != nullptr ? node.pPrev->pNext : m_pHead) = node.pNext;
  (node.pNext != nullptr ? node.pNext->pPrev : m_pTail) = node.pPrev;
  --m_nCount;
  TYPE element = node.data;
  node.~CNode();
  m_pFree = ::new (&node) CFreeNode{m_pFree};
  return element;
}

template <class TYPE, class ARG>
void CList<TYPE, ARG>::AddBlock() {
  const auto nodes = static_cast<unsigned int>(m_nBlockSize);
  CPlex* const block = CPlex::Create(m_pBlocks, nodes, sizeof(CNode));
  auto* const memory = static_cast<std::byte*>(block->data());
  for (std::size_t i = nodes; i > 0; --i)
    m_pFree = ::new (memory + (i - 1) * sizeof(CNode)) CFreeNode{m_pFree};
}
