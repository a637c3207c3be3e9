#include "erblb/container_check.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "blob/blob_format.h"
#include "container/blob_record_reader.h"
#include "erblb/command_line.h"
#include "erblb/entry_name.h"
#include "erblb/interrupt.h"

namespace ei4::erblb {

namespace {

constexpr std::uint32_t kMagic = 0x4C425245;  // "ERBL"
constexpr std::uint32_t kVersion = 1;
constexpr std::int64_t kReserved = 116;  // bytes behind the version

// a + b for values that are not negative; at most the largest value.
std::int64_t saturatingSum(std::int64_t a, std::int64_t b) {
  std::int64_t sum = 0;
  return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<std::int64_t>::max() : sum;
}

std::int64_t endOf(const StoredEntry& entry) { return saturatingSum(entry.start, entry.size); }

std::string bytesText(std::int64_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

bool hasOddBytes(const std::string& name) {
  const auto backslashes = std::count(name.begin(), name.end(), '\\');
  return shown(name).size() != name.size() + 3 * static_cast<std::size_t>(backslashes);
}

}  // namespace

/// One pass over the records.
class ContainerCheck::Walk {
 public:
  Walk(ContainerCheck& check, const Tell& tell, tools::Progress& progress)
      : m_check(check), m_tell(tell), m_progress(progress), m_records(check.m_file.get()) {}

  void all() {
    if (m_check.m_fileSize < 0) {
      tell(Weight::refused, 0, "", "is larger than 2 GiB");
    } else if (readHead() && readTable()) {
      readChunks();
      checkEnds();
      checkData();
    }
    m_progress.advance(0, std::max(m_check.m_fileSize - m_shown, std::int64_t{0}));
  }

 private:
  void tell(Weight weight, std::int64_t offset, const std::string& name, const std::string& what) {
    if (weight == Weight::refused) m_check.m_refused = true;
    m_tell({weight, offset, name, what});
  }

  bool refuse(std::int64_t offset, const std::string& name, const std::string& what) {
    tell(Weight::refused, offset, name, what);
    return false;
  }

  // What is behind a fault of a chunk is out of reach, but the converter takes what comes before.
  bool endChunks(std::int64_t offset, const std::string& name, const std::string& what) {
    tell(Weight::fault, offset, name,
         what + "; the last " + bytesText(m_check.m_fileSize - offset) + " of the file are out of reach");
    return false;
  }

  void showProgress() {
    throwIfInterrupted();
    const std::int64_t position = std::min(m_records.position(), m_check.m_fileSize);
    m_progress.advance(0, position - m_shown);
    m_shown = position;
  }

  bool readHead() {
    const auto magic = m_records.readU32();
    if (magic != kMagic) return refuse(0, "", "does not begin with ERBL");
    const auto version = m_records.readU32();
    if (version && version != kVersion)
      return refuse(4, "", "has the version " + std::to_string(*version) + ", not 1");
    if (version && m_records.skip(kReserved)) m_entryCount = m_records.readI32();
    if (!m_entryCount) return refuse(m_check.m_fileSize, "", "ends within its header");
    if (*m_entryCount < 0) {
      tell(Weight::note, 8 + kReserved, "",
           "states " + std::to_string(*m_entryCount) + " entries, which counts as none");
    }
    return true;
  }

  bool readTable() {
    for (std::int32_t i = 0; i < *m_entryCount; ++i) {
      const std::int64_t record = m_records.position();
      const auto cut = [&] {
        return refuse(
            record, "",
            "ends after " + std::to_string(i) + " of " + std::to_string(*m_entryCount) + " entries");
      };
      const auto nameLength = m_records.readU16();
      if (!nameLength) return cut();
      if (*nameLength > tools::kLongestBlobName)
        return refuse(record, "", "states a name of " + bytesText(*nameLength) + "; 255 are the most");
      const auto stored = m_records.readName(*nameLength);
      if (!stored) return cut();
      const auto size = m_records.readI32();
      const auto offset = m_records.readI64();
      if (!size || !offset) return cut();
      if (*size < 0 || *offset < 0) {
        return refuse(
            record, *stored,
            "states a size of " + std::to_string(*size) + " and an offset of " + std::to_string(*offset));
      }
      judgeName(record, *stored, *nameLength);
      if (stored->starts_with(tools::kDeletionPrefix))
        tell(Weight::note, record, *stored,
             "is called like a deletion, but deletes nothing: it stands in the table");
      if (const auto earlier = put(record, *stored, *offset, *size)) {
        tell(Weight::fault, record, *stored,
             "supersedes the entry at byte " + std::to_string(earlier->record));
      }
      m_table.emplace_back(*stored, StoredEntry{.record = record, .start = *offset, .size = *size});
      showProgress();
    }
    m_dataBase = m_records.position();
    for (auto& [name, entry] : m_check.m_live) entry.start = saturatingSum(entry.start, m_dataBase);
    m_dataEnd = m_dataBase;
    for (auto& [name, entry] : m_table) {
      entry.start = saturatingSum(entry.start, m_dataBase);
      m_dataEnd = std::max(m_dataEnd, endOf(entry));
    }
    return true;
  }

  void judgeName(std::int64_t record, const std::string& stored, std::size_t storedLength) {
    const std::string name = stored.substr(stored.find('#') + 1);
    if (name.empty()) tell(Weight::note, record, stored, "has no name");
    if (stored.size() < storedLength)
      tell(Weight::note, record, stored, "has a name that ends at a zero byte");
    if (hasOddBytes(stored))
      tell(Weight::note, record, stored, "has control characters in its name, or bytes that are no UTF-8");
  }

