#include "gwav4/filter5_3.h"

namespace zel::gwav4 {
namespace {

template <class T>
int wrappingSum(T a, T b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

template <class T>
T plusWrapping(T sample, int change) {
  return static_cast<T>(static_cast<std::uint32_t>(sample) + static_cast<std::uint32_t>(change));
}

template <class T>
T minusWrapping(T sample, int change) {
  return static_cast<T>(static_cast<std::uint32_t>(sample) - static_cast<std::uint32_t>(change));
}

/// Runs `body(i)` over the elements of a line; adjacent ones in a loop of their own, which the compiler
/// vectorises.
template <class Body>
void forEach(std::size_t count, std::size_t step, Body body) {
  if (step == 1) {
    for (std::size_t i = 0; i < count; ++i) body(i);
  } else {
    for (std::size_t i = 0; i < count * step; i += step) body(i);
  }
}

}  // namespace

template <class T>
void CFilter5_3<T>::lowerEven(T* __restrict even, const T* before, const T* after, std::size_t count,
                              std::size_t step) {
  forEach(count, step, [=](std::size_t i) {
    even[i] = minusWrapping(even[i], roundedQuarter(wrappingSum(before[i], after[i])));
  });
}

template <class T>
void CFilter5_3<T>::lowerEvenAtEnd(T* __restrict even, const T* neighbour, std::size_t count,
                                   std::size_t step) {
  forEach(count, step, [=](std::size_t i) { even[i] = minusWrapping(even[i], roundedHalf(neighbour[i])); });
}

template <class T>
void CFilter5_3<T>::raiseOdd(T* __restrict odd, const T* before, const T* after, std::size_t count,
                             std::size_t step) {
  forEach(count, step, [=](std::size_t i) {
    odd[i] = plusWrapping(odd[i], roundedHalf(wrappingSum(before[i], after[i])));
  });
}

template <class T>
void CFilter5_3<T>::raiseOddAtEnd(T* __restrict odd, const T* neighbour, std::size_t count,
                                  std::size_t step) {
  forEach(count, step, [=](std::size_t i) { odd[i] = plusWrapping(odd[i], neighbour[i]); });
}

template <class T>
void CFilter5_3<T>::invertLine(const T* line, std::size_t count, std::size_t step, T* out,
                               std::size_t outStep, T* scratch) {
  if (count < 2) {
    if (count == 1) out[0] = line[0];
    return;
  }
  // Apart, low- and high-pass samples are two plain arrays, and neighbours are the same or the next index.
  const std::size_t odds = count / 2;
  const std::size_t evens = count - odds;
  T* const even = scratch;
  T* const odd = scratch + evens;
  if (step == 1) {
    for (std::size_t i = 0; i < odds; ++i) {
      even[i] = line[2 * i];
      odd[i] = line[2 * i + 1];
    }
    if (evens > odds) even[odds] = line[2 * odds];
  } else {
    for (std::size_t i = 0; i < evens; ++i) even[i] = line[2 * i * step];
    for (std::size_t i = 0; i < odds; ++i) odd[i] = line[(2 * i + 1) * step];
  }

  lowerEvenAtEnd(even, odd, 1, 1);
  lowerEven(even + 1, odd, odd + 1, odds - 1, 1);
  if (evens > odds) lowerEvenAtEnd(even + odds, odd + odds - 1, 1, 1);

  raiseOdd(odd, even, even + 1, evens - 1, 1);
  if (evens == odds) raiseOddAtEnd(odd + odds - 1, even + evens - 1, 1, 1);

  if (outStep == 1) {
    for (std::size_t i = 0; i < odds; ++i) {
      out[2 * i] = even[i];
      out[2 * i + 1] = odd[i];
    }
    if (evens > odds) out[2 * odds] = even[odds];
  } else {
    for (std::size_t i = 0; i < evens; ++i) out[2 * i * outStep] = even[i];
    for (std::size_t i = 0; i < odds; ++i) out[(2 * i + 1) * outStep] = odd[i];
  }
}

template struct CFilter5_3<short>;
template struct CFilter5_3<int>;

}  // namespace zel::gwav4
