// Files as ei4make takes and leaves them.
#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

namespace ei4::tools {

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// What the system said about a file.
class FileError : public std::runtime_error {
 public:
  /// Takes the reason from errno.
  explicit FileError(const std::string& path);
};

/// Throws std::invalid_argument when both paths lead to one existing file, a device or pipe excepted.
void refuseSameFile(const std::string& input, const std::string& output);

/// Writes a whole file. It appears in one step, in place of one that was there, whose permissions it keeps; on
/// failure that stays as it was. Through a symbolic link, and to devices and pipes, it is written in place.
/// Throws FileError.
void writeOutput(const std::string& path, std::span<const unsigned char> bytes);

}  // namespace ei4::tools
