#include <iostream>
#include <new>
#include <string_view>
#include <vector>

#include "ei4make/make.h"

int main(int argc, char* argv[]) try {
  const std::vector<std::string_view> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  return ei4::tools::runEi4make(words, std::cout, std::cerr);
} catch (const std::bad_alloc&) {
  std::cerr << "ei4make: out of memory\n";
  return 1;
}
