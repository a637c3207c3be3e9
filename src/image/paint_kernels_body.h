// The body of the painting kernels, compiled once for each instruction set. All of it has internal linkage,
// and it calls no inline function of another header: the linker must never pick a copy made for another
// processor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "image/paint_kernels.h"

namespace {

// --- Rows

constexpr std::size_t kChunk = 1024;  // columns whose sums stay in the nearest cache

/// Vector units convert signed numbers only.
inline double toDouble(std::uint32_t value) {
  constexpr std::uint32_t kHalf = std::uint32_t{1} << 31;
  return static_cast<double>(static_cast<std::int32_t>(value ^ kHalf)) + static_cast<double>(kHalf);
}

/// Adds whole rows, several at a time so that each sum is loaded and stored less often.
template <class Component>
void addRows(const Component* line, std::ptrdiff_t stride, std::int64_t rows, std::size_t count,
             std::uint32_t* sums) {
  for (std::size_t i = 0; i < count; ++i) sums[i] = 0;
  std::int64_t row = 0;
  for (; row + 4 <= rows; row += 4) {
    const Component* a = line + row * stride;
    const Component* b = a + stride;
    const Component* c = b + stride;
    const Component* d = c + stride;
    for (std::size_t i = 0; i < count; ++i) sums[i] += static_cast<std::uint32_t>(a[i] + b[i] + c[i] + d[i]);
  }
  for (; row < rows; ++row) {
    const Component* a = line + row * stride;
    for (std::size_t i = 0; i < count; ++i) sums[i] += a[i];
  }
}

/// Up to four rows with weights of 16 bits, whose products every vector unit has.
template <class Component>
struct FewRows {
  const Component* lines[4];
  std::uint16_t weights[4];
  int count = 0;

  void add(const Component* line, std::int64_t weight) {
    if (weight == 0) return;
    lines[count] = line;
    weights[count] = static_cast<std::uint16_t>(weight);
    ++count;
  }
};

template <int kRows, class Component>
void weighFew(const FewRows<Component>& rows, std::size_t count, double* sums) {
  const Component* a = rows.lines[0];
  const Component* b = rows.lines[kRows > 1 ? 1 : 0];
  const Component* c = rows.lines[kRows > 2 ? 2 : 0];
  const Component* d = rows.lines[kRows > 3 ? 3 : 0];
  const std::uint16_t* weights = rows.weights;
  const std::uint16_t wa = weights[0];
  const std::uint16_t wb = kRows > 1 ? weights[1] : 0;
  const std::uint16_t wc = kRows > 2 ? weights[2] : 0;
  const std::uint16_t wd = kRows > 3 ? weights[3] : 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t sum = std::uint32_t{a[i]} * wa;
    if constexpr (kRows > 1) sum += std::uint32_t{b[i]} * wb;
    if constexpr (kRows > 2) sum += std::uint32_t{c[i]} * wc;
    if constexpr (kRows > 3) sum += std::uint32_t{d[i]} * wd;
    sums[i] = toDouble(sum);
  }
}

template <class Component>
void weighMany(const WeightedRows<Component>& rows, std::size_t count, double* sums) {
  const auto fullWeight = static_cast<std::uint32_t>(rows.fullWeight);
  const auto firstWeight = static_cast<std::uint16_t>(rows.firstWeight);
  const auto lastWeight = static_cast<std::uint16_t>(rows.lastWeight);
  // With the weight 0 any row will do.
  const Component* first = firstWeight != 0 ? rows.first : rows.fullBegin;
  const Component* last = lastWeight != 0 ? rows.last : rows.fullBegin;
  for (std::size_t from = 0; from < count; from += kChunk) {
    const std::size_t some = count - from < kChunk ? count - from : kChunk;
    std::uint32_t full[kChunk];
    addRows(rows.fullBegin + from, rows.stride, rows.full, some, full);
    for (std::size_t i = 0; i < some; ++i) {
      sums[from + i] = toDouble(full[i] * fullWeight + std::uint32_t{first[from + i]} * firstWeight +
                                std::uint32_t{last[from + i]} * lastWeight);
    }
  }
}

template <class Component>
void addWide(const Component* line, std::int64_t weight, std::size_t count, double* sums) {
  const auto factor = static_cast<double>(weight);
  for (std::size_t i = 0; i < count; ++i) sums[i] += factor * line[i];
}

