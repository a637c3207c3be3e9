#include "container/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

File openRegularFile(const char* path, const char* mode) {
  if (path == nullptr) {
    errno = EINVAL;
    return nullptr;
  }
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  struct stat status = {};
  if (fstat(descriptor, &status) == 0) {
    if (!S_ISREG(status.st_mode)) {
      errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    } else if (File file{fdopen(descriptor, mode)}) {
      return file;
    }
  }
  const int error = errno;
  close(descriptor);
  errno = error;
  return nullptr;
}

std::int64_t measureFile(std::FILE* stream) {
  struct stat status = {};
  if (fstat(fileno(stream), &status) != 0 || S_ISDIR(status.st_mode)) return -1;
  const off_t before = ftello(stream);
  if (before < 0 || fseeko(stream, 0, SEEK_END) != 0) return -1;
  const std::int64_t size = ftello(stream);
  if (fseeko(stream, before, SEEK_SET) != 0) return -1;
  return size <= std::numeric_limits<std::int32_t>::max() ? size : -1;
}
