#pragma once

#include <array>
#include <csignal>
#include <stdexcept>

namespace ei4::erblb {

/// A signal asks the program to end; `signal` says which.
class Interrupted : public std::runtime_error {
 public:
  explicit Interrupted(int number);
  int signal;
};

/// As long as one lives, SIGHUP, SIGINT and SIGTERM are only noted, so that a job ends where it can undo what
/// it did; what was ignored before stays ignored. A write that breaks a file size limit or reaches a closed
/// pipe fails with an error instead of ending the program. The handlers from before come back with its end.
/// One at a time; it must outlive whatever undoes something.
class InterruptGuard {
 public:
  InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;
  ~InterruptGuard();

 private:
  std::array<struct sigaction, 5> m_before = {};  // of the signals in the order of their installation
};

/// Throws Interrupted when a signal was noted.
void throwIfInterrupted();

}  // namespace ei4::erblb
