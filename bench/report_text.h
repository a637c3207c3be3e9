#pragma once

#include <string>

namespace ei4::bench {

/// A report on a picture of this many pixels: shown as stored and whole, with `annotations` measurements of all
/// kinds spread over it, both labels on, and orientation letters.
std::string reportText(int width, int height, int annotations);

}  // namespace ei4::bench
