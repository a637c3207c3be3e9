// Puts faults into runs of one scenario: with N from 1 to the number of calls that a run without a fault makes, the Nth
// call fails, alone and with all after it, for each kind of fault. Then runs it in ever less address space.
// Usage: fault_runs SHIM INPUTS REPORT SCENARIO PROGRAM...
//        fault_runs --are-all SCENARIO...     whether these are all there are
// EI4_FAULTS=N in the environment: at most N runs of each kind, evenly spread; "all" for every one.
// EI4_FAULTS_KINDS: only those of these kinds, named as in fault_record.h, and "address-space".
// EI4_FAULTS_UNDER: words that the runs begin with, such as "sh /.../tests/support/memcheck.sh".
// EI4_FAULTS_SHOW=1: says more of all runs that neither survived nor failed as stated.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "faulty_run.h"
#include "scenarios.h"
#include "support/cli_temp_folder.h"
#include "verdict.h"

namespace {

namespace fs = std::filesystem;
using namespace ei4::test;

constexpr unsigned kUsualRuns = 8;  // of each kind of fault, lone or lasting

// How many runs of each kind there may be.
unsigned mostRuns() {
  const char* const wish = std::getenv("EI4_FAULTS");
  if (wish == nullptr || *wish == '\0') return kUsualRuns;
  if (std::string(wish) == "all") return ~0U;
  return static_cast<unsigned>(std::max(1L, std::strtol(wish, nullptr, 10)));
}

bool isWanted(const char* kind) {
  const char* const wish = std::getenv("EI4_FAULTS_KINDS");
  return wish == nullptr || *wish == '\0' || std::string(wish).find(kind) != std::string::npos;
}

const Scenario& scenarioNamed(const std::string& name) {
  for (const Scenario& scenario : scenarios()) {
    if (name == scenario.name) return scenario;
  }
  throw std::runtime_error("no scenario " + name);
}

struct Tally {
  unsigned counted = 0;
  unsigned runs = 0;
  std::map<Verdict, unsigned> verdicts;
};

void print(const std::string& what, const Tally& tally) {
  std::printf("%-24s %6u calls %6u runs:", what.c_str(), tally.counted, tally.runs);
  for (const auto& [verdict, count] : tally.verdicts) {
    std::printf(" %u %s,", count, kVerdicts[static_cast<int>(verdict)]);
  }
  std::printf("\n");
}

void show(const std::string& what, Verdict verdict, const Run& run) {
  std::printf(
      "%s: %s: status %d, output \"%s\", errors \"%.500s\", files:", kVerdicts[static_cast<int>(verdict)],
      what.c_str(), run.status, run.output.c_str(), run.errors.c_str());
  for (const auto& [name, bytes] : run.files) std::printf(" %s (%zu)", name.c_str(), bytes.size());
  std::printf("\n  at %s\n", run.record.where);
}

bool hasDoneItsJob(const Run& run) { return run.status == 0 && !(run.files.empty() && run.output.empty()); }

class Campaign {
 public:
  Campaign(const Scenario& s, Runner r) : scenario(s), runner(std::move(r)) {
    clean = runner.run({.addressSpace = 0});
    const Run again = runner.run({.addressSpace = 0});
    if (again.files != clean.files || again.output != clean.output) {
      throw std::runtime_error("two runs without a fault differ");
    }
    if (std::string(scenario.name).starts_with("refused") ? !clean.files.empty() : !hasDoneItsJob(clean)) {
      throw std::runtime_error("without a fault it ends with status " + std::to_string(clean.status));
    }
    if (scenario.changed != nullptr) {
      std::ifstream file(runner.inputs() / scenario.changed, std::ios::binary);
      before.files[scenario.changed] = {std::istreambuf_iterator<char>(file), {}};
    }
  }

