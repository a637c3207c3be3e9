// Labels: text that can be read on light and dark ground. Private to this folder.
#pragma once

#include "draw/cdc.h"
#include "types/cstring.h"
#include "types/types.h"

// How a label lies in its place: flags for CDC::DrawText. The bits 1, 2 and 64 are part of the stated values and
// count for nothing there.
inline constexpr unsigned int kLabelCentered = 64 + 1 + kTextCentered + kTextMiddle;  // 77
inline constexpr unsigned int kLabelFromLeft = 64 + 2 + 1;                            // 67: from left, bottom
inline constexpr unsigned int kLabelRightOf = 64 + 1 + kTextMiddle;                   // 73: begins there
inline constexpr unsigned int kLabelLeftOf = 64 + 1 + kTextMiddle + kTextLeftOfEdge;  // 89: ends there

/// Draws a text one pixel right of and below its place in the colour's shadow, then in its place in `color`.
/// Font and text colour are then as before.
void DrawShadowedText(CDC* dc, const CString& text, const CRect& place, unsigned int color,
                      unsigned int format, double scale);
