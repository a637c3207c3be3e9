// A picture as it comes from a file, with what the file says about its samples.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ei4make/picture.h"

namespace ei4::tools {

/// What the samples of a grey picture stand for.
struct StoredValues {
  int atZero = 0;  ///< the file's stored value that sample 0 stands for: below 0 when they are signed
  bool lowIsWhite = false;       ///< low rescaled values are to be shown bright
  double slope = 1;              ///< rescaled value = stored value * slope + intercept; finite, not 0
  double intercept = 0;          ///< finite
  std::optional<double> window;  ///< width, in rescaled units; finite, above 0. Present together with level
  std::optional<double> level;   ///< centre, in rescaled units; finite
};

struct Source {
  Picture picture;
  std::optional<StoredValues> stored;  ///< absent: the samples are the values, and bright ones are high
  std::vector<std::string> notes;      ///< what the user should know, one sentence each
};

}  // namespace ei4::tools
