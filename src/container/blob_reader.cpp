#include "container/blob_reader.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

namespace {

constexpr std::string_view kExtension = "ei4";
constexpr std::string_view kFullPart = "f.ei4";     // behind the stem "img."
constexpr std::string_view kInitialPart = "t.ei4";  // behind the stem "img."

}  // namespace

BlobReader::BlobReader(const char* path) {
  if (path == nullptr) return;
  const std::string_view whole(path);
  const std::size_t slash = whole.rfind('/');
  if (slash == std::string_view::npos) return;
  locate(std::string(whole.substr(0, slash + 1)), std::string(whole.substr(slash + 1)));
  if (fullEntry == nullptr) return;
  const std::int64_t both = std::int64_t{length} + fullEntry->size;
  length = both <= std::numeric_limits<int>::max() ? static_cast<int>(both) : -1;
}

BlobReader::~BlobReader() = default;

// Finds the entries and sets the length of what comes in front of the full entry.
void BlobReader::locate(const std::string& folder, const std::string& name) {
  fullBlob = std::make_unique<FileBlob>(folder + "full.erblb");
  if (!fullBlob->parseBlob()) return;
  length = 0;
  fullEntry = fullBlob->findBlobEntry(name);
  if (fullEntry != nullptr || !name.ends_with(kExtension)) return;

  const std::string stem = name.substr(0, name.size() - kExtension.size());
  fullEntry = fullBlob->findBlobEntry(stem + std::string(kFullPart));
  if (fullEntry == nullptr) return;

  initialBlob = std::make_unique<FileBlob>(folder + "initial.erblb");
  if (!initialBlob->parseBlob()) return;
  initialEntry = initialBlob->findBlobEntry(stem + std::string(kInitialPart));
  if (initialEntry == nullptr) return;
  length = initialLength = initialEntry->size;
  twoPart = initialLength > 0;
}

int BlobReader::readBytes(unsigned char* buffer, int bufferOffset, int count) {
  if (!fullBlob || fullEntry == nullptr) return -1;
  if (buffer == nullptr || bufferOffset < 0) return -1;
  if (twoPart) return readTwoParts(buffer, bufferOffset, count);
  const int read = fullBlob->readEntryIntoBuffer(fullEntry, position, buffer, bufferOffset, count);
  if (read > 0) advance(read);
  return read;
}

int BlobReader::readTwoParts(unsigned char* buffer, int bufferOffset, int count) {
  int result = -1;  // Quirk full-part-one-less: stays in the sum when nothing comes from the initial part
  if (position < initialLength) {
    const int wanted = std::min(count, initialLength - position);
    result = initialBlob->readEntryIntoBuffer(initialEntry, position, buffer, bufferOffset, count);
    if (result > 0) advance(result);
    if (result < std::max(wanted, 0))
      return result;  // the file was cut after parsing: the full part cannot follow
    bufferOffset += result;
    count -= result;
  }
  if (count < 1) return result;
  const int read =
      fullBlob->readEntryIntoBuffer(fullEntry, position - initialLength, buffer, bufferOffset, count);
  if (read < 0) return result;
  result += read;
  advance(result);  // Quirk crossing-counts-twice: the initial bytes again
  return result;
}

// The position stays an int from 0 on, also where the uneven sums would lead outside.
void BlobReader::advance(int bytes) {
  const std::int64_t next = std::int64_t{position} + bytes;
  position = static_cast<int>(std::clamp<std::int64_t>(next, 0, std::numeric_limits<int>::max()));
}

int BlobReader::skipBytes(int count) {
  const std::int64_t next = std::int64_t{position} + count;
  if (!fullBlob || fullEntry == nullptr || next < 0 || next > length) return -1;
  position = static_cast<int>(next);
  return count;
}
