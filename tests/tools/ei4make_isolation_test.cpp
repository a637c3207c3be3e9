#include "ei4make/isolation.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace {

using ei4::tools::SharedBytes;
using ei4::tools::succeedsInIsolation;

TEST(SucceedsInIsolation, BringsBackSharedBytesOnly) {
  const SharedBytes shared(100000);
  int other = 1;
  EXPECT_TRUE(succeedsInIsolation(
      [&] {
        shared.bytes()[99999] = 7;
        other = 2;
        return true;
      },
      10));
  EXPECT_EQ(shared.bytes()[99999], 7);
  EXPECT_EQ(shared.bytes()[0], 0);
  EXPECT_EQ(other, 1);
}

TEST(SucceedsInIsolation, AnswersFalseHoweverTheWorkEnds) {
  EXPECT_FALSE(succeedsInIsolation([] { return false; }, 10));
  EXPECT_FALSE(succeedsInIsolation([]() -> bool { throw std::runtime_error("any"); }, 10));
  EXPECT_FALSE(succeedsInIsolation([] { return std::raise(SIGKILL) == 0; }, 10));
  EXPECT_FALSE(succeedsInIsolation([]() -> bool { _exit(0); }, 10));
  volatile bool isForever = true;
  EXPECT_FALSE(succeedsInIsolation(
      [&] {
        while (isForever) {
        }
        return true;
      },
      1));
}

TEST(SucceedsInIsolation, WorksWhereEndedProcessesAreIgnored) {
  auto* const before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_TRUE(succeedsInIsolation([] { return true; }, 10));
  EXPECT_FALSE(succeedsInIsolation([] { return false; }, 10));
  std::signal(SIGCHLD, before);
}

}  // namespace
