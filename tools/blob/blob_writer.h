#pragma once

#include <span>
#include <string>
#include <string_view>

#include "blob/blob_format.h"

namespace ei4::tools {

/// Puts a container together in memory: table entries first, then chunks and deletions. Each call that gets a
/// name that cannot be stored, or makes the container larger than kLargestContainer, throws
/// std::invalid_argument.
///   BlobWriter().entry("a.ei4", image).chunk("b.ei4", other).deletion("a.ei4").writeTo("full.erblb");
class BlobWriter {
 public:
  /// An entry of the table; its payload follows those of the entries before it.
  BlobWriter& entry(std::string_view storedName, std::span<const unsigned char> payload);

  /// An appended entry; supersedes an earlier one of that name.
  BlobWriter& chunk(std::string_view storedName, std::span<const unsigned char> payload);

  /// Removes the entry called `name` (without a prefix).
  BlobWriter& deletion(std::string_view name);

  /// The whole container.
  Bytes bytes() const;

  /// Writes bytes() to a file, replacing it. False when that fails.
  bool writeTo(const std::string& path) const;

 private:
  void makeRoom(std::string_view storedName, std::size_t payload);

  std::size_t m_size = 1024;  // of bytes(), at most: grows by more than each record takes
  std::vector<TableEntry> m_table;
  Bytes m_payloads;
  Bytes m_chunks;
};

}  // namespace ei4::tools
