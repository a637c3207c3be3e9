// Placing of the patient's orientation letters; the letters themselves are CAnnotationSet's.
#pragma once

#include "types/types.h"

/// Keeps a point `margin` pixels inside a picture of `size` pixels, in each direction by itself. Where there is
/// no room the coordinate becomes the middle.
void RestrictPoint(CPoint& pt, CSize size, int margin);
