#include "child_run.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace ei4::bench {
namespace {

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

[[noreturn]] void becomeProgram(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const int nowhere = open("/dev/null", O_WRONLY);
  if (nowhere >= 0) dup2(nowhere, STDOUT_FILENO);
  execv(arguments[0], arguments.data());
  _exit(127);
}

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

RunCost runOnce(const std::vector<std::string>& words) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) becomeProgram(words);
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
      WEXITSTATUS(status) != 0) {
    std::string line;
    for (const auto& word : words) line += word + " ";
    throw std::runtime_error("failed: " + line);
  }
  const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
  return {elapsed.count(), milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

RunCost medianRun(const std::vector<std::string>& words, int runs) {
  std::vector<double> elapsed;
  std::vector<double> cpu;
  std::vector<double> peak;
  for (int i = 0; i < runs; ++i) {
    const RunCost cost = runOnce(words);
    elapsed.push_back(cost.milliseconds);
    cpu.push_back(cost.cpuMilliseconds);
    peak.push_back(cost.peakMebibytes);
  }
  return {medianOf(elapsed), medianOf(cpu), medianOf(peak)};
}

}  // namespace ei4::bench
