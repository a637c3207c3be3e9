// Work on hostile data with a library's code: in a process of its own, whose faults harm nobody else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace ei4::tools {

/// Bytes that a process shares with those it starts. They begin as zeros, and take memory as they are written.
class SharedBytes {
 public:
  SharedBytes() = default;
  /// Throws std::bad_alloc.
  explicit SharedBytes(std::size_t size);
  SharedBytes(SharedBytes&& other) noexcept;
  SharedBytes& operator=(SharedBytes&& other) noexcept;
  ~SharedBytes();

  std::span<unsigned char> bytes() const { return bytes_; }

 private:
  std::span<unsigned char> bytes_;
};

/// Runs `work` in a copy of this process, of which only SharedBytes come back. True when it answered true; false also
/// when it ended in any other way, such as by a signal, took more than so many seconds of processor time, or wanted so
/// many bytes of memory more than this process has.
/// This process must have one thread only. Throws std::system_error when no process can be started.
bool succeedsInIsolation(const std::function<bool()>& work, unsigned seconds, std::uint64_t memory);

}  // namespace ei4::tools
