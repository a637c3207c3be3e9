#include "ei4make/isolation.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

namespace ei4::tools {

namespace {

void limit(__rlimit_resource_t resource, rlim_t most) {
  const rlimit both = {most, most};
  setrlimit(resource, &both);
}

}  // namespace

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

bool succeedsInIsolation(const std::function<bool()>& work, unsigned seconds) {
  const SharedBytes answer(1);  // not the exit status, which is lost where the caller ignores ended processes
  const pid_t child = fork();
  if (child < 0) throw std::system_error(errno, std::generic_category(), "no process can be started");
  if (child == 0) {
    limit(RLIMIT_CORE, 0);  // no picture of a patient is left behind in one
    limit(RLIMIT_CPU, seconds);
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
