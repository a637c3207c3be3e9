#include "container/blob_record_reader.h"

#include <sys/types.h>

#include <algorithm>
#include <array>
#include <cstring>

BlobRecordReader::BlobRecordReader(std::FILE* stream) : m_stream(stream) { std::rewind(stream); }

std::optional<std::uint16_t> BlobRecordReader::readU16() { return readLittleEndian<std::uint16_t>(); }

std::optional<std::uint32_t> BlobRecordReader::readU32() { return readLittleEndian<std::uint32_t>(); }

std::optional<std::int32_t> BlobRecordReader::readI32() {
  const auto value = readLittleEndian<std::uint32_t>();
  return value ? std::optional(static_cast<std::int32_t>(*value)) : std::nullopt;
}

std::optional<std::int64_t> BlobRecordReader::readI64() {
  const auto value = readLittleEndian<std::uint64_t>();
  return value ? std::optional(static_cast<std::int64_t>(*value)) : std::nullopt;
}

std::optional<std::string> BlobRecordReader::readName(std::size_t storedLength) {
  std::array<unsigned char, kLongestName> bytes;
  if (storedLength > bytes.size() || !read(bytes.data(), storedLength)) return std::nullopt;
  const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(storedLength);
  return std::string(bytes.begin(), std::find(bytes.begin(), end, 0));
}

bool BlobRecordReader::skip(std::int64_t byteCount) {
  // A seek costs a system call; to read over a few bytes costs none.
  std::array<unsigned char, 1024> passedOver;
  if (byteCount >= 0 && byteCount <= std::int64_t{passedOver.size()}) {
    if (read(passedOver.data(), static_cast<std::size_t>(byteCount))) return true;
  }
  std::int64_t target = 0;
  if (__builtin_add_overflow(m_position, byteCount, &target)) return false;
  if (fseeko(m_stream, static_cast<off_t>(target), SEEK_SET) != 0) return false;
  m_position = target;
  return true;
}

bool BlobRecordReader::read(unsigned char* bytes, std::size_t byteCount) {
  if (std::fread(bytes, 1, byteCount, m_stream) != byteCount) return false;
  m_position += static_cast<std::int64_t>(byteCount);
  return true;
}

template <typename Unsigned>
std::optional<Unsigned> BlobRecordReader::readLittleEndian() {
  std::array<unsigned char, sizeof(Unsigned)> bytes;
  if (!read(bytes.data(), bytes.size())) return std::nullopt;
  Unsigned value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(Unsigned{bytes[i]} << (8 * i)));
  }
  return value;
}
