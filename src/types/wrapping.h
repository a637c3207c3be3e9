// Sums that wrap where they overflow, instead of being undefined. The checks of the preset `integer` see that they are
// meant to.
#pragma once

#include <type_traits>

/// The result's lowest bits, as many as INT has; INT is always named: wrappedSum<int>(a, b).
template <class INT>
constexpr INT wrappedSum(std::type_identity_t<INT> a, std::type_identity_t<INT> b) {
  INT sum{};
  __builtin_add_overflow(a, b, &sum);
  return sum;
}

template <class INT>
constexpr INT wrappedDifference(std::type_identity_t<INT> a, std::type_identity_t<INT> b) {
  INT difference{};
  __builtin_sub_overflow(a, b, &difference);
  return difference;
}

template <class INT>
constexpr INT wrappedProduct(std::type_identity_t<INT> a, std::type_identity_t<INT> b) {
  INT product{};
  __builtin_mul_overflow(a, b, &product);
  return product;
}

constexpr long wrappingAdd(long a, long b) { return wrappedSum<long>(a, b); }
constexpr long wrappingSubtract(long a, long b) { return wrappedDifference<long>(a, b); }

/// The low 32 bits of a value, as a signed number.
constexpr int low32(long value) { return static_cast<int>(value); }
