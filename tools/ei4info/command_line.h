#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::info {

/// One run of ei4info as the command line states it.
struct Request {
  enum class Job { help, version, inspect };
  Job job = Job::inspect;
  std::vector<std::string> paths;  ///< at least one to inspect
  bool json = false;
  bool blob = false;  ///< the paths name container entries, as for the converter's -blob
  bool progress = true;
};

/// The command line is wrong; what() says where.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the words behind the program's name. Options and other words may mix; "--" ends the options.
/// Throws UsageError.
Request parseCommandLine(std::span<const std::string_view> words);

/// What --help prints.
std::string_view usageText();

}  // namespace ei4::info
