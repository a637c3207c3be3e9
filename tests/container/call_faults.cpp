#include "container/call_faults.h"

#include <sys/types.h>

#include <cerrno>
#include <cstdio>
#include <utility>

// The linker leads each call of NAME to __wrap_NAME, and __real_NAME to the library's. Plain names stand for these
// here, as theirs are reserved.
extern "C" {
std::size_t realRead(void*, std::size_t, std::size_t, std::FILE*) __asm__("__real_fread");
std::size_t wrappedRead(void*, std::size_t, std::size_t, std::FILE*) __asm__("__wrap_fread");
std::size_t realCheckedRead(void*, std::size_t, std::size_t, std::size_t,
                            std::FILE*) __asm__("__real___fread_chk");
std::size_t wrappedCheckedRead(void*, std::size_t, std::size_t, std::size_t,
                               std::FILE*) __asm__("__wrap___fread_chk");
int realSeek(std::FILE*, long, int) __asm__("__real_fseek");
int wrappedSeek(std::FILE*, long, int) __asm__("__wrap_fseek");
int realSeekWide(std::FILE*, off_t, int) __asm__("__real_fseeko");
int wrappedSeekWide(std::FILE*, off_t, int) __asm__("__wrap_fseeko");
off_t realTell(std::FILE*) __asm__("__real_ftello");
off_t wrappedTell(std::FILE*) __asm__("__wrap_ftello");
int realRename(int, const char*, int, const char*, unsigned) __asm__("__real_renameat2");
int wrappedRename(int, const char*, int, const char*, unsigned) __asm__("__wrap_renameat2");
int realLink(int, const char*, int, const char*, int) __asm__("__real_linkat");
int wrappedLink(int, const char*, int, const char*, int) __asm__("__wrap_linkat");
}

namespace {

struct Plan {
  int calls = 0;
  int from = -1;
  int to = -1;  // behind the last that fails
  std::function<void()> change;
};

Plan plan;
int renameError = 0;
int linkError = 0;

// Counts a read or seek. True when it must fail.
bool fails() {
  const int call = plan.calls++;
  if (call < plan.from || call >= plan.to) return false;
  if (plan.change) {
    plan.change();
    return false;
  }
  errno = EIO;
  return true;
}

// True when a call must fail with that error.
bool failsWith(int error) {
  if (error == 0) return false;
  errno = error;
  return true;
}

}  // namespace

std::size_t wrappedRead(void* bytes, std::size_t size, std::size_t count, std::FILE* stream) {
  return fails() ? 0 : realRead(bytes, size, count, stream);
}

std::size_t wrappedCheckedRead(void* bytes, std::size_t room, std::size_t size, std::size_t count,
                               std::FILE* stream) {
  return fails() ? 0 : realCheckedRead(bytes, room, size, count, stream);
}

int wrappedSeek(std::FILE* stream, long offset, int origin) {
  return fails() ? -1 : realSeek(stream, offset, origin);
}

int wrappedSeekWide(std::FILE* stream, off_t offset, int origin) {
  return fails() ? -1 : realSeekWide(stream, offset, origin);
}

off_t wrappedTell(std::FILE* stream) { return fails() ? -1 : realTell(stream); }

int wrappedRename(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  return failsWith(renameError) ? -1 : realRename(fromFolder, from, toFolder, to, flags);
}

int wrappedLink(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  return failsWith(linkError) ? -1 : realLink(fromFolder, from, toFolder, to, flags);
}

namespace ei4::test {

ReadFaults::ReadFaults(int first, Which which) {
  plan = {};
  plan.from = first;
  if (first >= 0) plan.to = which == Which::onlyOne ? first + 1 : 0x7FFFFFFF;
}

ReadFaults::ReadFaults(int before, std::function<void()> change) {
  plan = {.calls = 0, .from = before, .to = before + 1, .change = std::move(change)};
}

ReadFaults::~ReadFaults() { plan = {}; }

int ReadFaults::calls() const { return m_calls < 0 ? plan.calls : m_calls; }

void ReadFaults::end() {
  m_calls = calls();
  plan = {};
}

RenameFaults::RenameFaults(int renames, int links) {
  renameError = renames;
  linkError = links;
}

RenameFaults::~RenameFaults() { renameError = linkError = 0; }

}  // namespace ei4::test