  // What it takes the place of.
  std::optional<StoredEntry> put(std::int64_t record, const std::string& stored, std::int64_t start,
                                 std::int32_t size) {
    const StoredEntry entry = {.isMark = size == 0 && stored.starts_with(tools::kDeletionPrefix),
                               .record = record,
                               .start = start,
                               .size = size};
    const auto [place, isNew] = m_check.m_live.try_emplace(stored.substr(stored.find('#') + 1), entry);
    if (isNew) return std::nullopt;
    return std::exchange(place->second, entry);
  }

  void readChunks() {
    if (m_dataEnd >= m_check.m_fileSize || !m_records.skip(m_dataEnd - m_dataBase)) return;
    while (m_records.position() < m_check.m_fileSize && readChunk()) showProgress();
  }

  bool readChunk() {
    const std::int64_t record = m_records.position();
    const auto nameLength = m_records.readU16();
    if (!nameLength) return endChunks(record, "", "ends within a chunk");
    if (*nameLength > BlobRecordReader::kLongestName)
      return endChunks(record, "",
                       "has a chunk with a name of " + bytesText(*nameLength) + "; 263 are the most");
    const auto stored = m_records.readName(*nameLength);
    if (!stored) return endChunks(record, "", "ends within a chunk's name");
    const bool deletes = stored->starts_with(tools::kDeletionPrefix);
    if (deletes) remove(record, stored->substr(tools::kDeletionPrefix.size()), *stored);
    const auto size = m_records.readI32();
    if (!size) return endChunks(record, *stored, "ends within a chunk");
    if (*size < 0) return endChunks(record, *stored, "states a size of " + std::to_string(*size));
    const std::int64_t left = m_check.m_fileSize - m_records.position();
    if (*size > left)
      return endChunks(record, *stored,
                       "states " + bytesText(*size) + ", of which " + std::to_string(left) + " are there");

    judgeName(record, *stored, *nameLength);
    if (deletes && *size > 0)
      tell(Weight::note, record, *stored, "is a deletion with " + bytesText(*size) + " of its own");
    if (!deletes && *nameLength > tools::kLongestBlobName)
      tell(Weight::note, record, *stored, "has a name that is too long to be deleted");
    if (put(record, *stored, m_records.position(), *size) && !deletes) ++m_check.m_superseded;
    return m_records.skip(*size);
  }

  // Quirk deletion-before-check: also when the chunk then proves bad.
  void remove(std::int64_t record, const std::string& name, const std::string& stored) {
    if (m_check.m_live.erase(name) != 0) {
      ++m_check.m_deleted;
    } else {
      tell(Weight::note, record, stored, "deletes what is not there");
    }
  }

  // Each entry that can be found has to end within the file.
  void checkEnds() {
    for (const auto& [stored, entry] : m_table) {
      if (endOf(entry) <= m_check.m_fileSize) continue;
      const auto live = m_check.m_live.find(stored.substr(stored.find('#') + 1));
      const bool isLive = live != m_check.m_live.end() && live->second.record == entry.record;
      const std::string what = "reaches past the end of the file";
      if (isLive) {
        tell(Weight::refused, entry.record, stored, what);
      } else {
        tell(Weight::fault, entry.record, stored,
             what + "; it is superseded, but chunks would begin behind it");
      }
    }
  }

  // The payloads of the table's entries, in the order in which they lie.
  void checkData() {
    std::sort(m_table.begin(), m_table.end(), [](const auto& a, const auto& b) {
      return std::pair(a.second.start, a.second.record) < std::pair(b.second.start, b.second.record);
    });
    std::int64_t covered = m_dataBase;
    std::int64_t furthest = 0;  // the record of what reaches there
    std::int64_t unused = 0;
    std::int64_t firstUnused = 0;
    for (const auto& [stored, entry] : m_table) {
      if (entry.size == 0) continue;
      if (entry.start < covered) {
        tell(Weight::fault, entry.record, stored, "overlaps the entry at byte " + std::to_string(furthest));
      } else if (entry.start > covered && entry.start <= m_check.m_fileSize) {
        if (unused == 0) firstUnused = covered;
        unused += entry.start - covered;
      }
      if (endOf(entry) > covered) {
        covered = endOf(entry);
        furthest = entry.record;
      }
    }
    if (unused > 0)
      tell(Weight::note, firstUnused, "",
           "has " + bytesText(unused) + " between its entries that belong to none");
  }

  ContainerCheck& m_check;
  const Tell& m_tell;
  tools::Progress& m_progress;
  BlobRecordReader m_records;
  std::int64_t m_shown = 0;
  std::optional<std::int32_t> m_entryCount;
  std::int64_t m_dataBase = 0;
  std::int64_t m_dataEnd = 0;
  std::vector<std::pair<std::string, StoredEntry>> m_table;  // by their stored names
};

ContainerCheck::ContainerCheck(const std::string& path) : m_file(openRegularFile(path.c_str(), "rb")) {
  if (!m_file) {
    const std::string why = errno == EINVAL ? "is no regular file" : std::generic_category().message(errno);
    throw JobError(shown(path) + ": " + why);
  }
  m_fileSize = measureFile(m_file.get());
}

void ContainerCheck::run(const Tell& tell, tools::Progress& progress) { Walk(*this, tell, progress).all(); }

}  // namespace ei4::erblb
