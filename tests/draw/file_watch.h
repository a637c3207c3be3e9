// Tells whether anything in a folder is touched.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <string>

namespace ei4::test {

class FileWatch {
 public:
  explicit FileWatch(const std::string& folder) : m_queue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    m_watch =
        inotify_add_watch(m_queue, folder.c_str(), IN_OPEN | IN_ACCESS | IN_MODIFY | IN_CREATE | IN_DELETE);
  }
  ~FileWatch() { close(m_queue); }
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  bool works() const { return m_watch >= 0; }

  /// Has a file there been opened, read, written, made or deleted since the last call?
  bool sawAnything() {
    std::array<char, 4096> events{};
    bool any = false;
    while (read(m_queue, events.data(), events.size()) > 0) any = true;
    return any;
  }

 private:
  int m_queue;
  int m_watch = -1;
};

}  // namespace ei4::test
