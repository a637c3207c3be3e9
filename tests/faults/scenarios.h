// The runs that faults are put into: one for each way through the programs.
#pragma once

#include <string>
#include <vector>

namespace ei4::test {

/// What a run that fails has to look like.
enum class Flow {
  conversion,  ///< of a raw image: status 1 and an empty line
  decoding,  ///< of a compressed image: the same, or status 1 without a line when the input was refused early;
             ///< data that cannot be read count as missing at the end, which leaves a coarser picture
  report,    ///< status 0, or 1 when the compressed input was refused, no output either way
  tool       ///< status 1 and a message
};

struct Scenario {
  const char* name;
  Flow flow;
  const char* program;
  /// Words of the command line. IN/ and OUT/ in front of one stand for the folders of inputs and of outputs.
  std::vector<std::string> words;
  /// An input that is copied to the same name among the outputs before each run, for a tool to change; or null.
  const char* changed = nullptr;
};

const std::vector<Scenario>& scenarios();

}  // namespace ei4::test