/// For pictures of very many rows.
template <class Component>
void weighWide(const WeightedRows<Component>& rows, std::size_t count, double* sums) {
  for (std::size_t i = 0; i < count; ++i) sums[i] = 0;
  for (std::int64_t row = 0; row < rows.full; ++row) {
    addWide(rows.fullBegin + row * rows.stride, rows.fullWeight, count, sums);
  }
  if (rows.firstWeight != 0) addWide(rows.first, rows.firstWeight, count, sums);
  if (rows.lastWeight != 0) addWide(rows.last, rows.lastWeight, count, sums);
}

template <class Component>
void sumRows(const WeightedRows<Component>& rows, std::size_t count, double* sums) {
  constexpr std::int64_t kNarrow = 0xFFFF;  // times a sample of 16 bits: fits 32
  if (rows.firstWeight + rows.full * rows.fullWeight + rows.lastWeight > kNarrow) {
    weighWide(rows, count, sums);
    return;
  }
  if (rows.full > 2) {
    weighMany(rows, count, sums);
    return;
  }
  FewRows<Component> few;
  few.add(rows.first, rows.firstWeight);
  for (std::int64_t i = 0; i < rows.full; ++i) few.add(rows.fullBegin + i * rows.stride, rows.fullWeight);
  few.add(rows.last, rows.lastWeight);
  switch (few.count) {
    case 1:
      return weighFew<1>(few, count, sums);
    case 2:
      return weighFew<2>(few, count, sums);
    case 3:
      return weighFew<3>(few, count, sums);
    default:
      return weighFew<4>(few, count, sums);
  }
}

// --- Columns

using Two = double __attribute__((vector_size(16)));
using Four = double __attribute__((vector_size(32)));
using FourInts = std::int32_t __attribute__((vector_size(16)));
using FourShorts = std::uint16_t __attribute__((vector_size(8)));
using FourBytes = std::uint8_t __attribute__((vector_size(4)));

template <class Vector>
inline Vector load(const double* from) {
  Vector vector;
  std::memcpy(&vector, from, sizeof vector);
  return vector;
}

inline Four join(Two low, Two high) { return __builtin_shufflevector(low, high, 0, 1, 2, 3); }

/// Sums of neighbouring lanes: (a0 + a1, b0 + b1, a2 + a3, b2 + b3).
inline Four pairSums(Four a, Four b) {
  return __builtin_shufflevector(a, b, 0, 4, 2, 6) + __builtin_shufflevector(a, b, 1, 5, 3, 7);
}

inline FourInts divided(Four sums, TruncatingDivision divide) {
  return __builtin_convertvector((sums + 0.5) * divide.reciprocal, FourInts);
}

inline void storeFour(FourInts four, CPixelM16* values) {
  const auto shorts = __builtin_convertvector(four, FourShorts);
  std::memcpy(values, &shorts, sizeof shorts);
}
inline void storeFour(FourInts four, CPixelM08* values) {
  const auto bytes = __builtin_convertvector(__builtin_convertvector(four, FourShorts), FourBytes);
  std::memcpy(values, &bytes, sizeof bytes);
}

/// The quotients of four pixels of two columns each.
inline FourInts fourOfTwo(const int* firsts, const double* weights, const double* sums,
                          TruncatingDivision divide) {
#ifdef __AVX__  // one multiplication for two pixels
  const Four first = join(load<Two>(sums + firsts[0]), load<Two>(sums + firsts[1])) * load<Four>(weights);
  const Four second =
      join(load<Two>(sums + firsts[2]), load<Two>(sums + firsts[3])) * load<Four>(weights + 4);
  const FourInts quotients = divided(pairSums(first, second), divide);
  return __builtin_shufflevector(quotients, quotients, 0, 2, 1, 3);
#else
  const auto product = [&](int k) {
    return load<Two>(sums + firsts[k]) * load<Two>(weights + std::ptrdiff_t{2} * k);
  };
  const auto pairSum = [](Two a, Two b) {
    return __builtin_shufflevector(a, b, 0, 2) + __builtin_shufflevector(a, b, 1, 3);
  };
  return divided(join(pairSum(product(0), product(1)), pairSum(product(2), product(3))), divide);
#endif
}

