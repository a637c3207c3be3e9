#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "erblb/new_file.h"

namespace ei4::erblb {

/// The end of a container's file, opened for appending. No other Tail of the file exists in any process while
/// this one lives: making one waits for the others to end. So a container must be parsed behind that to see
/// what they appended. What was written is undone unless `keep` is reached. Failures throw JobError, signals
/// Interrupted.
class Tail {
 public:
  explicit Tail(const std::string& path);
  Tail(const Tail&) = delete;
  Tail& operator=(const Tail&) = delete;
  ~Tail();

  std::int64_t before() const { return m_before; }  ///< bytes of the file without what is appended

  void write(std::span<const unsigned char> bytes);
  void keep();

 private:
  bool lock() const;
  [[noreturn]] void fail(int error) const;

  std::string m_path;
  Descriptor m_file;
  std::int64_t m_before = 0;
  bool m_mustUndo = false;
};

}  // namespace ei4::erblb
