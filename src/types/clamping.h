// Numbers brought into the range of an int by ending at its limits, instead of wrapping.
#pragma once

#include <algorithm>
#include <climits>

inline int clampedToInt(long value) { return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX)); }
