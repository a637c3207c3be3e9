// Line widths, colours and the font of everything that is drawn over a picture.
//
// Colours hold three channels of 8 bits in bits 16-23, 8-15 and 0-7; bits 24-31 are not looked at, and are 0 in
// results. The brightness s = high + 2 * middle + low lies between 0 and 1020.
#pragma once

#include "draw/cdc.h"
#include "draw/pen_brush.h"
#include "types/types.h"

/// A width of w pixels at a scale: rounded half up and truncated, but never 0 where w is not. A scale of
/// exactly 1 changes nothing. What an int can't hold ends at its limits.
int GetLineWidth(int w, double scale);

unsigned int GetDarkerColor(unsigned int color);   ///< each channel halved
unsigned int GetLighterColor(unsigned int color);  ///< each channel halfway to 255
unsigned int GetBorderColor(unsigned int color);   ///< darker above a brightness of 831, else lighter
unsigned int GetShadowColor(unsigned int color);   ///< white for a brightness below 384, else black
unsigned int GetBrightColor(unsigned int color);   ///< black for a brightness below 384, else white

/// Always the drawing context's own face, at its own size.
CFont GetProportionFont(long size, double scale);
