// Timing several contestants over one picture in turns, so that whatever slows the machine meets them all.
#pragma once

#include <vector>

#include "contestant.h"

namespace ei4::bench {

/// What one contestant took for one picture: processor time, nanoseconds per pixel.
struct Figures {
  double codedBitsPerPixel;
  double minimum;
  double median;
  int decodes;
};

/// For each contestant: codes the picture, checks that decoding gives back each pixel, then decodes until it has had
/// `seconds`, and not less than a few times. Throws std::exception when a contestant fails or changes a pixel.
std::vector<Figures> measureInTurns(const std::vector<std::unique_ptr<Contestant>>& contestants,
                                    const Picture& picture, double seconds);

}  // namespace ei4::bench
