#include "container/FileBlob.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <limits>
#include <utility>

#include "container/blob_record_reader.h"

namespace {

constexpr std::uint32_t kMagic = 0x4C425245;  // "ERBL"
constexpr std::uint32_t kVersion = 1;
constexpr std::int64_t kReserved = 116;           // bytes behind the version
constexpr std::uint16_t kLongestTableName = 255;  // bytes
constexpr std::uint16_t kLongestChunkName = 263;  // bytes: the deletion prefix and the longest name
static_assert(kLongestChunkName == BlobRecordReader::kLongestName);

void complain(const char* message) { std::fputs(message, stderr); }

// a + b for values that are not negative. A sum beyond 64 bits stays the largest value: no file reaches there
// either.
std::int64_t saturatingSum(std::int64_t a, std::int64_t b) {
  std::int64_t sum = 0;
  return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<std::int64_t>::max() : sum;
}

}  // namespace

const std::string FileBlob::DELPREFIX = "ERDELETE";

FileBlob::FileBlob(std::string containerPath) : m_path(std::move(containerPath)) {}

FileBlob::~FileBlob() = default;

bool FileBlob::parseBlob() {
  closeBlobFileChannel();
  clearEntries();
  m_modified = false;
  m_dataEnd = m_dataBase = 0;
  if (parse()) return true;
  closeBlobFileChannel();
  return false;
}

bool FileBlob::open() {
  if (!m_file) m_file = openRegularFile(m_path.c_str(), "rb");
  return m_file != nullptr;
}

bool FileBlob::parse() {
  m_fileSize = getFileSize();
  if (m_fileSize < 0) return false;

  BlobRecordReader records(m_file.get());
  if (records.readU32() != kMagic || records.readU32() != kVersion || !records.skip(kReserved)) return false;
  const auto entryCount = records.readI32();
  if (!entryCount) return false;

  std::int64_t largestEnd = 0;
  for (std::int32_t i = 0; i < *entryCount; ++i) {
    if (!readTableEntry(records, largestEnd)) return false;
  }
  m_dataBase = records.position();
  m_dataEnd = saturatingSum(m_dataBase, largestEnd);

  if (m_dataEnd < m_fileSize) {
    m_modified = true;
    if (records.skip(m_dataEnd - m_dataBase)) {
      while (readChunk(records) == Scan::goesOn) {
      }
    }
  }
  return validatePayloadSizes();
}

bool FileBlob::readTableEntry(BlobRecordReader& records, std::int64_t& largestEnd) {
  const auto nameLength = records.readU16();
  if (!nameLength) return false;
  if (*nameLength > kLongestTableName) {
    complain("nameLength out of bounds\n");
    return false;
  }
  const auto name = records.readName(*nameLength);
  if (!name) return false;
  const auto size = records.readI32();
  const auto offset = records.readI64();
  if (!size || !offset) return false;
  if (*size < 0 || *offset < 0) {
    complain("negative value in size or offset\n");
    return false;
  }
  // Quirk superseded-entry-counts: the data end heeds each entry, whether or not a later one takes its name.
  largestEnd = std::max(largestEnd, saturatingSum(*offset, *size));
  putAndNote(std::make_unique<BlobEntry>(*name, *nameLength, *offset, *size));
  return true;
}

FileBlob::Scan FileBlob::readChunk(BlobRecordReader& records) {
  const auto nameLength = records.readU16();
  if (!nameLength) return Scan::ends;
  if (*nameLength > kLongestChunkName) {
    complain("nameLength out of bounds\n");
    return Scan::ends;
  }
  const auto name = records.readName(*nameLength);
  if (!name) return Scan::ends;
  if (name->starts_with(DELPREFIX)) {
    // Quirk deletion-before-check: also when this chunk proves bad.
    delBlobEntry(name->substr(DELPREFIX.size()));
    m_modified = true;
  }
  const auto size = records.readI32();
  if (!size) return Scan::ends;
  if (*size < 0) {
    complain("negative value in size\n");
    return Scan::ends;
  }
  if (records.position() + *size > m_fileSize) {
    complain("chunk size out of bounds\n");
    return Scan::ends;
  }
  // Quirk deletion-chunk-stays: a deletion too is an entry, its name split at '#' as any other.
  putAndNote(std::make_unique<BlobEntry>(*name, *nameLength, records.position() - m_dataBase, *size));
  return records.skip(*size) ? Scan::goesOn : Scan::ends;
}

