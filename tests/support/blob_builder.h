// Blob containers for tests, also odd ones: every length, size and offset can be stated as one likes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::test {

/// `size` bytes that differ from their neighbours: start, start + 1, ...
inline std::vector<unsigned char> ramp(int size, int start = 0) {
  std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(start++);
  return bytes;
}

/// Writes a container field by field. The number of table entries is counted unless `entryCount` states it,
/// and is put in at the end.
class BlobBuilder {
 public:
  BlobBuilder& magic(std::string_view bytes) { return m_magic = bytes, *this; }
  BlobBuilder& version(std::uint32_t value) { return m_version = value, *this; }
  BlobBuilder& entryCount(std::int32_t value) { return m_count = value, m_countStated = true, *this; }

  /// One table entry. `nameLength` as stored when it differs from the name's.
  BlobBuilder& entry(std::string_view name, std::int32_t size, std::int64_t offset, int nameLength = -1) {
    if (!m_countStated) ++m_count;
    return this->name(name, nameLength).number(size, 4).number(offset, 8);
  }
  /// A chunk with its payload; a deletion is a chunk named "ERDELETE...".
  BlobBuilder& chunk(std::string_view name, const std::vector<unsigned char>& payload = {}) {
    return chunkHead(name, static_cast<std::int32_t>(payload.size())).bytes(payload);
  }
  BlobBuilder& chunkHead(std::string_view name, std::int32_t size, int nameLength = -1) {
    return this->name(name, nameLength).number(size, 4);
  }

  BlobBuilder& name(std::string_view text, int nameLength = -1) {
    number(nameLength < 0 ? static_cast<std::int64_t>(text.size()) : nameLength, 2);
    // One by one: g++ 12 warns of an overflow that is none when it inlines the insertion of a range.
    for (const char letter : text) m_body.push_back(static_cast<unsigned char>(letter));
    return *this;
  }
  BlobBuilder& bytes(const std::vector<unsigned char>& more) {
    m_body.insert(m_body.end(), more.begin(), more.end());
    return *this;
  }
  BlobBuilder& number(std::int64_t value, int byteCount) { return put(m_body, value, byteCount), *this; }

  std::vector<unsigned char> build() const {
    std::vector<unsigned char> out(m_magic.begin(), m_magic.end());
    put(out, m_version, 4);
    out.insert(out.end(), 116, 0xEE);  // reserved: anything
    put(out, m_count, 4);
    out.insert(out.end(), m_body.begin(), m_body.end());
    return out;
  }

 private:
  static void put(std::vector<unsigned char>& out, std::int64_t value, int byteCount) {
    for (int i = 0; i < byteCount; ++i) {
      out.push_back(static_cast<unsigned char>(static_cast<std::uint64_t>(value) >> (8 * i)));
    }
  }

  std::string m_magic = "ERBL";
  std::uint32_t m_version = 1;
  std::int32_t m_count = 0;
  bool m_countStated = false;
  std::vector<unsigned char> m_body;
};

}  // namespace ei4::test
