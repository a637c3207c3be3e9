// Whether the glyphs of this machine are those of the gallery.
#pragma once

#include <string>

namespace ei4::test {

/// Draws one text, without the converter, and compares it with the picture of it that was drawn together with the
/// gallery. False: another rasteriser or another font is at work, and the glyphs in the gallery are only similar.
/// Call startDrawing() first. Throws std::runtime_error when there is no picture `path`.
bool glyphsAreThoseOf(const std::string& path);

}  // namespace ei4::test
