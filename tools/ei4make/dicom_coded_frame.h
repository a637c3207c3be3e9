// Frames of compressed pixel data.
#pragma once

#include <string>

#include "ei4make/frame_pixels.h"
#include "ei4make/isolation.h"

class DcmItem;

namespace ei4::tools {

/// Decodes a frame (from 0) of a data set whose pixel data are in fragments, with a decoder that is registered for this
/// transfer syntax; the layout is a checked one and becomes that of what comes back. Only its first frameBytes() bytes
/// count. The decoder runs in a process of its own, as it cannot be trusted with hostile data.
/// Throws PictureError when the data are damaged, do not have the stated sides or take far too long.
SharedBytes decodedFrame(DcmItem& dataSet, const std::string& transferSyntax, FrameLayout& layout, int frame);

}  // namespace ei4::tools
