// Failures of the C library's file functions, on demand, for programs that link container_call_faults.
#pragma once

#include <functional>

namespace ei4::test {

/// Reads and seeks of the program since this was made, GoogleTest's own included. Those from number `first` on (from 0; negative: none) fail
/// with EIO, or only that one. Only one at a time.
class ReadFaults {
 public:
  enum class Which { onlyOne, allFromThere };

  explicit ReadFaults(int first, Which which = Which::allFromThere);
  /// Does something in front of one read or seek instead: the file changes under the reader's hands.
  ReadFaults(int before, std::function<void()> change);
  ~ReadFaults();
  ReadFaults(const ReadFaults&) = delete;
  ReadFaults& operator=(const ReadFaults&) = delete;

  int calls() const;  ///< so far, the failed ones included

  /// No more faults, and no more counting: for what the test itself reads.
  void end();

 private:
  int m_calls = -1;  // when it ended
};

/// While this lives a file system has no renameat2, or has not its flags, and perhaps no links: each of them fails
/// with its number. 0: the call is made.
class RenameFaults {
 public:
  explicit RenameFaults(int renameError, int linkError = 0);
  ~RenameFaults();
  RenameFaults(const RenameFaults&) = delete;
  RenameFaults& operator=(const RenameFaults&) = delete;
};

}  // namespace ei4::test
