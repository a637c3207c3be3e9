// Signed sums that wrap where they overflow, instead of being undefined.
#pragma once

inline long wrappingAdd(long a, long b) {
  return static_cast<long>(static_cast<unsigned long>(a) + static_cast<unsigned long>(b));
}

inline long wrappingSubtract(long a, long b) {
  return static_cast<long>(static_cast<unsigned long>(a) - static_cast<unsigned long>(b));
}

/// The low 32 bits of a value, as a signed number.
inline int low32(long value) { return static_cast<int>(value); }