  void injectAll(FaultKind kind, bool andAllLater) {
    Tally tally;
    tally.counted = runner.run({.kind = kind}).record.counted;
    // Each program needs memory of its own.
    if (kind == FaultKind::ownMemory && tally.counted == 0)
      throw std::runtime_error("the shim counts nothing");
    const unsigned runs = std::min(tally.counted, mostRuns());
    for (unsigned i = 0; i < runs; ++i) {
      // Evenly spread, the first and the last included.
      const unsigned at =
          runs == 1 ? 1 : 1 + static_cast<unsigned>(std::uint64_t{i} * (tally.counted - 1) / (runs - 1));
      const Fault fault = {.kind = kind, .at = at, .andAllLater = andAllLater};
      take(fault,
           std::string(kFaultKinds[static_cast<int>(kind)]) + " " + std::to_string(at) +
               (andAllLater ? "+" : ""),
           tally);
    }
    print(std::string(kFaultKinds[static_cast<int>(kind)]) + (andAllLater ? ", lasting" : ""), tally);
  }

  // From where the dynamic linker has room for all libraries, on to what suffices for any of the scenarios.
  void limitAddressSpace() {
    constexpr unsigned long kStep = 64UL << 10;
    constexpr unsigned long kMore = 24UL << 20;
    unsigned long tooSmall = 0;
    unsigned long least = 1UL << 30;
    while (least - tooSmall > kStep) {
      const unsigned long middle = tooSmall + (least - tooSmall) / 2;
      (runner.run({.addressSpace = middle}).status == kNotStarted ? tooSmall : least) = middle;
    }
    Tally tally;
    const unsigned long runs = std::min<unsigned long>(kMore / kStep, mostRuns());
    for (unsigned long i = 0; i < runs; ++i) {
      const unsigned long size = least + kMore / runs * i;
      take({.addressSpace = size}, std::to_string(size >> 10) + " KiB", tally);
    }
    print("address space", tally);
  }

  unsigned wrongRuns() const { return wrong; }

 private:
  void take(const Fault& fault, const std::string& what, Tally& tally) {
    const Run run = runner.run(fault);
    const bool hasFault = run.record.failed > 0 || fault.addressSpace != 0;
    const Verdict verdict = hasFault ? judge(scenario, fault, clean, before, run) : Verdict::wrong;
    ++tally.runs;
    ++tally.verdicts[verdict];
    if (verdict == Verdict::wrong) ++wrong;
    const bool isUsual = verdict == Verdict::survived || verdict == Verdict::failed;
    if (verdict == Verdict::wrong || (!isUsual && std::getenv("EI4_FAULTS_SHOW") != nullptr)) {
      show(what, verdict, run);
    }
  }

  const Scenario& scenario;
  const Runner runner;
  Run clean;
  Run before;
  unsigned wrong = 0;
};

}  // namespace

int main(int argc, char** argv) try {
  if (argc > 1 && std::string(argv[1]) == "--are-all") {
    std::set<std::string> names;
    for (const Scenario& scenario : scenarios()) names.insert(scenario.name);
    return names == std::set<std::string>(argv + 2, argv + argc) ? 0 : 1;
  }
  if (argc < 6) throw std::runtime_error("usage: fault_runs SHIM INPUTS REPORT SCENARIO PROGRAM...");
  const Scenario& scenario = scenarioNamed(argv[4]);
  std::vector<std::string> words;
  for (int i = 5; i < argc; ++i) {
    if (fs::path(argv[i]).filename() == scenario.program) words = {fs::canonical(argv[i])};
  }
  if (words.empty()) throw std::runtime_error(std::string("where is ") + scenario.program + "?");
  words.insert(words.end(), scenario.words.begin(), scenario.words.end());

  const TempFolder temp;
  const fs::path work = fs::canonical(temp.path("."));
  const fs::path inputs = work / "in";
  fs::copy(argv[2], inputs, fs::copy_options::recursive);
  fs::copy_file(argv[3], inputs / fs::path(argv[3]).filename());

  Campaign campaign(scenario, Runner(fs::canonical(argv[1]), inputs, work, words, scenario.changed));
  for (const FaultKind kind :
       {FaultKind::ownMemory, FaultKind::libraryMemory, FaultKind::read, FaultKind::cut, FaultKind::write}) {
    if (!isWanted(kFaultKinds[static_cast<int>(kind)])) continue;
    campaign.injectAll(kind, false);
    campaign.injectAll(kind, true);
  }
#if !defined(__SANITIZE_ADDRESS__)  // which takes terabytes of it
  if (isWanted("address-space")) campaign.limitAddressSpace();
#endif
  return campaign.wrongRuns() == 0 ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "fault_runs: %s\n", error.what());
  return 2;
}
