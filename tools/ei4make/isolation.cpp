#include "ei4make/isolation.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

namespace ei4::tools {

SharedBytes::SharedBytes(std::size_t size) {
  if (size == 0) return;
  void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  bytes_ = {static_cast<unsigned char*>(memory), size};
}

SharedBytes::SharedBytes(SharedBytes&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}

SharedBytes& SharedBytes::operator=(SharedBytes&& other) noexcept {
  std::swap(bytes_, other.bytes_);
  return *this;
}

SharedBytes::~SharedBytes() {
  if (!bytes_.empty()) munmap(bytes_.data(), bytes_.size());
}

namespace {

void limit(__rlimit_resource_t resource, std::uint64_t most) {
  const rlimit limits = {most, most};
  setrlimit(resource, &limits);
}

// Bytes of address space that this process has; 0 where the system does not say.
[[maybe_unused]] std::uint64_t addressSpace() {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen("/proc/self/statm", "r"), std::fclose);
  std::uint64_t pages = 0;
  if (!file || std::fscanf(file.get(), "%" SCNu64, &pages) != 1) return 0;
  return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

void limitFurtherMemory([[maybe_unused]] std::uint64_t bytes) {
#if !defined(__SANITIZE_ADDRESS__)  // which maps as it likes
  if (const std::uint64_t taken = addressSpace(); taken != 0) limit(RLIMIT_AS, taken + bytes);
#endif
}

}  // namespace

bool succeedsInIsolation(const std::function<bool()>& work, unsigned seconds, std::uint64_t memory) {
  const SharedBytes answer(1);  // not the exit status, which is lost where the caller ignores ended processes
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "no process can be started");
  if (child == 0) {
    prctl(PR_SET_DUMPABLE, 0);         // no core file, nor a piped one: a patient's picture would be in it
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // nobody waits for the answer then
    limit(RLIMIT_CPU, seconds);
    limitFurtherMemory(memory);
    try {
      answer.bytes()[0] = work() ? 1 : 0;
    } catch (...) {
      answer.bytes()[0] = 0;
    }
    _exit(0);
  }
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return answer.bytes()[0] == 1;
}

}  // namespace ei4::tools
