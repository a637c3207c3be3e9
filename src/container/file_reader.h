#pragma once

#include "container/file.h"
#include "container/serial_reader.h"

/// Reads a plain file. Not copyable; owns the file and closes it.
class FileReader final : public SerialReader {
 public:
  /// Opens and measures `path`. A null path, one that cannot be opened, whatever is no regular file (a
  /// directory, a pipe, which is not waited for, a device), and a file of more than 2^31 - 1 bytes leave the
  /// reader closed with a length of -1.
  explicit FileReader(const char* path);

  /// The file's size when it was opened; -1 when the reader is closed.
  int getLength() override { return length; }

  /// As in `SerialReader`. A negative offset or count and a null buffer give -1, and nothing is read.
  int readBytes(unsigned char* buffer, int bufferOffset, int count) override;

  /// Returns what the seek returns: 0 on success, also past the end of the file, and never the count; -1 when
  /// closed or in front of the file's start. Quirk file-skip-answers-zero.
  int skipBytes(int count) override;

 private:
  int length = -1;
  File file;
};
