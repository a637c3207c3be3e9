// A blob container (`.erblb`): many named entries in one file.
//
// All integers are little-endian, sizes and offsets signed.
//   header  "ERBL", u32 version 1, 116 reserved bytes, i32 number of table entries
//   table   per entry: u16 nameLength (at most 255), name, i32 size, i64 offset from the data base
//   data    the data base is the first byte behind the table; the data end is behind the entry that reaches
//           furthest
//   chunks  from the data end to the end of the file, each:
//           u16 nameLength (at most 263), name, i32 size, payload
// A later entry supersedes an earlier one of the same name. A chunk named "ERDELETE" + name removes that
// name.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "container/blob_entry.h"
#include "container/file.h"

class BlobRecordReader;

/// Reads one container. Closed and empty until `parseBlob`; owns its entries and its file. Not copyable.
class FileBlob {
 public:
  /// Entries by name in ascending byte order. A null entry is one that `clearEntries` destroyed.
  using Entries = std::map<std::string, std::unique_ptr<BlobEntry>>;

  static const std::string DELPREFIX;  ///< "ERDELETE"

  /// Stores the path; opens nothing.
  explicit FileBlob(std::string containerPath);
  FileBlob(const FileBlob&) = delete;
  FileBlob& operator=(const FileBlob&) = delete;
  virtual ~FileBlob();

  /// Reads the whole structure, no payloads, and keeps the file open. False when the file is no regular file,
  /// or cannot be opened or measured (see `measureFile`: at most 2^31 - 1 bytes), when the header or a table
  /// entry is bad, or when an entry reaches beyond the end of the file; the file is then closed and what was
  /// read of it cannot be. A bad chunk only ends the scan. Bad lengths and sizes are reported on stderr.
  /// Meant to be called once.
  bool parseBlob();

  /// The entry of that name, or null. Parses first when the file is not open; null when that fails.
  /// Quirk open-counts-as-parsed: a file that only `getFileSize` opened is not parsed, and nothing is found.
  const BlobEntry* findBlobEntry(const std::string& name);

  /// Bytes of the entry's payload; -1 for null.
  static int getEntrySize(const BlobEntry* entry);

  /// Reads up to `count` bytes of the payload from `position` on to buffer[bufferOffset] and on. Returns the
  /// number of bytes read, less than `count` only at the payload's end or where the file was cut after
  /// parsing; -1 for a null entry, a closed file, or a position, offset or buffer from which nothing can be
  /// read.
  int readEntryIntoBuffer(const BlobEntry* entry, int position, unsigned char* buffer, int bufferOffset,
                          int count);

  /// Takes the entry in under its name. 1 when it replaced (and destroyed) another, else 0; 0 for null.
  int putBlobEntry(std::unique_ptr<BlobEntry> entry);

  /// Removes and destroys the entry of that name: 1 if there was one, else 0.
  int delBlobEntry(const std::string& name);

  /// True when each entry ends within the file.
  bool validatePayloadSizes() const;

  /// Measures the file, opening it if needed, without moving in it; -1 when it cannot be opened or measured.
  long getFileSize();

  void closeBlobFileChannel();

  /// Destroys every entry. Quirk cleared-nodes-stay: their names stay in the map, without entries.
  void clearEntries();

  /// Prints on stdout, in the order of names: prefix, '#', name, " 0x" size, " @ 0x" position in the file.
  void printEntries() const;

  /// Writes each payload to a file named as the entry, whatever that name is (only for containers that are
  /// trusted), and reports it on stdout. A file that cannot be created is passed over.
  void extractAll();

  const Entries& entries() const { return m_entries; }
  bool isModified() const { return m_modified; }        ///< holds chunks, a superseded entry or a deletion
  std::int64_t dataBase() const { return m_dataBase; }  ///< file position that offsets count from
  std::int64_t dataEnd() const { return m_dataEnd; }    ///< file position where chunks start

 private:
  enum class Scan { goesOn, ends };

  bool open();
  bool parse();
  bool readTableEntry(BlobRecordReader& records, std::int64_t& largestEnd);
  Scan readChunk(BlobRecordReader& records);
  void putAndNote(std::unique_ptr<BlobEntry> entry);
  void extract(const BlobEntry& entry);

  std::string m_path;
  bool m_modified = false;
  Entries m_entries;
  File m_file;
  std::int64_t m_dataEnd = 0;
  std::int64_t m_dataBase = 0;
  std::int64_t m_fileSize = 0;
};
