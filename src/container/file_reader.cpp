#include "container/file_reader.h"

FileReader::FileReader(const char* path) {
  File opened = openRegularFile(path, "r");
  if (!opened) return;
  length = static_cast<int>(measureFile(opened.get()));
  if (length >= 0) file = std::move(opened);
}

int FileReader::readBytes(unsigned char* buffer, int bufferOffset, int count) {
  if (!file || buffer == nullptr || bufferOffset < 0 || count < 0) return -1;
  return static_cast<int>(std::fread(buffer + bufferOffset, 1, static_cast<std::size_t>(count), file.get()));
}

int FileReader::skipBytes(int count) {
  if (!file) return -1;
  return std::fseek(file.get(), count, SEEK_CUR);  // Quirk file-skip-answers-zero: the result, not the count
}
