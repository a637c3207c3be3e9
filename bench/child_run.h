#pragma once

#include <string>
#include <vector>

namespace ei4::bench {

/// What one run of a program cost, as the kernel counted it.
struct RunCost {
  double milliseconds;     ///< from its start to its end
  double cpuMilliseconds;  ///< user and system time
  double peakMebibytes;    ///< largest resident set
};

/// Runs a program, its output thrown away. Throws std::runtime_error when it can't be started or fails.
RunCost runOnce(const std::vector<std::string>& words);

/// The median cost of `runs` runs, at least 1, each figure by itself.
RunCost medianRun(const std::vector<std::string>& words, int runs);

}  // namespace ei4::bench
