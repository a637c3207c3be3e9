// Files that are named by a container, which may name anything.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "container/descriptor.h"
#include "container/file.h"

/// The folders and, last, the file of a name that stays below the folder it counts from. Nothing for a name that
/// is empty, starts or ends with '/', has a component that is empty, "." or "..", or holds a zero byte.
std::optional<std::vector<std::string>> componentsBelow(std::string_view name);

/// A new file below the current folder, whatever its name is. It takes the place of what has that name: another
/// name of a file and what a symbolic link leads to stay as they are. Goes away again unless `keep` is reached.
class FileBelow {
 public:
  /// Creates it, empty. The folders on the way must exist and be no symbolic links. False when there is no file:
  /// for a name that leads elsewhere, that of a folder, and one that cannot be had.
  explicit FileBelow(const std::string& name);
  FileBelow(const FileBelow&) = delete;
  FileBelow& operator=(const FileBelow&) = delete;
  ~FileBelow();

  explicit operator bool() const { return m_file != nullptr; }

  /// Both need a file, and are false when not all could be written. Nothing can be written behind `keep`.
  bool write(std::span<const unsigned char> bytes);
  bool keep();

 private:
  Descriptor m_folder;
  std::string m_name;  // in the folder; empty when there is nothing to remove
  File m_file;
};
