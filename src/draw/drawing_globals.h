// The drawing context's process-wide objects.
#pragma once

/// The font of all text, as MagickCore knows it: "Courier".
extern const char* const FONT_NAME;

/// Width and height of one character cell, pixels; 0 until a drawing context has measured it.
extern long FONT_WIDTH;
extern long FONT_HEIGHT;

/// Non-zero: drawing calls print a trace line. A setting of the driver's, which alone writes it; no
/// option sets it, so it stays 0.
extern int iVerbose;
