#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ei4::bench {

using Words = std::vector<std::string>;

/// What one run of a program cost, as the kernel counted it.
struct RunCost {
  double milliseconds;     ///< from its start to its end
  double cpuMilliseconds;  ///< user and system time
  double peakMebibytes;    ///< largest resident set
};

/// Runs a program, its output thrown away. Throws std::runtime_error when it can't be started or fails.
RunCost runOnce(const Words& words);

/// Runs the programs in turns, `runs` times each, at least once: the least times and the largest peak of each.
std::vector<RunCost> runInTurns(const std::vector<Words>& programs, int runs);

/// What `measure` returns in a copy of this process, whose memory stays as it is. Throws std::runtime_error when
/// that copy fails.
double inChild(const std::function<double()>& measure);

}  // namespace ei4::bench
