// What has to come of a run with a fault in it, and what did.
#pragma once

#include "faulty_run.h"
#include "scenarios.h"

namespace ei4::test {

enum class Verdict {
  survived,  ///< all is as without the fault
  failed,    ///< a failed run, as the flow states it, that left nothing half done behind
  coarser,   ///< an input ended early for its reader: whole files of less data
  claimed,  ///< success without the right file, where the writer's result is not asked for: see docs/quirks.md
  notStarted,    ///< there was no room for the libraries
  libraryCrash,  ///< a signal or no end, in a place where a library is known to do so without memory
  wrong          ///< anything else
};
inline constexpr const char* kVerdicts[] = {
    "survived", "failed", "coarser", "claimed", "not started", "crash or hang of a library", "WRONG"};

/// clean   the same run without a fault
/// before  its files are those that each run finds
Verdict judge(const Scenario& scenario, const Fault& fault, const Run& clean, const Run& before,
              const Run& run);

}  // namespace ei4::test
