// Outlines on a MagickCore image. Private to this folder.
#pragma once

#include <magick/MagickCore.h>

#include "draw/outline.h"

namespace ei4 {

/// Draws the outline as DrawImage does with this draw info, each pixel to the last bit (but see Outline::polygon),
/// and leaves the image in the same state. The info has a primitive, an opaque stroke colour, a stroke width of 1
/// and no fill. The image has no fully transparent pixels: of those DrawImage clears the colour, which nobody sees,
/// and this does not.
/// work  in and out, not below 0: less by one for each pixel covered, and by more in very large pictures. The rows
///       from which on it would be below 0, which it then is, are left out.
/// Returns false, and has done nothing, where the library at hand draws by another law.
bool paintOutline(Image& image, const DrawInfo& info, Outline& outline, long& work);

}  // namespace ei4
