#include "container/blob_entry.h"

BlobEntry::BlobEntry(const std::string& storedName, std::int32_t storedNameLength, std::int64_t payloadOffset,
                     std::int32_t payloadSize)
    : offset(payloadOffset), size(payloadSize), nameLength(storedNameLength) {
  const std::size_t hash = storedName.find('#');
  if (hash == std::string::npos) {
    name = storedName;
  } else {
    prefix = storedName.substr(0, hash);
    name = storedName.substr(hash + 1);
  }
}
