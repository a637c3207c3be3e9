// Runs a fuzz target on files without a fuzzer: on each file named, and on all files of each folder named.
// Exit status: 0 when every file went through, 1 when one cannot be read, 2 when there was none.

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "target.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool replay(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
  if (!file) {
    dprintf(STDERR_FILENO, "cannot read %s\n", path.c_str());
    return false;
  }
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());  // its end is the end of the allocation
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
  return true;
}

}  // namespace

int main(int argc, char* argv[]) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const fs::path& file : filesOf(argv[i])) {
      dprintf(STDOUT_FILENO, "%s\n", file.c_str());  // in front: the last one named is the one that failed
      if (!replay(file)) return 1;
      ++count;
    }
  }
  return count > 0 ? 0 : 2;
}
