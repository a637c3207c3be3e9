#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "container/file.h"

namespace ei4::erblb {

/// A file to pack, and the stored name that it gets. Failures throw JobError, signals Interrupted.
class InputFile {
 public:
  /// From a [NAME=]PATH word. Refuses what is no regular file, a file too large for a container, and names
  /// that cannot be stored.
  explicit InputFile(const std::string& word);

  const std::string& storedName() const { return m_storedName; }
  std::string entryName() const;                ///< the part of the stored name that entries are found by
  std::int32_t size() const { return m_size; }  ///< bytes

  /// Hands exactly size() bytes to `sink`, piece by piece.
  void copyTo(const std::function<void(std::span<const unsigned char>)>& sink) const;

 private:
  std::string m_storedName;
  std::string m_path;
  std::int32_t m_size = 0;
};

}  // namespace ei4::erblb
