// Reading numbers from option values, with the results that scanf's conversions have on this platform.
#pragma once

#include "types/types.h"

namespace ei4 {

/// Each reads the longest number at the start of `text`, behind white space and with a sign if there
/// is one, and ignores what follows it. Returns false, and leaves `value` alone, when `text` is null
/// or holds no number there.

/// "%d". A number beyond int keeps its low 32 bits (a number beyond long is first clamped to long).
bool scanInt(const char* text, int& value);

/// "%f". Also "inf", "nan" and hexadecimal. A number beyond float becomes an infinity.
bool scanFloat(const char* text, float& value);

/// "%ld%c%ld", a width, any one character and a height, each written to `size` as soon as it is read: a
/// refused geometry may have changed the width, or with a wrong separator both. Returns true only when all
/// three were there and the separator is 'x'. Numbers beyond long are clamped.
bool scanGeometry(const char* text, CSize& size);

}  // namespace ei4
