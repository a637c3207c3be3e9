#include "blob/blob_writer.h"

#include <fstream>
#include <stdexcept>

namespace ei4::tools {

namespace {

// Bytes of a record in front of its payload, at most.
constexpr std::size_t kLongestHead = 32 + kLongestBlobName;

void append(Bytes& out, std::span<const unsigned char> more) {
  out.insert(out.end(), more.begin(), more.end());
}

}  // namespace

void BlobWriter::makeRoom(std::string_view storedName, std::size_t payload) {
  if (const char* fault = blobNameFault(storedName))
    throw std::invalid_argument(std::string("the name ") + fault);
  const std::size_t left = static_cast<std::size_t>(kLargestContainer) - m_size;
  if (left < kLongestHead || payload > left - kLongestHead) {
    throw std::invalid_argument("the container gets too large");
  }
  m_size += kLongestHead + payload;
}

BlobWriter& BlobWriter::entry(std::string_view storedName, std::span<const unsigned char> payload) {
  makeRoom(storedName, payload.size());
  m_table.push_back({std::string(storedName), static_cast<std::int32_t>(payload.size()),
                     static_cast<std::int64_t>(m_payloads.size())});
  append(m_payloads, payload);
  return *this;
}

BlobWriter& BlobWriter::chunk(std::string_view storedName, std::span<const unsigned char> payload) {
  makeRoom(storedName, payload.size());
  append(m_chunks, encodeChunkHead(storedName, static_cast<std::int32_t>(payload.size())));
  append(m_chunks, payload);
  return *this;
}

BlobWriter& BlobWriter::deletion(std::string_view name) {
  makeRoom(name, 0);
  append(m_chunks, encodeDeletion(name));
  return *this;
}

Bytes BlobWriter::bytes() const {
  Bytes out = encodeTable(m_table);
  append(out, m_payloads);
  append(out, m_chunks);
  return out;
}

bool BlobWriter::writeTo(const std::string& path) const {
  const Bytes all = bytes();
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(all.data()), static_cast<std::streamsize>(all.size()));
  out.close();
  return !out.fail();
}

}  // namespace ei4::tools
