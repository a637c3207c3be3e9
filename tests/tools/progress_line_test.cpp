#include "terminal/progress_line.h"

#include <gtest/gtest.h>

namespace {

using ei4::tools::progressLine;
using ei4::tools::ProgressState;

// Half of the bytes in ten seconds: 120 MB/s, ten more seconds.
const ProgressState kHalf = {
    .items = 19, .itemsInAll = 50, .bytes = 1'200'000'000, .bytesInAll = 2'400'000'000, .seconds = 10};

TEST(ProgressLine, ShowsShareCountBytesRateAndRemainingTime) {
  EXPECT_EQ(progressLine(kHalf, 100),
            "[===============>              ] 50% 19/50  1.2/2.4 GB  120 MB/s  0:10 left");
}

TEST(ProgressLine, GoesByItemsWhereThereAreNoBytes) {
  EXPECT_EQ(progressLine({.items = 30, .itemsInAll = 40, .bytes = 0, .bytesInAll = 0, .seconds = 3}, 60),
            "[======================>       ] 75% 30/40  10/s  0:01 left");
}

TEST(ProgressLine, NeverIsWiderThanTheTerminal) {
  for (int columns = 0; columns < 120; ++columns) {
    EXPECT_LE(progressLine(kHalf, columns).size(), static_cast<std::size_t>(columns));
  }
  EXPECT_EQ(progressLine(kHalf, -1), "");
}

TEST(ProgressLine, GivesUpTheFiguresFromTheRightAndABarThatGetsTooShort) {
  EXPECT_EQ(progressLine(kHalf, 50), " 50% 19/50  1.2/2.4 GB  120 MB/s  0:10 left");
  EXPECT_EQ(progressLine(kHalf, 42), "[====>   ] 50% 19/50  1.2/2.4 GB  120 MB/s");
  EXPECT_EQ(progressLine(kHalf, 12), " 50% 19/50");
  EXPECT_EQ(progressLine(kHalf, 5), " 50%");
}

TEST(ProgressLine, TakesMoreThanAllForAll) {
  const std::string line =
      progressLine({.items = 9, .itemsInAll = 4, .bytes = 10, .bytesInAll = 5, .seconds = 1}, 100);
  EXPECT_EQ(line, "[==============================]100% 9/4  10/5 B  10 B/s  0:00 left");
}

TEST(ProgressLine, HasNoTimeLeftToTellWhereNothingIsDone) {
  EXPECT_EQ(progressLine({.items = 0, .itemsInAll = 4, .bytes = 0, .bytesInAll = 5000, .seconds = 1}, 40),
            "[>          ]  0% 0/4  0.0/5.0 kB  0 B/s");
  EXPECT_EQ(progressLine({}, 40), "[>                             ]  0% 0/0");
}

TEST(ProgressLine, WritesLongTimesInHours) {
  ProgressState slow = kHalf;
  slow.seconds = 3723;
  EXPECT_NE(progressLine(slow, 100).find("  1:02:03 left"), std::string::npos);
  slow.seconds = 1e300;
  EXPECT_NE(progressLine(slow, 100).find("  99:00:00 left"), std::string::npos);
}

}  // namespace
