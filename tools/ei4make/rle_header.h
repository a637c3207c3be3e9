#pragma once

#include <span>

namespace ei4::tools {

/// Whether a DICOM RLE frame begins with a header for so many segments (1 to 15), each of which begins within the frame.
bool hasRleHeader(std::span<const unsigned char> frame, int segments);

}  // namespace ei4::tools
