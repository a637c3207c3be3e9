// Several runs of erblb on one container at a time.
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "support/blob_erblb_run.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::BlobBuilder;
using ei4::test::ErblbTest;
using ei4::test::ramp;
using ei4::test::StartedErblb;

constexpr int kRuns = 24;
constexpr int kTimeToReachTheLock = 200000;  // microseconds; where they do not do, a test proves less

class ErblbParallel : public ErblbTest {
 protected:
  // Keeps others waiting until it is closed.
  File lock(const std::string& name) const {
    File file(std::fopen(folder.path(name).c_str(), "re"));
    EXPECT_EQ(flock(fileno(file.get()), LOCK_EX), 0);
    return file;
  }

  void finishAll(const std::vector<StartedErblb>& started) const {
    for (const StartedErblb& each : started) {
      const auto done = finish(each);
      EXPECT_EQ(done.status, 0) << done.err;
    }
  }
};

TEST_F(ErblbParallel, AppendsLoseNothing) {
  folder.write("x", BlobBuilder().build());
  std::vector<StartedErblb> started;
  started.reserve(kRuns);
  for (int i = 0; i < kRuns; ++i) {
    const std::string name = "f" + std::to_string(i);
    folder.write(name, ramp(100000 + i, i));
    started.push_back(start({"append", "x", name}));
  }
  finishAll(started);
  for (int i = 0; i < kRuns; ++i) EXPECT_EQ(payload("x", "f" + std::to_string(i)), ramp(100000 + i, i)) << i;
}

TEST_F(ErblbParallel, DeletionsLoseNothing) {
  BlobBuilder builder;
  for (int i = 0; i < kRuns; ++i) builder.chunk("f" + std::to_string(i), ramp(9));
  folder.write("x", builder.chunk("stays", ramp(3)).build());
  std::vector<StartedErblb> started;
  started.reserve(kRuns);
  for (int i = 0; i < kRuns; ++i) started.push_back(start({"delete", "x", "f" + std::to_string(i)}));
  finishAll(started);
  EXPECT_EQ(run({"list", "x"}).out.find('f', 40), std::string::npos);
  EXPECT_EQ(payload("x", "stays"), ramp(3));
}

TEST_F(ErblbParallel, OneOfSeveralDeletionsOfOneEntryFindsIt) {
  folder.write("x", BlobBuilder().chunk("a", ramp(9)).build());
  std::vector<StartedErblb> started;
  started.reserve(kRuns);
  {
    const File held = lock("x");
    for (int i = 0; i < kRuns; ++i) started.push_back(start({"delete", "x", "a"}));
    usleep(kTimeToReachTheLock);
  }
  int successes = 0;
  for (const StartedErblb& each : started) successes += finish(each).status == 0 ? 1 : 0;
  EXPECT_EQ(successes, 1);
}

TEST_F(ErblbParallel, ABuildDoesNotReplaceWhatCameMeanwhile) {
  folder.write("big", {});
  ASSERT_EQ(truncate(folder.path("big").c_str(), 0x20000000), 0);
  const StartedErblb build = start({"build", "x", "big"});
  const auto files = [this] { return std::distance(fs::directory_iterator(folder.path("")), {}); };
  for (int waited = 0; files() == 1 && waited < 10000; ++waited) usleep(1000);
  EXPECT_FALSE(folder.has("x"));
  folder.write("x", ramp(3));
  const auto done = finish(build);
  EXPECT_EQ(done.status, 1);
  EXPECT_EQ(done.err, "erblb: x: exists already (-f replaces it)\n");
  ASSERT_EQ(fs::file_size(folder.path("x")), 3U);
  EXPECT_EQ(folder.read("x"), ramp(3));
  EXPECT_EQ(files(), 2);
}

TEST_F(ErblbParallel, AnAppendThatWaitedGoesToTheFileThatHasTheNameNow) {
  folder.write("a", ramp(5));
  folder.write("x", BlobBuilder().chunk("old").build());
  StartedErblb waiting;
  {
    const File held = lock("x");
    waiting = start({"append", "x", "a"});
    usleep(kTimeToReachTheLock);
    runQuietly({"build", "x", "new=a", "-f"});
  }
  EXPECT_EQ(finish(waiting).status, 0);
  EXPECT_EQ(payload("x", "new"), ramp(5));
  EXPECT_EQ(payload("x", "a"), ramp(5));
}

}  // namespace
