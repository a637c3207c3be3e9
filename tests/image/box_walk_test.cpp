#include "image/box_walk.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>
#include <vector>

namespace {

using Weights = std::map<std::int64_t, std::int64_t>;

Weights weightsOf(const BoxSpan& span, std::int64_t refill) {
  Weights weights;
  if (span.first != 0) weights[span.begin] += span.first;
  for (std::int64_t i = 0; i < span.full; ++i) weights[span.fullBegin + i] += refill;
  if (span.last != 0) weights[span.end] += span.last;
  return weights;
}

TEST(BoxWalk, CoversFiveByThree) {
  BoxWalk walk = BoxWalk::From(/*first=*/0, /*source=*/5, /*displayed=*/3, /*position=*/0);
  EXPECT_EQ(weightsOf(walk.Next(), 3), (Weights{{0, 3}, {1, 2}}));
  EXPECT_EQ(weightsOf(walk.Next(), 3), (Weights{{1, 1}, {2, 3}, {3, 1}}));
  EXPECT_EQ(weightsOf(walk.Next(), 3), (Weights{{3, 2}, {4, 3}}));
}

TEST(BoxWalk, StaysOnASourcePixelThatIsEnlarged) {
  BoxWalk walk = BoxWalk::From(0, 2, 5, 0);
  EXPECT_EQ(weightsOf(walk.Next(), 5), (Weights{{0, 2}}));
  EXPECT_EQ(weightsOf(walk.Next(), 5), (Weights{{0, 2}}));
  EXPECT_EQ(weightsOf(walk.Next(), 5), (Weights{{0, 1}, {1, 1}}));
}

TEST(BoxWalk, WeighsTheTrueOverlapAtEveryScale) {
  for (std::int64_t source = 1; source <= 13; ++source) {
    for (std::int64_t displayed = 1; displayed <= 13; ++displayed) {
      for (std::int64_t first = 0; first < displayed; ++first) {
        BoxWalk walk = BoxWalk::From(first, source, displayed, first * source / displayed);
        for (std::int64_t at = first; at < displayed; ++at) {
          Weights
              overlap;  // unit by unit: displayed pixel `at` spans `source` units, a source pixel `displayed`
          for (std::int64_t unit = at * source; unit < (at + 1) * source; ++unit) ++overlap[unit / displayed];
          EXPECT_EQ(weightsOf(walk.Next(), displayed), overlap)
              << source << " as " << displayed << " at " << at;
        }
      }
    }
  }
}

TEST(BoxWalk, MovesOnFirstWhenItsCounterWasHalvedToNothing) {
  BoxWalk walk{/*counter=*/1, /*unit=*/6, /*refill=*/4, /*position=*/0};
  walk.Halve();
  EXPECT_EQ(weightsOf(walk.Next(), 2), (Weights{{1, 2}, {2, 1}}));
  EXPECT_EQ(weightsOf(walk.Next(), 2), (Weights{{2, 1}, {3, 2}}));
}

TEST(BoxWalk, SpansKnowWhatTheyTouch) {
  const auto touched = [](const BoxSpan& span) { return std::pair(span.First(), span.Last()); };
  const BoxSpan all{/*begin=*/2, /*first=*/5, /*fullBegin=*/3, /*full=*/4, /*end=*/7, /*last=*/6};
  EXPECT_EQ(touched(all), std::pair(2L, 8L));
  EXPECT_EQ(touched({2, 0, 3, 4, 7, 6}), std::pair(3L, 8L));
  EXPECT_EQ(touched({2, 0, 3, 0, 7, 6}), std::pair(7L, 8L));
  EXPECT_EQ(touched({2, 5, 3, 4, 7, 0}), std::pair(2L, 7L));
  EXPECT_EQ(touched({2, 5, 3, 0, 3, 0}), std::pair(2L, 3L));
  EXPECT_FALSE(all.IsEmpty());
  EXPECT_TRUE((BoxSpan{2, 0, 3, 0, 7, 0}).IsEmpty());
}

TEST(BoxWalk, CutsWhatLiesOutside) {
  const BoxSpan span{/*begin=*/2, /*first=*/5, /*fullBegin=*/3, /*full=*/4, /*end=*/7, /*last=*/6};
  const std::vector<Weights> expected = {{},
                                         {},
                                         {},
                                         {{2, 5}},
                                         {{2, 5}, {3, 9}},
                                         {{2, 5}, {3, 9}, {4, 9}},
                                         {{2, 5}, {3, 9}, {4, 9}, {5, 9}},
                                         {{2, 5}, {3, 9}, {4, 9}, {5, 9}, {6, 9}},
                                         {{2, 5}, {3, 9}, {4, 9}, {5, 9}, {6, 9}, {7, 6}}};
  for (std::size_t limit = 0; limit < expected.size(); ++limit) {
    BoxSpan cut = span;
    cut.CutAt(static_cast<std::int64_t>(limit));
    EXPECT_EQ(weightsOf(cut, 9), expected[limit]) << limit;
  }
}

}  // namespace
