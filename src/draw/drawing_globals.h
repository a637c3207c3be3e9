// The drawing context's process-wide objects.
#pragma once

#include "types/cstring.h"

/// The font of all text, as MagickCore knows it: "Courier".
extern CString FONT_NAME;

/// Width and height of one character cell, pixels, as the drawing context made last has measured it; 0 before
/// the first one, and where the machine has no font at all.
extern long FONT_WIDTH;
extern long FONT_HEIGHT;

/// Non-zero: drawing calls print a trace line on standard output. A setting of the driver's, which alone writes
/// it; no option sets it, so it stays 0.
extern int iVerbose;
