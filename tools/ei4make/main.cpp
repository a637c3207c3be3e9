#include <cstdlib>
#include <iostream>
#include <new>
#include <string_view>
#include <vector>

#include "ei4make/make.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// What DCMTK's logger does at the end of a program takes memory; where there is none it would end as a crash what has been
// done by then. So nothing is called any more.
[[noreturn]] void endRun(int status) {
  std::cout.flush();
  std::cerr.flush();
#if defined(__SANITIZE_ADDRESS__)
  __lsan_do_leak_check();
#endif
  std::_Exit(status);
}

}  // namespace

int main(int argc, char* argv[]) {
  int status = 1;
  try {
    const std::vector<std::string_view> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    status = ei4::tools::runEi4make(words, std::cout, std::cerr);
  } catch (const std::bad_alloc&) {
    std::cerr << "ei4make: out of memory\n";
  }
  endRun(status);
}
