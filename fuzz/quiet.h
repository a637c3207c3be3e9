// Standard output and standard error of the code under test: thousands of lines a second, of which nobody reads one.
#pragma once

#include <cstdio>

namespace ei4::fuzz {

/// From the first call on what is printed through C streams goes nowhere. The descriptors stay as they are, for the
/// reports of the fuzzer and the sanitizers.
inline void silence() {
  static std::FILE* const nowhere = std::fopen("/dev/null", "w");
  if (nowhere != nullptr) stdout = stderr = nowhere;
}

}  // namespace ei4::fuzz
