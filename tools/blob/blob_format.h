// The records of a blob container as bytes. src/container/FileBlob.h shows how they lie in a file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::tools {

using Bytes = std::vector<unsigned char>;

inline constexpr std::size_t kLongestBlobName = 255;           ///< bytes of a stored name
inline constexpr std::int64_t kLargestContainer = 0x7FFFFFFF;  ///< bytes of a whole file
inline constexpr std::string_view kDeletionPrefix = "ERDELETE";

/// One entry of the table in front of the data.
struct TableEntry {
  std::string storedName;
  std::int32_t size = 0;    ///< bytes of payload
  std::int64_t offset = 0;  ///< from the data base, the first byte behind the table
};

/// Why `storedName` cannot be stored, for a message ("is empty"); null when it can. Refused are empty names
/// and names empty behind their '#', more than kLongestBlobName bytes, zero bytes, and the deletion prefix in
/// front.
const char* blobNameFault(std::string_view storedName);

/// Header and table. The payloads follow, each at its offset.
Bytes encodeTable(std::span<const TableEntry> entries);

/// What stands in front of a chunk's payload.
Bytes encodeChunkHead(std::string_view storedName, std::int32_t size);

/// A chunk that removes the entry called `name` (the part behind the '#').
Bytes encodeDeletion(std::string_view name);

}  // namespace ei4::tools
