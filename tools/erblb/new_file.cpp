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
#include "erblb/interrupt.h"

namespace ei4::erblb {

namespace {

[[noreturn]] void fail(const std::string& name, int error) {
  throw JobError(shown(name) + ": " + std::generic_category().message(error));
}

[[noreturn]] void refuseTaken(const std::string& name) {
  throw JobError(shown(name) + ": exists already (-f replaces it)");
}

int errorOf(int result) { return result == 0 ? 0 : errno; }

// Creates a file of a name that is free and stores the name. A run that was killed may have left some behind.
Descriptor createTemporary(int folder, std::string& name) {
  constexpr int kMostTries = 1000;
  for (int i = 0;; ++i) {
    name = ".erblb-" + std::to_string(getpid()) + "-" + std::to_string(i) + ".tmp";
    Descriptor created(
        openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (created || errno != EEXIST || i == kMostTries) return created;
  }
}

// Gives a file another name, which must be free. 0, or what went wrong.
int renameToFreeName(int folder, const std::string& from, const std::string& to) {
  const int error = errorOf(renameat2(folder, from.c_str(), folder, to.c_str(), RENAME_NOREPLACE));
  if (error != EINVAL && error != ENOSYS) return error;
  // Not every file system knows that. Links never replace either.
  if (linkat(folder, from.c_str(), folder, to.c_str(), 0) != 0) return errno;
  unlinkat(folder, from.c_str(), 0);
  return 0;
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
    : m_folder(folder), m_name(std::move(name)), m_replace(replace) {
  struct stat status = {};
  if (fstatat(folder, m_name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    if (S_ISDIR(status.st_mode)) fail(m_name, EISDIR);
    if (!replace) refuseTaken(m_name);
  }
  Descriptor created = createTemporary(folder, m_temporary);
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
  throwIfInterrupted();
  if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) != bytes.size()) fail(m_name, errno);
}

void NewFile::commit() {
  if (std::fclose(m_file.release()) != 0) fail(m_name, errno);
  throwIfInterrupted();
  const int error = m_replace ? errorOf(renameat(m_folder, m_temporary.c_str(), m_folder, m_name.c_str()))
                              : renameToFreeName(m_folder, m_temporary, m_name);
  if (error == EEXIST && !m_replace) refuseTaken(m_name);
  if (error != 0) fail(m_name, error);
  m_temporary.clear();
}

}  // namespace ei4::erblb
