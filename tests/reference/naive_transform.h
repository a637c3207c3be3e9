// The inverse of the reversible 5/3 lifting transform (Le Gall), halves rounded away from zero.
#pragma once

#include "reference/naive_coefficients.h"

namespace ei4::test {

/// Inverts `levels` decomposition levels in place, or as many as the plane is large enough for.
void invertLevels(NaivePlane& plane, int levels);

}  // namespace ei4::test
