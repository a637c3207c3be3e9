// The window/level table: from stored pixel values to grey levels.
#pragma once

#include <cstdlib>
#include <memory>

struct FreeConvertab {
  void operator()(void* table) const noexcept { std::free(table); }
};
/// A table's entries: unsigned char when it was made for at most 8 output bits, else unsigned short.
using Convertab = std::unique_ptr<void, FreeConvertab>;

/// The stored value of a level given in rescaled units, where
///   rescaled = stored * slope * 2^shift + intercept.
///
/// Truncates twice, toward zero: the intercept, then the result. A scale of 0 counts as 1. Any arguments are
/// allowed: a double that is not a number or does not fit an int becomes INT_MIN, and the difference wraps.
int FieldhounsLevel(int value, double intercept, double slope, int shift);

/// Builds the table: black below the window, white above it, a linear ramp within; with
/// `invert` the other way round.
///
/// window, level      in rescaled units; a negative window counts as its absolute value
/// inBits, tableBits  the table has 2 to the power of the larger one entries; at most 24
/// outBits            white is 2^outBits - 1; 0 to 16
///
/// Returns null when memory is short or the bits are out of range. Any window, level, slope and intercept
/// will do: 32-bit sums and products wrap around.
Convertab CreateConvertab(double intercept, double slope, int window, int level, int invert, int inBits,
                          int shift, int outBits, int tableBits);