void FileBlob::putAndNote(std::unique_ptr<BlobEntry> entry) {
  if (putBlobEntry(std::move(entry)) == 1) m_modified = true;
}

const BlobEntry* FileBlob::findBlobEntry(const std::string& name) {
  if (!m_file && !parseBlob()) return nullptr;  // Quirk open-counts-as-parsed
  const auto found = m_entries.find(name);
  return found == m_entries.end() ? nullptr : found->second.get();
}

int FileBlob::getEntrySize(const BlobEntry* entry) { return entry == nullptr ? -1 : entry->size; }

int FileBlob::readEntryIntoBuffer(const BlobEntry* entry, int position, unsigned char* buffer,
                                  int bufferOffset, int count) {
  if (entry == nullptr || !m_file || position < 0 || entry->offset < 0) return -1;
  const std::int64_t wanted = std::min<std::int64_t>(count, std::int64_t{entry->size} - position);
  if (wanted < 1) return 0;
  if (buffer == nullptr || bufferOffset < 0) return -1;
  const std::int64_t start = saturatingSum(m_dataBase + position, entry->offset);
  if (fseeko(m_file.get(), static_cast<off_t>(start), SEEK_SET) != 0) return -1;
  return static_cast<int>(
      std::fread(buffer + bufferOffset, 1, static_cast<std::size_t>(wanted), m_file.get()));
}

int FileBlob::putBlobEntry(std::unique_ptr<BlobEntry> entry) {
  if (!entry) return 0;
  std::unique_ptr<BlobEntry>& place = m_entries[entry->name];
  const int replaced = place ? 1 : 0;
  place = std::move(entry);
  return replaced;
}

int FileBlob::delBlobEntry(const std::string& name) {
  const auto node = m_entries.extract(name);
  return !node.empty() && node.mapped() ? 1 : 0;
}

bool FileBlob::validatePayloadSizes() const {
  return std::all_of(m_entries.begin(), m_entries.end(), [this](const auto& named) {
    const BlobEntry* entry = named.second.get();
    return entry == nullptr ||
           saturatingSum(saturatingSum(m_dataBase, entry->offset), entry->size) <= m_fileSize;
  });
}

long FileBlob::getFileSize() { return open() ? static_cast<long>(measureFile(m_file.get())) : -1; }

void FileBlob::closeBlobFileChannel() { m_file.reset(); }

void FileBlob::clearEntries() {
  for (auto& named : m_entries) named.second.reset();  // Quirk cleared-nodes-stay
}

void FileBlob::printEntries() const {
  for (const auto& [name, entry] : m_entries) {
    if (!entry) continue;
    std::printf("%s#%s 0x%" PRIx32 " @ 0x%" PRIx64 "\n", entry->prefix.c_str(), name.c_str(),
                static_cast<std::uint32_t>(entry->size),
                static_cast<std::uint64_t>(saturatingSum(m_dataBase, entry->offset)));
  }
}

void FileBlob::extractAll() {
  for (const auto& [name, entry] : m_entries) {
    if (entry) extract(*entry);
  }
}

void FileBlob::extract(const BlobEntry& entry) {
  if (!m_file) return;
  const File out(std::fopen(entry.name.c_str(), "wb"));
  if (!out) return;
  std::array<unsigned char, 65536> block;
  int done = 0;
  while (done < entry.size) {
    const int read = readEntryIntoBuffer(&entry, done, block.data(), 0, static_cast<int>(block.size()));
    if (read < 1) break;
    const std::size_t written = std::fwrite(block.data(), 1, static_cast<std::size_t>(read), out.get());
    done += static_cast<int>(written);
    if (written != static_cast<std::size_t>(read)) break;
  }
  std::printf("%d bytes extracted as %s\n", done, entry.name.c_str());
}
