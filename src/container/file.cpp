#include "container/file.h"

#include <sys/stat.h>

#include <limits>

std::int64_t measureFile(std::FILE* stream) {
  struct stat status = {};
  if (fstat(fileno(stream), &status) != 0 || S_ISDIR(status.st_mode)) return -1;
  const off_t before = ftello(stream);
  if (before < 0 || fseeko(stream, 0, SEEK_END) != 0) return -1;
  const std::int64_t size = ftello(stream);
  if (fseeko(stream, before, SEEK_SET) != 0) return -1;
  return size <= std::numeric_limits<std::int32_t>::max() ? size : -1;
}
