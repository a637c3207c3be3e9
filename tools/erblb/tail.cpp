#include "erblb/tail.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "blob/blob_format.h"
#include "erblb/command_line.h"
#include "erblb/entry_name.h"
#include "erblb/interrupt.h"

namespace ei4::erblb {

Tail::Tail(const std::string& path) : m_path(path) {
  do {
    m_file = Descriptor(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!m_file) fail(errno);
    struct stat status = {};
    if (fstat(m_file.get(), &status) != 0) fail(errno);
    if (!S_ISREG(status.st_mode)) throw JobError(shown(path) + ": is no regular file");
  } while (!lock());

  m_before = lseek(m_file.get(), 0, SEEK_END);
  if (m_before < 0) fail(errno);
  if (m_before > tools::kLargestContainer) throw JobError(shown(path) + ": is too large for a container");
}

Tail::~Tail() {
  if (m_mustUndo && ftruncate(m_file.get(), m_before) != 0) {
    std::fprintf(stderr, "erblb: %s: what was appended could not be taken back\n", shown(m_path).c_str());
  }
}

// Waits for the lock, which ends with the descriptor. False when another file has taken the path meanwhile.
bool Tail::lock() const {
  throwIfInterrupted();
  while (flock(m_file.get(), LOCK_EX) != 0) {
    if (errno != EINTR) fail(errno);
    throwIfInterrupted();
  }
  struct stat locked = {};
  struct stat named = {};
  if (fstat(m_file.get(), &locked) != 0 || stat(m_path.c_str(), &named) != 0) fail(errno);
  return locked.st_dev == named.st_dev && locked.st_ino == named.st_ino;
}

// Unbuffered: a buffer that could not be emptied would be written once more behind the undoing.
void Tail::write(std::span<const unsigned char> bytes) {
  m_mustUndo = true;
  while (!bytes.empty()) {
    throwIfInterrupted();
    const ssize_t written = ::write(m_file.get(), bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) fail(errno);
    if (written > 0) bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
}

void Tail::keep() {
  throwIfInterrupted();
  m_mustUndo = false;
}

void Tail::fail(int error) const {
  throw JobError(shown(m_path) + ": " + std::generic_category().message(error));
}

}  // namespace ei4::erblb
