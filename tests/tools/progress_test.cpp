#include "terminal/progress.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using ei4::tools::Progress;
using ei4::tools::ProgressTerminal;

class ProgressTest : public testing::Test {
 protected:
  ProgressTerminal terminal() {
    return {[this] { return now; }, [this] { return columns; },
            [this](std::string_view text) { written.emplace_back(text); }};
  }

  double now = 1000;
  int columns = 60;
  std::vector<std::string> written;
};

const std::string kErase = "\r\x1b[K";

TEST_F(ProgressTest, ShowsNothingOfWorkThatIsShort) {
  {
    Progress progress(terminal());
    progress.expect(100, 0);
    for (int i = 0; i < 100; ++i) {
      now += 0.0049;
      progress.advance(1, 0);
    }
  }
  EXPECT_TRUE(written.empty());
}

TEST_F(ProgressTest, DrawsAtMostTenTimesASecond) {
  Progress progress(terminal());
  progress.expect(3000, 0);
  for (int i = 0; i < 3000; ++i) {
    now += 0.001;
    progress.advance(1, 0);
  }
  EXPECT_GE(written.size(), 24U);  // in 2.5 seconds behind the first half
  EXPECT_LE(written.size(), 26U);
  for (const std::string& text : written) EXPECT_EQ(text.substr(0, kErase.size()), kErase);
}

TEST_F(ProgressTest, LeavesTheLineEmptyAtItsEnd) {
  {
    Progress progress(terminal());
    progress.expect(2, 0);
    now += 1;
    progress.advance(1, 0);
    EXPECT_EQ(written.size(), 1U);
  }
  ASSERT_EQ(written.size(), 2U);
  EXPECT_EQ(written.back(), kErase);
}

TEST_F(ProgressTest, LeavesTheLineEmptyAfterAnException) {
  try {
    Progress progress(terminal());
    progress.expect(2, 0);
    now += 1;
    progress.advance(1, 0);
    throw std::runtime_error("enough");
  } catch (const std::runtime_error&) {
    ASSERT_FALSE(written.empty());
    EXPECT_EQ(written.back(), kErase);
  }
}

TEST_F(ProgressTest, MakesRoomForMessagesAndComesBackAtOnce) {
  Progress progress(terminal());
  progress.expect(4, 0);
  progress.hide();
  EXPECT_TRUE(written.empty()) << "there was nothing to take away";
  now += 1;
  progress.advance(1, 0);
  progress.hide();
  progress.hide();
  ASSERT_EQ(written.size(), 2U);
  EXPECT_EQ(written[1], kErase);
  progress.advance(1, 0);  // at the same time
  ASSERT_EQ(written.size(), 3U);
  EXPECT_NE(written[2].find(" 2/4"), std::string::npos);
}

TEST_F(ProgressTest, LeavesTheLastColumnFreeAndFollowsTheTerminalsWidth) {
  Progress progress(terminal());
  progress.expect(400, 0);
  for (columns = 0; columns < 100; ++columns) {
    now += 1;
    progress.advance(1, 0);
    EXPECT_LT(static_cast<int>(written.back().size() - kErase.size()), std::max(columns, 1));
  }
}

TEST_F(ProgressTest, DoesNothingWithoutATerminal) {
  Progress progress(std::nullopt);
  EXPECT_FALSE(progress.isShown());
  progress.expect(1, 1);
  progress.advance(1, 1);
  progress.hide();
}

TEST(ProgressOnStderr, IsNotForTerminalsThatCannotErase) {
  for (const char* term : {"dumb", ""}) {
    ASSERT_EQ(setenv("TERM", term, 1), 0);
    EXPECT_FALSE(ei4::tools::progressOnStderr());
  }
  ASSERT_EQ(unsetenv("TERM"), 0);
  EXPECT_FALSE(ei4::tools::progressOnStderr());
}

}  // namespace
