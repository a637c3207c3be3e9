#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::erblb {

enum class Command { help, version, list, verify, extract, build, append, remove };

/// One job of erblb as the command line states it.
struct Request {
  Command command = Command::help;
  std::string container;  ///< path of the container
  std::vector<std::string>
      words;                 ///< names to extract or delete, [NAME=]PATH words to pack, further containers
  std::string folder = ".";  ///< where extract writes
  bool force = false;        ///< replace files that exist
  bool all = false;          ///< list deletion marks too
  bool images = false;       ///< verify looks at images too
  bool progress = true;      ///< show a bar where there is a terminal
};

/// The command line is wrong; what() says where.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The job cannot be done; what() says why.
class JobError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the words behind the program's name. Options and other words may mix; "--" ends the options.
/// Throws UsageError.
Request parseCommandLine(std::span<const std::string_view> words);

/// What --help prints.
std::string_view usageText();

}  // namespace ei4::erblb
