// What the fault shim tells the program that started the run. It lives in a file that both have mapped, so it is
// there whatever becomes of the run.
#pragma once

#include <cstdint>

namespace ei4::test {

/// In the environment of a run:
inline constexpr const char* kFaultProgram = "EI4_FAULT_PROGRAM";  ///< its path; what starts it is let be
inline constexpr const char* kFaultRecord = "EI4_FAULT_RECORD";    ///< path of the file that holds the record
inline constexpr const char* kFaultKind =
    "EI4_FAULT_KIND";  ///< a name from kFaultKinds: calls of this kind count
inline constexpr const char* kFaultAt = "EI4_FAULT_AT";  ///< the call that fails, counted from 1; 0 for none
inline constexpr const char* kFaultOn = "EI4_FAULT_ON";  ///< "1": all later calls fail, too
inline constexpr const char* kFaultInputs =
    "EI4_FAULT_INPUTS";  ///< reads of the files below this folder count
inline constexpr const char* kFaultOutputs = "EI4_FAULT_OUTPUTS";  ///< likewise writes

enum class FaultKind {
  ownMemory,      ///< memory that our own code asks for, itself or through the standard library
  libraryMemory,  ///< memory that any other library asks for
  read,           ///< opening, measuring, moving in or reading an input: EIO
  cut,            ///< reading an input: half of what was asked for, and then its end
  write           ///< opening, writing, flushing, closing or renaming an output: ENOSPC
};
inline constexpr const char* kFaultKinds[] = {"own-memory", "library-memory", "read", "cut", "write"};

struct FaultRecord {
  std::uint32_t counted;  ///< calls of the kind
  std::uint32_t failed;   ///< how many of them were made to fail
  char where[2000];       ///< the first that failed: its callers, innermost first, as "MODULE+OFFSET(SYMBOL)"
};

}  // namespace ei4::test
