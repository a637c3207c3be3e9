#pragma once

#include <cstdint>
#include <string>

/// One entry of a blob container: where its bytes are and under which name.
struct BlobEntry {
  /// Splits `storedName` at its first '#' into prefix and name.
  BlobEntry(const std::string& storedName, std::int32_t storedNameLength, std::int64_t payloadOffset,
            std::int32_t payloadSize);

  std::string name;     ///< behind the first '#' of the stored name, or all of it; the key in the container
  std::string prefix;   ///< in front of the first '#' of the stored name; empty without one
  std::int64_t offset;  ///< where the payload starts, in bytes from the container's data base
  std::int32_t size;    ///< bytes of payload

  /// The stored length of the stored name, which counts what follows a zero byte in it.
  std::int32_t nameLength;
};
