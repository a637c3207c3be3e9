#pragma once

#include <span>
#include <string>
#include <utility>

#include "container/file.h"

namespace ei4::erblb {

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : m_fd(fd) {}
  Descriptor(Descriptor&& other) noexcept : m_fd(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  int get() const { return m_fd; }
  int release() { return std::exchange(m_fd, -1); }
  explicit operator bool() const { return m_fd >= 0; }

 private:
  int m_fd;
};

/// Opens a folder to work in. With `followLink` false a symbolic link is refused. Throws JobError.
Descriptor openFolder(int parent, const std::string& path, bool followLink);

/// A file that appears under its name in one step, complete: it is written under another name beside it, and
/// that file goes away again unless `commit` is reached. Failures throw JobError, signals Interrupted.
class NewFile {
 public:
  /// Refuses a name that is taken, also by a symbolic link to nowhere, unless `replace`; `commit` does so
  /// again. `folder` must stay open.
  NewFile(int folder, std::string name, bool replace);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  void write(std::span<const unsigned char> bytes);
  void commit();

 private:
  int m_folder;
  std::string m_name;
  std::string m_temporary;
  bool m_replace;
  File m_file;
};

}  // namespace ei4::erblb
