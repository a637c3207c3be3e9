// What an `expected` file describes. README.md has its language.
#pragma once

#include <string>

#include "report/drawing.h"

namespace ei4::test {

/// Draws it. startDrawing() comes first. Throws ScriptError with the line's number in its text: for a line
/// that is not understood, and for one that changes no pixel, as it would promise nothing.
Raster expectedPicture(const std::string& path);

}  // namespace ei4::test
