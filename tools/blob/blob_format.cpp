#include "blob/blob_format.h"

namespace ei4::tools {

namespace {

constexpr std::size_t kReserved = 116;  // bytes behind the version

void putLittleEndian(Bytes& out, std::uint64_t value, int byteCount) {
  for (int i = 0; i < byteCount; ++i) out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

void putName(Bytes& out, std::string_view name) {
  putLittleEndian(out, name.size(), 2);
  out.insert(out.end(), name.begin(), name.end());
}

void putSize(Bytes& out, std::int32_t size) { putLittleEndian(out, static_cast<std::uint32_t>(size), 4); }

}  // namespace

const char* blobNameFault(std::string_view storedName) {
  const std::size_t hash = storedName.find('#');
  if (storedName.empty() || hash + 1 == storedName.size()) return "is empty";
  if (storedName.size() > kLongestBlobName) return "is longer than 255 bytes";
  if (storedName.find('\0') != std::string_view::npos) return "holds a zero byte";
  if (storedName.starts_with(kDeletionPrefix)) return "starts with ERDELETE, which marks deletions";
  return nullptr;
}

Bytes encodeTable(std::span<const TableEntry> entries) {
  Bytes out = {'E', 'R', 'B', 'L'};
  putLittleEndian(out, 1, 4);
  out.insert(out.end(), kReserved, 0);
  putLittleEndian(out, entries.size(), 4);
  for (const TableEntry& entry : entries) {
    putName(out, entry.storedName);
    putSize(out, entry.size);
    putLittleEndian(out, static_cast<std::uint64_t>(entry.offset), 8);
  }
  return out;
}

Bytes encodeChunkHead(std::string_view storedName, std::int32_t size) {
  Bytes out;
  putName(out, storedName);
  putSize(out, size);
  return out;
}

Bytes encodeDeletion(std::string_view name) {
  return encodeChunkHead(std::string(kDeletionPrefix).append(name), 0);
}

}  // namespace ei4::tools
