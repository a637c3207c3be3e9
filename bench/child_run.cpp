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

[[noreturn]] void becomeProgram(const Words& words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const int nowhere = open("/dev/null", O_WRONLY);
  if (nowhere >= 0) dup2(nowhere, STDOUT_FILENO);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

RunCost runOnce(const Words& words) {
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

std::vector<RunCost> runInTurns(const std::vector<Words>& programs, int runs) {
  std::vector<RunCost> best;
  best.reserve(programs.size());
  for (const Words& words : programs) best.push_back(runOnce(words));
  for (int run = 1; run < runs; ++run) {
    for (std::size_t i = 0; i < programs.size(); ++i) {
      const RunCost cost = runOnce(programs[i]);
      best[i] = {.milliseconds = std::min(best[i].milliseconds, cost.milliseconds),
                 .cpuMilliseconds = std::min(best[i].cpuMilliseconds, cost.cpuMilliseconds),
                 .peakMebibytes = std::max(best[i].peakMebibytes, cost.peakMebibytes)};
    }
  }
  return best;
}

double inChild(const std::function<double()>& measure) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    try {
      const double result = measure();
      _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    } catch (const std::exception&) {
      _exit(1);
    }
  }
  close(ends[1]);
  double result = 0;
  const bool arrived = child > 0 && read(ends[0], &result, sizeof result) == sizeof result;
  close(ends[0]);
  int status = 0;
  if (child > 0) waitpid(child, &status, 0);
  if (!arrived || status != 0) throw std::runtime_error("a measurement failed");
  return result;
}

}  // namespace ei4::bench
