// From what a file says about its samples to the preamble that shows them right.
#pragma once

#include <optional>

#include "ei4make/source.h"
#include "encoder/ei4_writer.h"

namespace ei4::tools {

/// What the user wants in place of what the file or the defaults say.
struct PreambleWishes {
  std::optional<float> slope;
  std::optional<float> intercept;
  std::optional<float> window;
  std::optional<float> level;
};

/// The preamble of a picture whose samples are the values. Without wishes its window shows all values of `bits`, or of
/// the picture's own significant bits. Throws std::range_error when slope and intercept make the window infinite.
Ei4Preamble preambleOf(const Picture& picture, std::optional<int> bits, const PreambleWishes& wishes);

/// The preamble of a grey picture with stored values, of which there must be some. Where low samples are to be shown
/// bright, the picture's samples are exchanged, the highest possible one with 0, as the converter shows high samples
/// bright whatever the slope is; slope and intercept follow, so that the rescaled values stay. Without a window it shows
/// the values that occur. Adds a note when the whole numbers that the converter reads lose something visible.
/// Throws std::range_error when a number is beyond what a preamble holds.
Ei4Preamble preambleOfStored(Source& source, const PreambleWishes& wishes);

}  // namespace ei4::tools
