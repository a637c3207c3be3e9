// A library to preload (LD_PRELOAD) into a whole run of a program: it counts calls of one kind and makes the Nth fail,
// alone or with all after it. fault_record.h has the kinds, what to set in the environment, and what comes back.
//
// It stands in front of the C library's functions as the program and its libraries call them. What the C library
// calls inside itself does not pass here: a read inside fread is failed as the fread that it is part of, which then
// delivers half of what was asked for and sets the stream's error mark, as after a bad block in the middle.
// `operator new` is there as well as malloc, on which it is built: valgrind and sanitizers have one of their own.
//
// Calls count from main on. What the libraries and the static objects ask for before that decides whether the program
// starts at all, and without memory for a handful of names it does not.
//
// Who asks for memory is read off the stack: it is a library when any frame belongs to one, but for the C and the C++
// library, which work for everybody; so also where a library has been told to get its memory from the
// program. The programs are single-threaded, and so is this.

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <unwind.h>

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>

#include "fault_record.h"

namespace {

using ei4::test::FaultKind;
using ei4::test::FaultRecord;

struct State {
  bool busy = false;  // inside the shim, whose own calls do not count
  FaultRecord* record = nullptr;
  FaultKind kind = FaultKind::ownMemory;
  unsigned long at = 0;
  bool on = false;
  const char* inputs = "";
  const char* outputs = "";
};
State state;

class Busy {
 public:
  Busy() { state.busy = true; }
  ~Busy() { state.busy = false; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
};

// The function of this name behind the shim: the C library's, a sanitizer's or valgrind's.
template <class Function>
Function* behind(const char* name) {
  void* const found = dlsym(RTLD_NEXT, name);
  Function* function = nullptr;
  std::memcpy(&function, &found, sizeof found);
  return function;
}
// Looked up once at each place.
#define BEHIND(name)                                          \
  ([] {                                                       \
    static auto* const found = behind<decltype(name)>(#name); \
    return found;                                             \
  }())

const char* setting(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Takes the settings. Nothing counts when there is no record to be had.
void prepare() {
  int kind = 0;
  for (const char* name : ei4::test::kFaultKinds) {
    if (std::strcmp(setting(ei4::test::kFaultKind), name) == 0) state.kind = FaultKind{kind};
    ++kind;
  }
  state.at = std::strtoul(setting(ei4::test::kFaultAt), nullptr, 10);
  state.on = std::strcmp(setting(ei4::test::kFaultOn), "1") == 0;
  state.inputs = setting(ei4::test::kFaultInputs);
  state.outputs = setting(ei4::test::kFaultOutputs);
  const int file = BEHIND(open)(setting(ei4::test::kFaultRecord), O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* const mapped =
      BEHIND(mmap)(nullptr, sizeof(FaultRecord), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  BEHIND(close)(file);
  if (mapped != MAP_FAILED) state.record = static_cast<FaultRecord*>(mapped);
}

bool isReady() { return state.record != nullptr; }

using Main = int(int, char**, char**);
Main* mainOfProgram = nullptr;

int countingMain(int count, char** words, char** environment) {
  if (std::strcmp(words[0], setting(ei4::test::kFaultProgram)) == 0) prepare();
  return mainOfProgram(count, words, environment);
}

bool startsWith(const char* text, const char* start) {
  return std::strncmp(text, start, std::strlen(start)) == 0;
}

const char* lastPart(const char* path) {
  const char* const slash = std::strrchr(path, '/');
  return slash != nullptr ? slash + 1 : path;
}

bool isNeutral(const char* module) {
  for (const char* neutral :
       {"libc.", "libstdc++", "libgcc_s", "libm.", "ld-linux", "libfault_shim", "vgpreload"}) {
    if (startsWith(module, neutral)) return true;
  }
  return false;
}

// The place of the call, not the one behind it, which may belong to the next function.
void* callOf(_Unwind_Context* context) {
  return reinterpret_cast<void*>(_Unwind_GetIP(context) - 1);  // NOLINT(performance-no-int-to-ptr)
}

_Unwind_Reason_Code findLibrary(_Unwind_Context* context, void* isLibrary) {
  dl_find_object found{};
  if (_dl_find_object(callOf(context), &found) != 0) return _URC_NO_REASON;
  const char* const module = found.dlfo_link_map->l_name;
  const bool isProgram = *module == '\0';
  if (isProgram || isNeutral(lastPart(module))) return _URC_NO_REASON;
  *static_cast<bool*>(isLibrary) = true;
  return _URC_END_OF_STACK;
}

FaultKind kindOfMemory() {
  bool isLibrary = false;
  _Unwind_Backtrace(findLibrary, &isLibrary);
  return isLibrary ? FaultKind::libraryMemory : FaultKind::ownMemory;
}

_Unwind_Reason_Code noteCaller(_Unwind_Context* context, void* /*unused*/) {
  Dl_info info{};
  if (dladdr(callOf(context), &info) == 0) return _URC_NO_REASON;
  const char* const module = lastPart(info.dli_fname);
  if (startsWith(module, "libfault_shim")) return _URC_NO_REASON;
  char* const where = state.record->where;
  const std::size_t used = std::strlen(where);
  const std::size_t room = sizeof state.record->where - used;
  const auto offset = static_cast<const char*>(callOf(context)) - static_cast<const char*>(info.dli_fbase);
  const int length = std::snprintf(where + used, room, "%s%s+0x%tx(%s)", used == 0 ? "" : " ", module, offset,
                                   info.dli_sname != nullptr ? info.dli_sname : "");
  if (length >= 0 && static_cast<std::size_t>(length) < room) return _URC_NO_REASON;
  where[used] = '\0';
  return _URC_END_OF_STACK;
}

// Counts a call of the kind asked for. True when it has to fail.
bool countedOut() {
  const unsigned long count = ++state.record->counted;
  if (state.at == 0 || count < state.at || (count > state.at && !state.on)) return false;
  if (++state.record->failed == 1) _Unwind_Backtrace(noteCaller, nullptr);
  return true;
}

bool memoryFails() {
  if (state.busy || !isReady()) return false;
  if (state.kind != FaultKind::ownMemory && state.kind != FaultKind::libraryMemory) return false;
  const Busy busy;
  if (kindOfMemory() != state.kind || !countedOut()) return false;
  errno = ENOMEM;
  return true;
}

bool counts(FaultKind kind) { return !state.busy && isReady() && state.kind == kind; }

bool pathFails(FaultKind kind, const char* path) {
  if (!counts(kind) || path == nullptr) return false;
  const Busy busy;
  const bool isWrite = kind == FaultKind::write;
  const char* const folder = isWrite ? state.outputs : state.inputs;
  if (*folder == '\0' || !startsWith(path, folder) || !countedOut()) return false;
  errno = isWrite ? ENOSPC : EIO;
  return true;
}

bool fileFails(FaultKind kind, int file) {
  if (!counts(kind) || file < 0) return false;
  char link[64];
  char path[4096];
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  const ssize_t length = readlink(link, path, sizeof path - 1);
  if (length < 0) return false;
  path[length] = '\0';
  return pathFails(kind, path);
}

bool streamFails(FaultKind kind, FILE* stream) { return counts(kind) && fileFails(kind, fileno(stream)); }

FaultKind kindOf(int flags) { return (flags & O_ACCMODE) == O_RDONLY ? FaultKind::read : FaultKind::write; }
FaultKind kindOf(const char* mode) {
  return std::strpbrk(mode, "wa+") == nullptr ? FaultKind::read : FaultKind::write;
}

bool takesMode(int flags) { return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE; }

}  // namespace

extern "C" {

// The C library's way into main.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
int __libc_start_main(Main* program, int count, char** words, void (*start)(), void (*end)(),
                      void (*linkerEnd)(), void* stack) {
  using Function = int(Main*, int, char**, void (*)(), void (*)(), void (*)(), void*);
  mainOfProgram = program;
  return behind<Function>("__libc_start_main")(countingMain, count, words, start, end, linkerEnd, stack);
}

// ---- Memory ----

void* malloc(std::size_t size) noexcept { return memoryFails() ? nullptr : BEHIND(malloc)(size); }

void* calloc(std::size_t count, std::size_t size) noexcept {
  return memoryFails() ? nullptr : BEHIND(calloc)(count, size);
}

void* realloc(void* block, std::size_t size) noexcept {
  return memoryFails() ? nullptr : BEHIND(realloc)(block, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
  return memoryFails() ? ENOMEM : BEHIND(posix_memalign)(block, alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memoryFails() ? nullptr : BEHIND(aligned_alloc)(alignment, size);
}

// Of an input, or memory without a file.
void* mmap(void* address, std::size_t size, int protection, int flags, int file, off_t offset) noexcept {
  const bool fails = (flags & MAP_ANONYMOUS) != 0 ? memoryFails() : fileFails(FaultKind::read, file);
  return fails ? MAP_FAILED : BEHIND(mmap)(address, size, protection, flags, file, offset);
}

// ---- Opening and closing ----

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode =
      takesMode(flags) ? va_arg(more, mode_t) : 0;  // NOLINT(clang-analyzer-valist.Uninitialized)
  va_end(more);
  return pathFails(kindOf(flags), path) ? -1 : BEHIND(open)(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode =
      takesMode(flags) ? va_arg(more, mode_t) : 0;  // NOLINT(clang-analyzer-valist.Uninitialized)
  va_end(more);
  const bool fails = *path == '/' ? pathFails(kindOf(flags), path) : fileFails(kindOf(flags), folder);
  return fails ? -1 : BEHIND(openat)(folder, path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
  return pathFails(kindOf(mode), path) ? nullptr : BEHIND(fopen)(path, mode);
}

FILE* fdopen(int file, const char* mode) noexcept {
  return fileFails(kindOf(mode), file) ? nullptr : BEHIND(fdopen)(file, mode);
}

// What was closed is closed, also when that fails.
int fclose(FILE* stream) {
  const bool fails = streamFails(FaultKind::write, stream);
  const int result = BEHIND(fclose)(stream);
  if (fails) errno = ENOSPC;
  return fails ? EOF : result;
}

int close(int file) {
  const bool fails = fileFails(FaultKind::write, file);
  const int result = BEHIND(close)(file);
  if (fails) errno = ENOSPC;
  return fails ? -1 : result;
}

// ---- Reading ----

std::size_t fread(void* to, std::size_t size, std::size_t count, FILE* stream) {
  if (streamFails(FaultKind::read, stream)) {
    const std::size_t half = BEHIND(fread)(to, size, count / 2, stream);
    stream->_flags |= _IO_ERR_SEEN;
    errno = EIO;
    return half;
  }
  if (streamFails(FaultKind::cut, stream)) {
    const std::size_t half = state.record->failed > 1 ? 0 : BEHIND(fread)(to, size, count / 2, stream);
    stream->_flags |= _IO_EOF_SEEN;
    return half;
  }
  return BEHIND(fread)(to, size, count, stream);
}

// What fread is where the compiler knows the size of the buffer. NOLINTNEXTLINE(bugprone-reserved-identifier)
std::size_t __fread_chk(void* to, std::size_t, std::size_t size, std::size_t count, FILE* stream) {
  return fread(to, size, count, stream);
}

int getc(FILE* stream) {
  if (streamFails(FaultKind::read, stream)) {
    stream->_flags |= _IO_ERR_SEEN;
    errno = EIO;
    return EOF;
  }
  return BEHIND(getc)(stream);
}

ssize_t read(int file, void* to, std::size_t count) {
  if (fileFails(FaultKind::read, file)) return -1;
  if (fileFails(FaultKind::cut, file)) count = state.record->failed > 1 ? 0 : count / 2;
  return BEHIND(read)(file, to, count);
}

ssize_t pread(int file, void* to, std::size_t count, off_t offset) {
  if (fileFails(FaultKind::read, file)) return -1;
  if (fileFails(FaultKind::cut, file)) count = state.record->failed > 1 ? 0 : count / 2;
  return BEHIND(pread)(file, to, count, offset);
}

int fseek(FILE* stream, long offset, int from) {
  return streamFails(FaultKind::read, stream) ? -1 : BEHIND(fseek)(stream, offset, from);
}

int fseeko(FILE* stream, off_t offset, int from) {
  return streamFails(FaultKind::read, stream) ? -1 : BEHIND(fseeko)(stream, offset, from);
}

long ftell(FILE* stream) { return streamFails(FaultKind::read, stream) ? -1 : BEHIND(ftell)(stream); }

off_t ftello(FILE* stream) { return streamFails(FaultKind::read, stream) ? -1 : BEHIND(ftello)(stream); }

off_t lseek(int file, off_t offset, int from) noexcept {
  return fileFails(FaultKind::read, file) ? -1 : BEHIND(lseek)(file, offset, from);
}

int fstat(int file, struct stat* status) noexcept {
  using Function = int(int, struct stat*);
  static Function* const found = behind<Function>("fstat");
  return fileFails(FaultKind::read, file) ? -1 : found(file, status);
}

int stat(const char* path, struct stat* status) noexcept {
  using Function = int(const char*, struct stat*);
  static Function* const found = behind<Function>("stat");
  return pathFails(FaultKind::read, path) ? -1 : found(path, status);
}

// ---- Writing ----

std::size_t fwrite(const void* from, std::size_t size, std::size_t count, FILE* stream) {
  if (!streamFails(FaultKind::write, stream)) return BEHIND(fwrite)(from, size, count, stream);
  const std::size_t half = BEHIND(fwrite)(from, size, count / 2, stream);
  stream->_flags |= _IO_ERR_SEEN;
  errno = ENOSPC;
  return half;
}

int putc(int byte, FILE* stream) {
  if (!streamFails(FaultKind::write, stream)) return BEHIND(putc)(byte, stream);
  stream->_flags |= _IO_ERR_SEEN;
  errno = ENOSPC;
  return EOF;
}

ssize_t write(int file, const void* from, std::size_t count) {
  return fileFails(FaultKind::write, file) ? -1 : BEHIND(write)(file, from, count);
}

int fflush(FILE* stream) {
  return stream != nullptr && streamFails(FaultKind::write, stream) ? EOF : BEHIND(fflush)(stream);
}

int fsync(int file) { return fileFails(FaultKind::write, file) ? -1 : BEHIND(fsync)(file); }

int rename(const char* from, const char* to) noexcept {
  return pathFails(FaultKind::write, to) ? -1 : BEHIND(rename)(from, to);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
  return fileFails(FaultKind::write, toFolder) ? -1 : BEHIND(renameat)(fromFolder, from, toFolder, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  return fileFails(FaultKind::write, toFolder) ? -1
                                               : BEHIND(renameat2)(fromFolder, from, toFolder, to, flags);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  return fileFails(FaultKind::write, toFolder) ? -1 : BEHIND(linkat)(fromFolder, from, toFolder, to, flags);
}

int mkdirat(int folder, const char* path, mode_t mode) noexcept {
  return fileFails(FaultKind::write, folder) ? -1 : BEHIND(mkdirat)(folder, path, mode);
}

}  // extern "C"

// ---- operator new ----

namespace {

// The memory, or null without having asked for it where that has to fail.
template <class Function, class... Arguments>
void* newBehind(Function* function, const Arguments&... arguments) {
  if (memoryFails()) return nullptr;
  const bool wasBusy = state.busy;
  state.busy = true;  // what it asks malloc for has been counted
  void* const block = function(arguments...);
  state.busy = wasBusy;
  return block;
}

using New = void*(std::size_t);
using NewOrNull = void*(std::size_t, const std::nothrow_t&);

void* orThrow(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void* operator new(std::size_t size) {
  static New* const found = behind<New>("_Znwm");
  return orThrow(newBehind(found, size));
}
void* operator new[](std::size_t size) {
  static New* const found = behind<New>("_Znam");
  return orThrow(newBehind(found, size));
}
void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept {
  static NewOrNull* const found = behind<NewOrNull>("_ZnwmRKSt9nothrow_t");
  return newBehind(found, size, tag);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  static NewOrNull* const found = behind<NewOrNull>("_ZnamRKSt9nothrow_t");
  return newBehind(found, size, tag);
}
