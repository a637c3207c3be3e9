#include "erblb/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "erblb/command_line.h"
#include "erblb/entry_name.h"

namespace ei4::erblb {

namespace {

[[noreturn]] void fail(const std::string& name, int error) {
  throw JobError(shown(name) + ": " + std::generic_category().message(error));
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(m_fd, other.m_fd);
  return *this;
}

Descriptor::~Descriptor() {
  if (m_fd >= 0) close(m_fd);
}

Descriptor openFolder(int parent, const std::string& path, bool followLink) {
  Descriptor folder(
      openat(parent, path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | (followLink ? 0 : O_NOFOLLOW)));
  if (!folder) fail(path, errno);
  return folder;
}

NewFile::NewFile(int folder, std::string name, bool replace)
    : m_folder(folder), m_name(std::move(name)), m_temporary(".erblb-" + std::to_string(getpid()) + ".tmp") {
  struct stat status = {};
  if (fstatat(folder, m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    if (S_ISDIR(status.st_mode)) fail(m_name, EISDIR);
    if (!replace) throw JobError(shown(m_name) + ": exists already (-f replaces it)");
  }
  Descriptor created(
      openat(folder, m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (!created) fail(m_name, errno);
  m_file.reset(fdopen(created.get(), "wb"));
  if (!m_file) {
    const int error = errno;
    unlinkat(folder, m_temporary.c_str(), 0);
    fail(m_name, error);
  }
  created.release();  // the stream closes it
}

NewFile::~NewFile() {
  if (!m_temporary.empty()) unlinkat(m_folder, m_temporary.c_str(), 0);
}

void NewFile::write(std::span<const unsigned char> bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size()) fail(m_name, errno);
}

void NewFile::commit() {
  if (std::fclose(m_file.release()) != 0) fail(m_name, errno);
  if (renameat(m_folder, m_temporary.c_str(), m_folder, m_name.c_str()) != 0) fail(m_name, errno);
  m_temporary.clear();
}

}  // namespace ei4::erblb
