#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

/// Reads the records of a container front to back: little-endian integers, names, and jumps over what lies
/// between. Buffered by the stream; does not own it. Each read answers nothing when the file ends within it.
class BlobRecordReader {
 public:
  /// Starts at the start of the file.
  explicit BlobRecordReader(std::FILE* stream);

  std::optional<std::uint16_t> readU16();
  std::optional<std::uint32_t> readU32();
  std::optional<std::int32_t> readI32();
  std::optional<std::int64_t> readI64();

  /// Reads `storedLength` bytes, at most kLongestName, and cuts them at the first zero byte.
  std::optional<std::string> readName(std::size_t storedLength);

  /// Moves forward without reading more than a little. False when the seek fails; the file's end is no limit.
  bool skip(std::int64_t byteCount);

  /// Bytes from the start of the file.
  std::int64_t position() const { return m_position; }

  static constexpr std::size_t kLongestName = 263;

 private:
  bool read(unsigned char* bytes, std::size_t byteCount);
  template <typename Unsigned>
  std::optional<Unsigned> readLittleEndian();

  std::FILE* m_stream;
  std::int64_t m_position = 0;
};
