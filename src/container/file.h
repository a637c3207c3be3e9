// An open file that closes itself, how input is opened, and its size.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

struct CloseFile {
  void operator()(std::FILE* stream) const noexcept { std::fclose(stream); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Opens a regular file with a mode of std::fopen for reading. Null with errno set when that fails, and for a
/// null path and whatever is no regular file. Never waits, as opening a pipe without a writer would.
File openRegularFile(const char* path, const char* mode);

/// Size of an open file in bytes, found by a seek to its end and back to where it stood. -1 for a directory,
/// for a stream that cannot seek (a pipe), and for more than 2^31 - 1 bytes, which the 32-bit lengths of this
/// subsystem cannot express.
std::int64_t measureFile(std::FILE* stream);
