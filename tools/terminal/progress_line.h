// The text of a progress bar. Nothing here knows a terminal.
#pragma once

#include <cstdint>
#include <string>

namespace ei4::tools {

/// How far some work on many items is.
struct ProgressState {
  std::int64_t items = 0;  ///< done
  std::int64_t itemsInAll = 0;
  std::int64_t bytes = 0;       ///< done
  std::int64_t bytesInAll = 0;  ///< 0: not known
  double seconds = 0;           ///< since the work began
};

/// One line of at most `columns` ASCII characters, for example
///   [=======>            ] 38% 19/50  1.2/3.1 GB  210 MB/s  0:09 left
/// A narrow terminal gets a shorter bar or none, then fewer figures from the right; `columns` of 0 or less an empty
/// line. More done than there is in all counts as all of it.
std::string progressLine(const ProgressState& state, int columns);

}  // namespace ei4::tools
