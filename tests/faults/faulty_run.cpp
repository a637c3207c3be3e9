#include "faulty_run.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace ei4::test {

namespace fs = std::filesystem;

namespace {

std::string readAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// AddressSanitizer wants to be in front of all others and ends with the status of a failed run. What a library loses when
// it runs out of memory or cannot write is not for us to find. Of no meaning to other builds.
void setSanitizerOptions(FaultKind kind) {
  const char* const before = std::getenv("ASAN_OPTIONS");
  std::string options = before != nullptr ? before : "";
  options += ":verify_asan_link_order=0:exitcode=99";
  if (kind == FaultKind::libraryMemory || kind == FaultKind::write) options += ":detect_leaks=0";
  setenv("ASAN_OPTIONS", options.c_str(), 1);
}

void redirect(int to, const fs::path& path, int flags) {
  const int file = open(path.c_str(), flags | O_CLOEXEC, 0600);
  if (file < 0 || dup2(file, to) < 0) _exit(127);
}

// Waits for something, be it for ever: the state in the kernel's list, behind the name in brackets.
bool sleeps(pid_t child) {
  const std::string line = readAll("/proc/" + std::to_string(child) + "/stat");
  const std::size_t bracket = line.rfind(") ");
  return bracket != std::string::npos && line[bracket + 2] == 'S';
}

// The status as Run has it. Nothing in the programs waits, so a library that does is waiting for itself.
int waitFor(pid_t child, bool inLibrary) {
  constexpr int kPatience = 30000;  // milliseconds
  constexpr int kLongestNap = 300;
  const timespec millisecond = {0, 1000000};
  int napping = 0;
  for (int waited = 0; waited < kPatience && napping < kLongestNap; ++waited) {
    int status = 0;
    if (waitpid(child, &status, WNOHANG) == child) {
      return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }
    nanosleep(&millisecond, nullptr);
    napping = inLibrary && sleeps(child) ? napping + 1 : 0;
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return kHangs;
}

}  // namespace

Runner::Runner(fs::path shim, fs::path inputs, fs::path work, std::vector<std::string> words,
               const char* changed)
    : m_shim(std::move(shim)),
      m_inputs(std::move(inputs)),
      m_work(std::move(work)),
      m_words(std::move(words)),
      m_changed(changed) {
  const char* const under = std::getenv("EI4_FAULTS_UNDER");
  std::istringstream wordsAhead(under != nullptr ? under : "");
  for (std::string word; wordsAhead >> word;) m_under.push_back(word);
  for (std::string& word : m_words) {
    for (const auto& [mark, folder] : {std::pair("IN/", m_inputs), std::pair("OUT/", outputs())}) {
      const std::size_t at =
          word.find(mark);  // in front, or behind the '=' of a name that is given to a file
      if (at == 0 || (at != std::string::npos && word[at - 1] == '=')) {
        word.replace(at, std::strlen(mark), folder.string() + "/");
      }
    }
  }
}

void Runner::become(const Fault& fault) const {
  redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
  redirect(STDOUT_FILENO, m_work / "stdout", O_WRONLY | O_CREAT | O_TRUNC);
  redirect(STDERR_FILENO, m_work / "stderr", O_WRONLY | O_CREAT | O_TRUNC);
  const rlimit noCore = {0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  if (fault.kind == FaultKind::libraryMemory && m_under.empty()) {
    const rlimit seconds = {2, 2};  // some wait for themselves in a loop, but a run takes a fraction of one
    setrlimit(RLIMIT_CPU, &seconds);
  }
  if (fault.addressSpace != 0) {
    const rlimit limit = {fault.addressSpace, fault.addressSpace};
    setrlimit(RLIMIT_AS, &limit);
  } else {
    setSanitizerOptions(fault.kind);
    setenv("LD_PRELOAD", m_shim.c_str(), 1);
    setenv(kFaultRecord, (m_work / "record").c_str(), 1);
    setenv(kFaultProgram, m_words[0].c_str(), 1);
    setenv(kFaultKind, kFaultKinds[static_cast<int>(fault.kind)], 1);
    setenv(kFaultAt, std::to_string(fault.at).c_str(), 1);
    setenv(kFaultOn, fault.andAllLater ? "1" : "0", 1);
    setenv(kFaultInputs, (m_inputs / "").c_str(), 1);
    setenv(kFaultOutputs, outputs().c_str(), 1);
  }
  std::vector<char*> words;
  for (const std::string& word : m_under) words.push_back(const_cast<char*>(word.c_str()));
  for (const std::string& word : m_words) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  execvp(words[0], words.data());
  _exit(127);
}

Run Runner::run(const Fault& fault) const {
  fs::remove_all(outputs());
  fs::create_directories(outputs());
  if (m_changed != nullptr) {
    fs::create_directories((outputs() / m_changed).parent_path());
    fs::copy_file(m_inputs / m_changed, outputs() / m_changed);
  }
  const FaultRecord none{};
  std::ofstream(m_work / "record", std::ios::binary).write(reinterpret_cast<const char*>(&none), sizeof none);

  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process to be had");
  if (child == 0) become(fault);

  Run run;
  run.status = waitFor(child, fault.kind == FaultKind::libraryMemory);
  run.output = readAll(m_work / "stdout");
  run.errors = readAll(m_work / "stderr");
  for (const auto& entry : fs::recursive_directory_iterator(outputs())) {
    if (entry.is_regular_file()) {
      run.files[fs::relative(entry.path(), outputs()).string()] = readAll(entry.path());
    }
  }
  const std::string record = readAll(m_work / "record");
  if (record.size() == sizeof run.record) std::memcpy(&run.record, record.data(), sizeof run.record);
  return run;
}

}  // namespace ei4::test
