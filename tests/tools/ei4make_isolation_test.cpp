#include "ei4make/isolation.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace {

using ei4::tools::SharedBytes;
using ei4::tools::succeedsInIsolation;

constexpr std::uint64_t kAmple = std::uint64_t{1} << 30;  // bytes

TEST(SucceedsInIsolation, BringsBackSharedBytesOnly) {
  const SharedBytes shared(100000);
  int other = 1;
  EXPECT_TRUE(succeedsInIsolation(
      [&] {
        shared.bytes()[99999] = 7;
        other = 2;
        return true;
      },
      10, kAmple));
  EXPECT_EQ(shared.bytes()[99999], 7);
  EXPECT_EQ(shared.bytes()[0], 0);
  EXPECT_EQ(other, 1);
}

TEST(SucceedsInIsolation, AnswersFalseHoweverTheWorkEnds) {
  EXPECT_FALSE(succeedsInIsolation([] { return false; }, 10, kAmple));
  EXPECT_FALSE(succeedsInIsolation([]() -> bool { throw std::runtime_error("any"); }, 10, kAmple));
  EXPECT_FALSE(succeedsInIsolation([] { return std::raise(SIGKILL) == 0; }, 10, kAmple));
  EXPECT_FALSE(succeedsInIsolation([]() -> bool { _exit(0); }, 10, kAmple));
  volatile bool isForever = true;
  EXPECT_FALSE(succeedsInIsolation(
      [&] {
        while (isForever) {
        }
        return true;
      },
      1, kAmple));
}

#if !defined(__SANITIZE_ADDRESS__)  // whose builds have no such limit
TEST(SucceedsInIsolation, AnswersFalseWhenTheWorkWantsMoreMemory) {
  constexpr std::size_t kWanted = std::size_t{64} << 20;
  const auto work = [] { return !std::vector<char>(kWanted).empty(); };
  EXPECT_FALSE(succeedsInIsolation(work, 10, kWanted / 2));
  EXPECT_TRUE(succeedsInIsolation(work, 10, 2 * kWanted));
}
#endif

TEST(SucceedsInIsolation, WorksWhereEndedProcessesAreIgnored) {
  auto* const before = std::signal(SIGCHLD, SIG_IGN);
  EXPECT_TRUE(succeedsInIsolation([] { return true; }, 10, kAmple));
  EXPECT_FALSE(succeedsInIsolation([] { return false; }, 10, kAmple));
  std::signal(SIGCHLD, before);
}

}  // namespace
