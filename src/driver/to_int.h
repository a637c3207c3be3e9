// Doubles into ints, for values that come from outside.
#pragma once

#include <climits>

namespace ei4 {

/// `value` truncated toward zero; INT_MIN when it is not a number or the result does not fit.
constexpr int toInt(double value) {
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<int>(value) : INT_MIN;
}

}  // namespace ei4
