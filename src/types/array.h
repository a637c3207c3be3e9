// CArray: numbered elements side by side in memory, mostly points.
#pragma once

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

/// Elements of TYPE, passed in as ARG. They are moved as plain bytes; those that come into being hold zeros.
/// Growing moves them all, and pointers and references to them end with it. The step is small, so a loop of
/// Add over a great many elements is slow: collect them elsewhere first and call SetSize once.
/// An index is valid from 0 to GetUpperBound() and is not checked in release builds.
template <class TYPE, class ARG>
class CArray {
  static_assert(std::is_trivially_copyable_v<TYPE>);

 public:
  CArray() = default;  ///< empty, with no memory
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  ~CArray() { Free(); }

  int GetSize() const { return m_nSize; }
  int GetUpperBound() const { return m_nSize - 1; }          ///< -1 when empty
  int GetAllocatedSize() const { return m_nAllocatedSize; }  ///< how many fit without growing
  bool IsEmpty() const { return m_nSize == 0; }

  /// Cuts the array or appends zeros. A size of 0 or less frees the memory; a smaller one keeps it.
  /// growBy  elements, a step to be kept: the array grows by no less, whether the size needs it or not.
  ///         0 stands for an eighth of the size within 4..1024; -1 leaves the kept step, at first 0, alone.
  /// Throws std::bad_alloc, and keeps the elements, when they do not fit or their count does not fit an int.
  void SetSize(int newSize, int growBy = -1);
  void RemoveAll() { SetSize(0); }

  TYPE GetAt(int index) const { return (*this)[index]; }
  void SetAt(int index, ARG element) { (*this)[index] = element; }
  TYPE& ElementAt(int index) { return (*this)[index]; }
  TYPE& operator[](int index) { return m_pData[Checked(index)]; }
  const TYPE& operator[](int index) const { return m_pData[Checked(index)]; }

  int Add(ARG element);                    ///< appends; its index
  void SetAtGrow(int index, ARG element);  ///< any index from 0 on: grows the array as far as it takes
  TYPE* GetData() { return m_pData; }      ///< null when there is no memory
  const TYPE* GetData() const { return m_pData; }

 private:
  int Checked(int index) const {
    assert(index >= 0 && index < m_nSize);
    return index;
  }
  int GrownSize(int newSize) const;  ///< elements to allocate for newSize of them, which exceed the room
  void Allocate(int allocatedSize);  ///< moves the elements there
  void Free();

  TYPE* m_pData = nullptr;
  int m_nSize = 0;
  int m_nAllocatedSize = 0;
  int m_nGrowBy = 0;
};

template <class TYPE, class ARG>
void CArray<TYPE, ARG>::SetSize(int newSize, int growBy) {
  if (growBy != -1) m_nGrowBy = growBy;
  if (newSize <= 0) {
    Free();
    return;
  }
  if (m_pData == nullptr) {
    Allocate(newSize);
  } else if (newSize > m_nAllocatedSize) {
    Allocate(GrownSize(newSize));
  }
  if (newSize > m_nSize) std::uninitialized_value_construct(m_pData + m_nSize, m_pData + newSize);
  m_nSize = newSize;
}

template <class TYPE, class ARG>
int CArray<TYPE, ARG>::Add(ARG element) {
  const int index = m_nSize;
  SetAtGrow(index, element);
  return index;
}

template <class TYPE, class ARG>
void CArray<TYPE, ARG>::SetAtGrow(int index, ARG element) {
  assert(index >= 0);
  if (index == INT_MAX) throw std::bad_alloc();
  const TYPE copy = element;  // it may be one of the elements that move
  if (index >= m_nSize) SetSize(index + 1);
  m_pData[index] = copy;
}

template <class TYPE, class ARG>
int CArray<TYPE, ARG>::GrownSize(int newSize) const {
  const long step = m_nGrowBy != 0 ? m_nGrowBy : std::clamp(m_nSize / 8, 4, 1024);
  const long grown = std::max<long>(newSize, m_nAllocatedSize + step);
  if (grown > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(grown);
}

template <class TYPE, class ARG>
void CArray<TYPE, ARG>::Allocate(int allocatedSize) {
  TYPE* const data = std::allocator<TYPE>().allocate(static_cast<std::size_t>(allocatedSize));
  std::uninitialized_copy_n(m_pData, m_nSize, data);
  const int size = m_nSize;
  Free();
  m_pData = data;
  m_nSize = size;
  m_nAllocatedSize = allocatedSize;
}

template <class TYPE, class ARG>
void CArray<TYPE, ARG>::Free() {
  if (m_pData != nullptr)
    std::allocator<TYPE>().deallocate(m_pData, static_cast<std::size_t>(m_nAllocatedSize));
  m_pData = nullptr;
  m_nSize = 0;
  m_nAllocatedSize = 0;
}
