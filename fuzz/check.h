// How a fuzz target says that something went wrong.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace ei4::fuzz {

/// Ends the process when what must hold does not, so that the fuzzer keeps the input.
/// text  what must hold; never null
inline void require(bool condition, const char* text) {
  if (condition) return;
  dprintf(STDERR_FILENO, "does not hold: %s\n", text);  // the stream itself may have been silenced
  std::abort();
}

}  // namespace ei4::fuzz
