// A dashed frame.
#pragma once

#include "draw/cdc.h"
#include "types/types.h"

/// Draws the frame of `rect` in dashes of `dash` pixels between gaps of `gap`, in colorDash, over a plain frame
/// in colorSolid if bSolid is set. The dashes keep to a grid of gap + dash pixels that starts at
/// coordinate 0, so frames side by side match. Dashes far outside the picture are left out. A dash or a period
/// below 1 draws no dashes.
void DrawDashRectangle(CDC* dc, CRect rect, int gap, int dash, unsigned int colorSolid,
                       unsigned int colorDash, int bSolid);