/// The products of one pixel's taps, those beyond four added to them.
inline Four products(const double* sums, const double* weights, std::ptrdiff_t taps) {
  Four sum = load<Four>(sums) * load<Four>(weights);
  for (std::ptrdiff_t tap = 4; tap < taps; tap += 4)
    sum += load<Four>(sums + tap) * load<Four>(weights + tap);
  return sum;
}

/// The quotients of four pixels of any multiple of four columns each.
inline FourInts fourOfMany(const int* firsts, const double* weights, std::ptrdiff_t taps, const double* sums,
                           TruncatingDivision divide) {
  const Four a = products(sums + firsts[0], weights, taps);
  const Four b = products(sums + firsts[1], weights + taps, taps);
  const Four c = products(sums + firsts[2], weights + 2 * taps, taps);
  const Four d = products(sums + firsts[3], weights + 3 * taps, taps);
  const Four ab = pairSums(a, b);
  const Four cd = pairSums(c, d);
  return divided(__builtin_shufflevector(ab, cd, 0, 1, 4, 5) + __builtin_shufflevector(ab, cd, 2, 3, 6, 7),
                 divide);
}

/// kTaps: their number, or 0 where it is known at run time only.
template <int kTaps, class Grey>
void blendGrey(const WeightedColumns& columns, const double* sums, Grey* values) {
  const std::ptrdiff_t taps = kTaps != 0 ? kTaps : columns.taps;
  const int* firsts = columns.firsts;
  const double* weights = columns.weights;
  const std::size_t pixels = columns.pixels;
  const TruncatingDivision divide = columns.divide;
  std::size_t i = 0;
  for (; i + 4 <= pixels; i += 4) {
    if constexpr (kTaps == 2) {
      storeFour(fourOfTwo(firsts + i, weights, sums, divide), values + i);
    } else {
      storeFour(fourOfMany(firsts + i, weights, taps, sums, divide), values + i);
    }
    weights += 4 * taps;
  }
  for (; i < pixels; ++i) {
    double sum = 0;
    for (std::ptrdiff_t tap = 0; tap < taps; ++tap) sum += sums[firsts[i] + tap] * weights[tap];
    values[i].value =
        static_cast<typename Grey::Component>(static_cast<int>((sum + 0.5) * divide.reciprocal));
    weights += taps;
  }
}

template <class Grey>
void blendGreyRow(const WeightedColumns& columns, const double* sums, Grey* values) {
  switch (columns.taps) {
    case 2:
      return blendGrey<2>(columns, sums, values);
    case 4:
      return blendGrey<4>(columns, sums, values);
    default:
      return blendGrey<0>(columns, sums, values);
  }
}

/// The three components of a pixel side by side in a vector. Its fourth lane, the next column's red, is
/// dropped.
template <int kTaps>
void blendColour(const WeightedColumns& columns, const double* sums, CPixelC08* values) {
  const std::ptrdiff_t taps = kTaps != 0 ? kTaps : columns.taps;
  const int* firsts = columns.firsts;
  const double* weights = columns.weights;
  const std::size_t pixels = columns.pixels;
  const TruncatingDivision divide = columns.divide;
  for (std::size_t i = 0; i < pixels; ++i) {
    const double* column = sums + std::ptrdiff_t{firsts[i]} * 3;
    Four sum = load<Four>(column) * weights[0];
    for (std::ptrdiff_t tap = 1; tap < taps; ++tap) sum += load<Four>(column + tap * 3) * weights[tap];
    weights += taps;
    const FourInts four = divided(sum, divide);
    values[i].red = static_cast<std::uint8_t>(four[0]);
    values[i].green = static_cast<std::uint8_t>(four[1]);
    values[i].blue = static_cast<std::uint8_t>(four[2]);
  }
}

void blendColourRow(const WeightedColumns& columns, const double* sums, CPixelC08* values) {
  switch (columns.taps) {
    case 2:
      return blendColour<2>(columns, sums, values);
    case 3:
      return blendColour<3>(columns, sums, values);
    case 4:
      return blendColour<4>(columns, sums, values);
    default:
      return blendColour<0>(columns, sums, values);
  }
}

constexpr PaintKernels kKernels = {sumRows<std::uint8_t>, sumRows<std::uint16_t>, blendGreyRow<CPixelM08>,
                                   blendGreyRow<CPixelM16>, blendColourRow};

}  // namespace
