// What a byte source answers, straight from its description, over files in memory. It shares nothing with
// src/container.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "literal_container.h"

namespace ei4::fuzz {

class LiteralSource {
 public:
  using Bytes = std::span<const std::uint8_t>;

  struct Read {
    long answer;
    std::vector<std::uint8_t> bytes;  ///< delivered, perhaps more or fewer than the answer says
  };

  static LiteralSource ofFile(Bytes file) {
    LiteralSource source;
    source.m_length = static_cast<long>(file.size());
    source.m_full = file;
    return source;
  }

  /// The image "img.ei4". initial: nothing when there is no such file.
  static LiteralSource ofContainers(Bytes full, std::optional<Bytes> initial) {
    LiteralSource source;
    source.m_isBlob = true;
    const auto fullParts = LiteralContainerReader(full).read();
    if (!fullParts) return source;
    source.m_length = 0;
    if ((source.m_full = payload(full, *fullParts, "img.ei4"))) {
      source.m_length = static_cast<long>(source.m_full->size());
      return source;
    }
    source.m_full = payload(full, *fullParts, "img.f.ei4");
    if (!source.m_full) return source;
    if (const auto initialParts = initial ? LiteralContainerReader(*initial).read() : std::nullopt) {
      source.m_initial = payload(*initial, *initialParts, "img.t.ei4").value_or(Bytes());
    }
    source.m_length = static_cast<long>(source.m_initial.size() + source.m_full->size());
    return source;
  }

  long length() const { return m_length; }

  Read read(long count) {
    Read read{-1, {}};
    if (!m_full) return read;
    const auto initialLength = static_cast<long>(m_initial.size());
    if (initialLength == 0) {
      read.answer = take(*m_full, m_position, count, read.bytes);
      m_position += read.answer;
      return read;
    }
    if (m_position < initialLength) {
      read.answer = take(m_initial, m_position, count, read.bytes);
      m_position += read.answer;
      count -= read.answer;
    }
    if (count < 1) return read;
    read.answer += take(*m_full, m_position - initialLength, count, read.bytes);
    m_position += read.answer;
    return read;
  }

  long skip(long count) {
    if (!m_full) return -1;
    if (!m_isBlob) {
      m_position += count;
      return 0;
    }
    if (m_position + count > m_length) return -1;
    m_position += count;
    return count;
  }

 private:
  static std::optional<Bytes> payload(Bytes file, const LiteralContainer& container, const char* name) {
    const auto entry = container.entries.find(name);
    if (entry == container.entries.end()) return std::nullopt;
    return file.subspan(static_cast<std::size_t>(container.dataBase + entry->second.offset),
                        static_cast<std::size_t>(entry->second.size));
  }

  static long take(Bytes from, long position, long count, std::vector<std::uint8_t>& to) {
    const long there = std::min(count, static_cast<long>(from.size()) - position);
    if (there < 1) return 0;
    to.insert(to.end(), from.begin() + position, from.begin() + position + there);
    return there;
  }

  bool m_isBlob = false;
  long m_length = -1;
  long m_position = 0;
  Bytes m_initial;  // empty: one part
  std::optional<Bytes> m_full;
};

}  // namespace ei4::fuzz
