// A container's structure, looked at more closely than a reader does.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "container/file.h"
#include "terminal/progress.h"

class BlobRecordReader;

namespace ei4::erblb {

enum class Weight {
  refused,  ///< a fault for which the converter refuses the whole container
  fault,  ///< a fault that the converter forgives, though something cannot be found or may be something else
  note    ///< odd, but nothing is lost
};

/// What is to be said about one place of a container.
struct Finding {
  Weight weight = Weight::note;
  std::int64_t offset = 0;  ///< in the file
  std::string name;         ///< of the entry; may be empty
  std::string what;         ///< the rest of a sentence that begins with the entry, or with the container
};

/// A payload and where it comes from.
struct StoredEntry {
  bool isMark = false;      ///< what an appended deletion leaves behind
  std::int64_t record = 0;  ///< where in the file its record begins
  std::int64_t start = 0;   ///< where its payload does; may lie far behind the end
  std::int32_t size = 0;    ///< bytes of payload
};

/// Walks a container once, from its first byte to its last. Time and memory follow the file's size.
class ContainerCheck {
 public:
  using Tell = std::function<void(const Finding&)>;
  using Entries = std::map<std::string, StoredEntry>;  ///< by what stands behind the '#' of their names

  /// Opens the file; throws JobError when that fails.
  explicit ContainerCheck(const std::string& path);
  ContainerCheck(const ContainerCheck&) = delete;
  ContainerCheck& operator=(const ContainerCheck&) = delete;

  /// To be called once. progress: gets the file's bytes. Throws Interrupted when a signal was noted.
  void run(const Tell& tell, tools::Progress& progress);

  // Valid when run has returned:
  bool isRefused() const { return m_refused; }              ///< by the converter
  const Entries& entries() const { return m_live; }         ///< those that a reader finds, marks among them
  std::int64_t superseded() const { return m_superseded; }  ///< by chunks
  std::int64_t deleted() const { return m_deleted; }

  std::int64_t fileSize() const { return m_fileSize; }  ///< bytes
  std::FILE* file() const { return m_file.get(); }

 private:
  class Walk;

  File m_file;
  std::int64_t m_fileSize = 0;
  Entries m_live;
  std::int64_t m_superseded = 0;
  std::int64_t m_deleted = 0;
  bool m_refused = false;
};

}  // namespace ei4::erblb
