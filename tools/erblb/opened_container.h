#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "blob/blob_format.h"
#include "container/FileBlob.h"
#include "erblb/command_line.h"
#include "erblb/entry_name.h"

namespace ei4::erblb {

/// A container that parses. Throws JobError.
class OpenedContainer : public FileBlob {
 public:
  explicit OpenedContainer(const std::string& path) : FileBlob(path) {
    if (!parseBlob()) throw JobError(shown(path) + ": cannot be read as a blob container");
  }
};

/// True for what an appended deletion leaves behind: an empty entry whose stored name starts with "ERDELETE".
inline bool isDeletionMark(const BlobEntry& entry) {
  const std::string& stored = entry.prefix.empty() ? entry.name : entry.prefix;
  return entry.size == 0 && stored.starts_with(FileBlob::DELPREFIX);
}

/// True when entries together hold so much more than a container of this size that somebody must have meant harm:
/// entries may share bytes, so that a small container can claim any number of them. Both in bytes.
inline bool claimsTooMuch(std::int64_t together, std::int64_t containerSize) {
  constexpr std::int64_t kAlwaysTaken = std::int64_t{1} << 26;
  constexpr std::int64_t kTimesItsSize = 16;
  return together > std::max(kAlwaysTaken, kTimesItsSize * containerSize);
}

}  // namespace ei4::erblb
