// Runs one golden case: its commands, in a folder of their own, then compares all that they left behind.
// Usage: cli_case PROGRAM INPUTS CASE

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "case_files.h"
#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::readText;

// Quotes for a shell: paths of build folders may hold blanks.
std::string quoted(const fs::path& path) { return "'" + path.string() + "'"; }

// Runs `cmd` with the program's folder first on the search path. Returns the shell's exit status.
int runCommands(const fs::path& program, const fs::path& cmd, const fs::path& work, const fs::path& output) {
  const std::string line = "cd " + quoted(work) + " && PATH=" + quoted(program.parent_path()) +
                           ":\"$PATH\" exec sh " + quoted(cmd) + " > " + quoted(output);
  const int status = std::system(line.c_str());  // NOLINT(cert-env33-c): our own words, all quoted
  if (status == -1 || !WIFEXITED(status)) throw std::runtime_error("the shell was killed");
  return WEXITSTATUS(status);
}

std::vector<std::string> check(const fs::path& program, const fs::path& inputs, const fs::path& folder) {
  const ei4::test::TempFolder temp;
  const fs::path work = temp.path("work");
  fs::copy(inputs, work, fs::copy_options::recursive);
  const fs::path output = temp.path("stdout");
  const int status = runCommands(program, folder / "cmd", work, output);

  std::vector<std::string> faults;
  const std::string wantedStatus = readText(folder / "exit");
  if (std::to_string(status) + "\n" != wantedStatus) {
    faults.push_back("exit status " + std::to_string(status) + ", not " + wantedStatus);
  }
  if (readText(output) != readText(folder / "stdout")) {
    faults.push_back("standard output:\n" + readText(output) + "instead of:\n" + readText(folder / "stdout"));
  }

  std::set<std::string> expected;
  std::istringstream lines(readText(folder / "files"));
  for (std::string line; std::getline(lines, line);) {
    expected.insert(ei4::test::checkFile(line, work, inputs, faults));
  }
  for (const auto& entry : fs::recursive_directory_iterator(work)) {
    const std::string name = fs::relative(entry.path(), work).string();
    if (expected.contains(name)) continue;
    if (!fs::exists(inputs / name)) {
      faults.push_back("unexpected: " + name);
    } else if (entry.is_regular_file() && readText(entry.path()) != readText(inputs / name)) {
      faults.push_back("changed: " + name);
    }
  }
  return faults;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 4) throw std::runtime_error("usage: cli_case PROGRAM INPUTS CASE");
  const auto faults = check(fs::absolute(argv[1]), argv[2], fs::absolute(argv[3]));
  for (const std::string& fault : faults) std::fprintf(stderr, "%s\n", fault.c_str());
  return faults.empty() ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "cli_case: %s\n", error.what());
  return 2;
}
