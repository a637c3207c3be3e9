// A second reader of blob containers, straight from their description, over bytes in memory. It shares nothing with
// src/container.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace ei4::fuzz {

struct LiteralEntry {
  std::string prefix;
  std::int64_t offset = 0;  ///< from the data base
  std::int64_t size = 0;
};

struct LiteralContainer {
  std::map<std::string, LiteralEntry> entries;
  std::int64_t dataBase = 0;
};

class LiteralContainerReader {
 public:
  explicit LiteralContainerReader(std::span<const std::uint8_t> file) : m_file(file) {}

  /// Nothing for a file that must be refused.
  std::optional<LiteralContainer> read() {
    if (number(0, 4) != 0x4C425245 || number(4, 4) != 1 || number(124, 4) < 0) return std::nullopt;
    const auto count = static_cast<std::int32_t>(*m_last);
    std::int64_t at = 128;
    Wide largestEnd = 0;
    for (std::int32_t i = 0; i < count; ++i) {
      const auto name = readName(at, 255);
      if (!name || number(at, 4) < 0 || number(at + 4, 8) < 0) return std::nullopt;
      const auto size = static_cast<std::int32_t>(number(at, 4));
      const auto offset = static_cast<std::int64_t>(number(at + 4, 8));
      if (size < 0 || offset < 0) return std::nullopt;
      at += 12;
      largestEnd = std::max(largestEnd, Wide{offset} + size);
      put(*name, offset, size);
    }
    m_result.dataBase = at;
    if (at + largestEnd < fileSize()) readChunks(at + static_cast<std::int64_t>(largestEnd));
    for (const auto& [name, entry] : m_result.entries) {
      if (Wide{m_result.dataBase} + entry.offset + entry.size > fileSize()) return std::nullopt;
    }
    return m_result;
  }

 private:
  using Wide = __int128;

  std::int64_t fileSize() const { return static_cast<std::int64_t>(m_file.size()); }

  /// An unsigned number; -1 where the file ends. What was read stays in m_last.
  Wide number(std::int64_t at, int bytes) {
    m_last.reset();
    if (at + bytes > fileSize()) return -1;
    std::uint64_t value = 0;
    for (int i = 0; i < bytes; ++i)
      value |= std::uint64_t{m_file[static_cast<std::size_t>(at + i)]} << (8 * i);
    m_last = value;
    return static_cast<Wide>(value);
  }

  /// A length and a name, up to its first zero byte; moves behind it.
  std::optional<std::string> readName(std::int64_t& at, int longest) {
    const auto length = static_cast<std::int64_t>(number(at, 2));
    if (length < 0 || length > longest || at + 2 + length > fileSize()) return std::nullopt;
    std::string name(m_file.begin() + at + 2, m_file.begin() + at + 2 + length);
    at += 2 + length;
    return name.substr(0, name.find('\0'));
  }

  void readChunks(std::int64_t at) {
    for (;;) {
      const auto name = readName(at, 263);
      if (!name) return;
      if (name->starts_with("ERDELETE")) m_result.entries.erase(name->substr(8));
      if (number(at, 4) < 0) return;
      const auto size = static_cast<std::int32_t>(*m_last);
      at += 4;
      if (size < 0 || at + size > fileSize()) return;
      put(*name, at - m_result.dataBase, size);
      at += size;
    }
  }

  void put(const std::string& stored, std::int64_t offset, std::int64_t size) {
    const std::size_t hash = stored.find('#');
    const bool hasPrefix = hash != std::string::npos;
    m_result.entries[hasPrefix ? stored.substr(hash + 1) : stored] = {hasPrefix ? stored.substr(0, hash) : "",
                                                                      offset, size};
  }

  std::span<const std::uint8_t> m_file;
  std::optional<std::uint64_t> m_last;
  LiteralContainer m_result;
};

}  // namespace ei4::fuzz
