// Signals that end erblb in the middle of its work.
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "support/blob_erblb_run.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::BlobBuilder;
using ei4::test::ErblbTest;
using ei4::test::ramp;
using ei4::test::StartedErblb;
using ei4::test::TempFolder;

class ErblbInterrupt : public ErblbTest, public testing::WithParamInterface<int> {
 protected:
  // A file without blocks that takes a while to be copied.
  void writeBigFile(const std::string& name) const {
    folder.write(name, {});
    ASSERT_EQ(truncate(folder.path(name).c_str(), 0x7F000000), 0);
  }

  // Sends the signal as soon as the run has come so far.
  static void interruptWhen(const std::function<bool()>& hasComeSoFar, const StartedErblb& run) {
    constexpr int kLongestWait = 10000;  // milliseconds
    int waited = 0;
    while (!hasComeSoFar() && waited++ < kLongestWait) usleep(1000);
    EXPECT_LT(waited, kLongestWait);
    ASSERT_EQ(kill(run.child, GetParam()), 0);
  }

  // Whether the run has a handler for the signal by now.
  static bool notesSignals(const StartedErblb& run) {
    std::ifstream status("/proc/" + std::to_string(run.child) + "/status");
    std::string word;
    while (status >> word && word != "SigCgt:") {
    }
    unsigned long long caught = 0;
    status >> std::hex >> caught;
    return (caught >> static_cast<unsigned>(GetParam() - 1) & 1U) != 0;
  }

  void expectInterrupted(const StartedErblb& run) const {
    const auto done = finish(run);
    EXPECT_EQ(done.status, 128 + GetParam());
    EXPECT_EQ(done.err.rfind("erblb: interrupted: ", 0), 0U) << done.err;
  }
};

TEST_P(ErblbInterrupt, TakesBackWhatAnAppendWrote) {
  folder.write("a", ramp(5));
  writeBigFile("big");
  runQuietly({"build", "x", "a"});
  const auto before = folder.read("x");
  const StartedErblb append = start({"append", "x", "b=a", "big"});
  interruptWhen([&] { return fs::file_size(folder.path("x")) > before.size() + 100000; }, append);
  expectInterrupted(append);
  EXPECT_EQ(fs::file_size(folder.path("x")), before.size());
  EXPECT_EQ(folder.read("x"), before);
  runQuietly({"append", "x", "c=a"});
  EXPECT_EQ(payload("x", "c"), ramp(5));
}

TEST_P(ErblbInterrupt, EndsAnAppendThatWaitsForItsTurn) {
  folder.write("a", ramp(5));
  runQuietly({"build", "x", "a"});
  const auto before = folder.read("x");
  const File other(std::fopen(folder.path("x").c_str(), "re"));
  ASSERT_EQ(flock(fileno(other.get()), LOCK_EX), 0);
  const StartedErblb append = start({"append", "x", "b=a"});
  interruptWhen([&] { return notesSignals(append); }, append);
  // Repeated, as a signal just before the wait does not break it, but not once it was heard: the handler is gone
  // then, and another signal would kill what only has to say so.
  siginfo_t end{};
  while (waitid(P_PID, static_cast<id_t>(append.child), &end, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         end.si_pid == 0) {
    usleep(50000);
    if (notesSignals(append)) kill(append.child, GetParam());
  }
  expectInterrupted(append);
  EXPECT_EQ(folder.read("x"), before);
}

TEST_P(ErblbInterrupt, LeavesNothingOfABuild) {
  writeBigFile("big");
  const StartedErblb build = start({"build", "x", "big"});
  interruptWhen(
      [&] {
        for (const auto& file : fs::directory_iterator(folder.path(""))) {
          if (file.path().filename() != "big" && file.file_size() > 100000) return true;
        }
        return false;
      },
      build);
  expectInterrupted(build);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("")), {}), 1);
}

TEST_P(ErblbInterrupt, LeavesNoHalfOfAnExtractedFile) {
  folder.write("x", BlobBuilder().chunkHead("big", 0x7F000000).build());
  ASSERT_EQ(
      truncate(folder.path("x").c_str(), static_cast<off_t>(fs::file_size(folder.path("x"))) + 0x7F000000),
      0);
  const TempFolder target;
  const StartedErblb extract = start({"extract", "x", "-C", target.path("")});
  interruptWhen([&] { return !target.empty(); }, extract);
  expectInterrupted(extract);
  EXPECT_TRUE(target.empty());
}

INSTANTIATE_TEST_SUITE_P(EachSignal, ErblbInterrupt, testing::Values(SIGHUP, SIGINT, SIGTERM));

}  // namespace
