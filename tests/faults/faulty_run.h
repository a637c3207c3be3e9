// One run of a program with something going wrong in it.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "fault_record.h"

namespace ei4::test {

/// What goes wrong. Nothing, as it is made.
struct Fault {
  FaultKind kind = FaultKind::ownMemory;
  unsigned at = 0;           ///< the call of that kind that fails, counted from 1; 0 only counts
  bool andAllLater = false;  ///< all calls of that kind behind it fail as well
  unsigned long addressSpace =
      0;  ///< instead: bytes that the run may have (RLIMIT_AS), without the shim; 0 for any
};

struct Run {
  int status = 0;  ///< -N when signal N ended it; kHangs
  std::string output;
  std::string errors;
  std::map<std::string, std::string> files;  ///< in the folder of outputs: name and contents
  FaultRecord record{};
};
inline constexpr int kNotStarted =
    127;  ///< status of a run that the dynamic linker refuses, for lack of memory too
inline constexpr int kHangs = -1000;  ///< status of a run that had to be killed

/// Runs one command line again and again.
class Runner {
 public:
  /// words: the command line, the program's path first.
  /// changed: a file among the inputs that each run finds a fresh copy of among the outputs; or null.
  Runner(std::filesystem::path shim, std::filesystem::path inputs, std::filesystem::path work,
         std::vector<std::string> words, const char* changed);

  /// Empties the folder of outputs, runs the program and says what came of it.
  Run run(const Fault& fault) const;

  /// Words that begin with IN/ and OUT/ are put into these folders.
  std::filesystem::path inputs() const { return m_inputs; }
  std::filesystem::path outputs() const { return m_work / "out"; }

 private:
  [[noreturn]] void become(const Fault& fault) const;

  std::filesystem::path m_shim;
  std::filesystem::path m_inputs;
  std::filesystem::path m_work;
  std::vector<std::string> m_under;  // in front of the others
  std::vector<std::string> m_words;
  const char* m_changed;
};

}  // namespace ei4::test
