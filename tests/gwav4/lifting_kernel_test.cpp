#include "gwav4/lifting_kernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include "gwav4/filter5_3.h"
#include "gwav4/kernels.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using testing::ElementsAre;
using zel::gwav4::avx2Kernels;
using zel::gwav4::CFilter5_3;
using zel::gwav4::Kernels;
using zel::gwav4::kernels;
using zel::gwav4::kLeastNarrow;
using zel::gwav4::kMostNarrow;
using zel::gwav4::kRowSlack;
using zel::gwav4::LiftingKernel;
using zel::gwav4::portableKernels;

// ------------------------------------------------------------------------------- the steps, one sample at a time

std::int64_t wrappedTo32(std::int64_t value) { return static_cast<std::int32_t>(value); }

/// Half and a quarter of a sum of 32 bits, halves rounded away from zero; the rounding itself wraps at the ends.
std::int64_t half(std::int64_t sum) {
  const std::int64_t v = wrappedTo32(sum);
  return wrappedTo32(v + (v < 0 ? 0 : 1)) >> 1;
}
std::int64_t quarter(std::int64_t sum) {
  const std::int64_t v = wrappedTo32(sum);
  return wrappedTo32(v + (v < 0 ? 1 : 2)) >> 2;
}

TEST(LiftingReference, TakesHalvesAwayFromZero) {
  EXPECT_EQ(half(-1), -1);
  EXPECT_EQ(half(1), 1);
  EXPECT_EQ(half(-3), -2);
  EXPECT_EQ(quarter(-2), -1);
  EXPECT_EQ(quarter(-1), 0);
  EXPECT_EQ(quarter(6), 2);
  for (int v = -2000; v <= 2000; ++v) {
    const int sign = v < 0 ? -1 : 1;
    ASSERT_EQ(half(v), sign * ((std::abs(v) + 1) >> 1)) << v;
    ASSERT_EQ(quarter(v), sign * ((std::abs(v) + 2) >> 2)) << v;
  }
}

/// How a kernel keeps its samples. Narrow ones are kept as they are: the kernel promises them only where they fit.
struct Narrow {
  using Lane = std::int16_t;
  static std::int64_t stored(std::int64_t value) { return value; }
  static bool isWithin(std::int64_t value) { return value >= kLeastNarrow && value <= kMostNarrow; }
  static Lane any(Dice& dice) { return static_cast<Lane>(dice.any()); }
  static Lane within(Dice& dice) { return static_cast<Lane>(dice.between(kLeastNarrow, kMostNarrow)); }
};
struct Wide {
  using Lane = std::int32_t;
  static std::int64_t stored(std::int64_t value) { return static_cast<std::int32_t>(value); }
  static bool isWithin(std::int64_t) { return true; }
  static Lane any(Dice& dice) { return dice.any(); }
  static Lane within(Dice& dice) { return dice.any(); }
};
struct Wrapped {
  using Lane = std::int32_t;
  static std::int64_t stored(std::int64_t value) { return static_cast<std::int16_t>(value); }
  static bool isWithin(std::int64_t) { return true; }
  static Lane any(Dice& dice) { return static_cast<std::int16_t>(dice.any()); }
  static Lane within(Dice& dice) { return any(dice); }
};

/// A row with what is behind it: zeros or anything within the slack, then guards.
template <class Lane>
class Row {
 public:
  explicit Row(std::size_t count) : m_Count(count), m_Lanes(count + kRowSlack + kGuards) {
    std::fill(m_Lanes.end() - kGuards, m_Lanes.end(), kGuard);
  }
  template <class Values>
  explicit Row(const Values& values) : Row(values.size()) {
    std::copy(values.begin(), values.end(), m_Lanes.begin());
  }

  Lane* data() { return m_Lanes.data(); }
  Lane& operator[](std::size_t i) { return m_Lanes[i]; }
  std::vector<Lane> values() const {
    return {m_Lanes.begin(), m_Lanes.begin() + static_cast<std::ptrdiff_t>(m_Count)};
  }
  void spoilSlack(Dice& dice) {
    for (std::size_t i = m_Count; i < m_Count + kRowSlack; ++i) m_Lanes[i] = static_cast<Lane>(dice.any());
  }
  bool isGuarded() const { return std::count(m_Lanes.end() - kGuards, m_Lanes.end(), kGuard) == kGuards; }

 private:
  static constexpr std::ptrdiff_t kGuards = 40;
  static constexpr Lane kGuard = 0x5A5A;

  std::size_t m_Count;
  std::vector<Lane> m_Lanes;
};

template <class Lane>
std::vector<std::int64_t> widened(const std::vector<Lane>& lanes) {
  return {lanes.begin(), lanes.end()};
}

/// What the kernel made of a row whose samples should be `wanted`.
template <class Kind>
void expectMade(bool answer, const Row<typename Kind::Lane>& made, const std::vector<std::int64_t>& wanted,
                bool slackIsZero) {
  const bool within = std::all_of(wanted.begin(), wanted.end(), Kind::isWithin);
  if (!within) {
    ASSERT_FALSE(answer);
  } else if (slackIsZero) {
    ASSERT_TRUE(answer);
  }
  if (answer) {
    ASSERT_EQ(widened(made.values()), wanted);
  }
  ASSERT_TRUE(made.isGuarded());
}

/// Random rows, small or large, of every length.
template <class Kind, class Body>
void forRandomRows(Body body) {
  unsigned seed = 0;
  std::vector<std::size_t> counts = {100, 127, 128, 129, 255, 1000};
  for (std::size_t count = 0; count <= 70; ++count) counts.push_back(count);
  for (const std::size_t count : counts) {
    for (int round = 0; round < 12; ++round) {
      Dice dice(++seed);
      SCOPED_TRACE("count " + std::to_string(count) + ", seed " + std::to_string(seed));
      body(dice, count, round);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

/// Rounds: all small; all that there is, and often the very limits; large ones that mostly stay within them.
/// limited: never beyond the limits.
template <class Kind>
typename Kind::Lane sample(Dice& dice, int round, bool limited) {
  using Lane = typename Kind::Lane;
  const int limit = dice.chance(2) ? kLeastNarrow : kMostNarrow;
  if (round % 3 == 0) return static_cast<Lane>(dice.between(-300, 300));
  if (round % 3 == 1) {
    if (dice.chance(2)) return static_cast<Lane>(limit);
    return limited ? Kind::within(dice) : Kind::any(dice);
  }
  if (limited || !dice.chance(40)) return static_cast<Lane>(dice.between(-(1 << 12), 1 << 12));
  return static_cast<Lane>(limit + dice.between(-5000, 5000));
}

template <class Kind>
Row<typename Kind::Lane> randomRow(Dice& dice, std::size_t count, int round, bool limited) {
  Row<typename Kind::Lane> row(count);
  for (std::size_t i = 0; i < count; ++i) row[i] = sample<Kind>(dice, round, limited);
  if (round % 2 == 1) row.spoilSlack(dice);
  return row;
}

template <class Kind>
void lowerEvensAsTheStepsDo(const LiftingKernel<typename Kind::Lane>& kernel) {
  using Lane = typename Kind::Lane;
  forRandomRows<Kind>([&](Dice& dice, std::size_t count, int round) {
    auto from = randomRow<Kind>(dice, count, round, false);
    auto before = randomRow<Kind>(dice, count, round, true);
    auto after = randomRow<Kind>(dice, count, round, true);
    std::vector<std::int64_t> inside;
    std::vector<std::int64_t> atEnd;
    for (std::size_t i = 0; i < count; ++i) {
      inside.push_back(Kind::stored(from[i] - quarter(std::int64_t{before[i]} + after[i])));
      atEnd.push_back(Kind::stored(from[i] - half(before[i])));
    }
    const bool zeros = round % 2 == 0;
    Row<Lane> even(count);
    expectMade<Kind>(kernel.lowerEven(even.data(), from.data(), before.data(), after.data(), count), even,
                     inside, zeros);
    auto inPlace = from;
    expectMade<Kind>(kernel.lowerEven(inPlace.data(), inPlace.data(), before.data(), after.data(), count),
                     inPlace, inside, zeros);
    Row<Lane> end(count);
    expectMade<Kind>(kernel.lowerEvenAtEnd(end.data(), from.data(), before.data(), count), end, atEnd, zeros);
    inPlace = from;
    expectMade<Kind>(kernel.lowerEvenAtEnd(inPlace.data(), inPlace.data(), before.data(), count), inPlace,
                     atEnd, zeros);
  });
}

template <class Kind>
void raiseOddsAsTheStepsDo(const LiftingKernel<typename Kind::Lane>& kernel) {
  forRandomRows<Kind>([&](Dice& dice, std::size_t count, int round) {
    const auto odd = randomRow<Kind>(dice, count, round, false);
    auto before = randomRow<Kind>(dice, count, round, true);
    auto after = randomRow<Kind>(dice, count, round, true);
    const auto from = odd.values();
    std::vector<std::int64_t> inside;
    std::vector<std::int64_t> atEnd;
    for (std::size_t i = 0; i < count; ++i) {
      inside.push_back(Kind::stored(from[i] + half(std::int64_t{before[i]} + after[i])));
      atEnd.push_back(Kind::stored(std::int64_t{from[i]} + before[i]));
    }
    const bool zeros = round % 2 == 0;
    auto raised = odd;
    expectMade<Kind>(kernel.raiseOdd(raised.data(), before.data(), after.data(), count), raised, inside,
                     zeros);
    raised = odd;
    expectMade<Kind>(kernel.raiseOddAtEnd(raised.data(), before.data(), count), raised, atEnd, zeros);
  });
}

/// The whole line in its interleaved layout, step by step.
template <class Kind>
std::vector<std::int64_t> invertedLine(std::vector<std::int64_t> a) {
  const std::size_t n = a.size();
  if (n < 2) return a;
  const auto mirrored = [n](std::size_t p) { return p < n ? p : 2 * (n - 1) - p; };
  for (std::size_t p = 0; p < n; p += 2) {
    const std::int64_t left = a[p == 0 ? 1 : p - 1];
    a[p] = Kind::stored(a[p] - (p == 0 || p + 1 == n ? half(left) : quarter(left + a[p + 1])));
  }
  for (std::size_t p = 1; p < n; p += 2) {
    a[p] = Kind::stored(a[p] + (p + 1 == n ? a[p - 1] : half(a[p - 1] + a[mirrored(p + 1)])));
  }
  return a;
}

template <class Kind>
void invertRowsAsTheStepsDo(const LiftingKernel<typename Kind::Lane>& kernel) {
  using Lane = typename Kind::Lane;
  forRandomRows<Kind>([&](Dice& dice, std::size_t count, int round) {
    auto low = randomRow<Kind>(dice, (count + 1) / 2, round, false);
    auto high = randomRow<Kind>(dice, count / 2, round, true);
    std::vector<std::int64_t> line;
    for (std::size_t i = 0; i < count; ++i) line.push_back(i % 2 == 0 ? low[i / 2] : high[i / 2]);
    const auto wanted = invertedLine<Kind>(line);
    Row<Lane> out(count);
    const bool answer = kernel.invertRow(low.data(), high.data(), count, out.data());
    ASSERT_TRUE(out.isGuarded());
    ASSERT_TRUE(low.isGuarded());
    if (answer) {
      ASSERT_EQ(widened(out.values()), wanted);
    }
    if (count < 2) return;
    // An odd sample may leave the limits, if it is not the last one: it is exact still.
    bool evensWithin = true;
    for (std::size_t p = 0; p < count; p += 2) evensWithin &= Kind::isWithin(wanted[p]);
    if (!evensWithin) {
      ASSERT_FALSE(answer);
    } else if (round % 2 == 0 && std::all_of(wanted.begin(), wanted.end(), Kind::isWithin)) {
      ASSERT_TRUE(answer);
    }
  });
}

template <class Kind>
void splitRows(const LiftingKernel<typename Kind::Lane>& kernel) {
  using Lane = typename Kind::Lane;
  forRandomRows<Kind>([&](Dice& dice, std::size_t count, int round) {
    auto row = randomRow<Kind>(dice, count, round, false);
    Row<Lane> even((count + 1) / 2);
    Row<Lane> odd(count / 2);
    kernel.split(row.data(), count, even.data(), odd.data());
    for (std::size_t i = 0; i < count; ++i) ASSERT_EQ(row[i], i % 2 == 0 ? even[i / 2] : odd[i / 2]) << i;
    ASSERT_TRUE(even.isGuarded());
    ASSERT_TRUE(odd.isGuarded());
  });
}

class LiftingKernels : public testing::TestWithParam<const Kernels* (*)()> {
 protected:
  void SetUp() override {
    if (GetParam()() == nullptr) GTEST_SKIP() << "this processor or build lacks them";
  }
  const Kernels& tested() const { return *GetParam()(); }
};

INSTANTIATE_TEST_SUITE_P(Each, LiftingKernels,
                         testing::Values([] { return &portableKernels(); }, &avx2Kernels),
                         [](const auto& test) { return test.index == 0 ? "Portable" : "Avx2"; });

TEST_P(LiftingKernels, LowerEvensAsTheStepsDo) {
  lowerEvensAsTheStepsDo<Narrow>(tested().narrow.lifting);
  lowerEvensAsTheStepsDo<Wide>(tested().wide.lifting);
  lowerEvensAsTheStepsDo<Wrapped>(tested().wrapped.lifting);
}

TEST_P(LiftingKernels, RaiseOddsAsTheStepsDo) {
  raiseOddsAsTheStepsDo<Narrow>(tested().narrow.lifting);
  raiseOddsAsTheStepsDo<Wide>(tested().wide.lifting);
  raiseOddsAsTheStepsDo<Wrapped>(tested().wrapped.lifting);
}

TEST_P(LiftingKernels, InvertRowsAsTheStepsDo) {
  invertRowsAsTheStepsDo<Narrow>(tested().narrow.lifting);
  invertRowsAsTheStepsDo<Wide>(tested().wide.lifting);
  invertRowsAsTheStepsDo<Wrapped>(tested().wrapped.lifting);
}

TEST_P(LiftingKernels, SplitRows) {
  splitRows<Narrow>(tested().narrow.lifting);
  splitRows<Wide>(tested().wide.lifting);
  splitRows<Wrapped>(tested().wrapped.lifting);
}

// ------------------------------------------------------------------------------------------- worked out by hand

template <class Lane>
std::vector<Lane> inverted(const LiftingKernel<Lane>& kernel, const std::vector<int>& line) {
  Row<Lane> low((line.size() + 1) / 2);
  Row<Lane> high(line.size() / 2);
  for (std::size_t i = 0; i < line.size(); ++i) (i % 2 == 0 ? low : high)[i / 2] = static_cast<Lane>(line[i]);
  Row<Lane> out(line.size());
  EXPECT_TRUE(kernel.invertRow(low.data(), high.data(), line.size(), out.data()));
  return out.values();
}

template <class Lane>
void expectTheLineEnds(const LiftingKernel<Lane>& kernel) {
  EXPECT_THAT(inverted(kernel, {}), ElementsAre());
  EXPECT_THAT(inverted(kernel, {10}), ElementsAre(10));
  EXPECT_THAT(inverted(kernel, {10, 3}), ElementsAre(8, 11));
  EXPECT_THAT(inverted(kernel, {10, 3, 7}), ElementsAre(8, 10, 5));
  EXPECT_THAT(inverted(kernel, {10, 3, 7, -2}), ElementsAre(8, 11, 7, 5));
  EXPECT_THAT(inverted(kernel, {10, 3, 7, -2, 4}), ElementsAre(8, 11, 7, 4, 5));
  EXPECT_THAT(inverted(kernel, {10, 3, 7, -2, 4, -9}), ElementsAre(8, 11, 7, 5, 7, -2));
}

TEST_P(LiftingKernels, FollowTheStepsAtEveryLineEnd) {
  expectTheLineEnds(tested().narrow.lifting);
  expectTheLineEnds(tested().wide.lifting);
  expectTheLineEnds(tested().wrapped.lifting);
}

TEST_P(LiftingKernels, SumShortsIn32BitsAndStoreThemIn16) {
  const auto& kernel = tested().wrapped.lifting;
  // 32767 + 32767 does not wrap before it is quartered, but -32768 - 16384 does when it is stored.
  Row<std::int32_t> high(std::vector<int>{32767});
  Row<std::int32_t> even(std::vector<int>{-32768});
  kernel.lowerEven(even.data(), even.data(), high.data(), high.data(), 1);
  EXPECT_EQ(even[0], 16384);
  Row<std::int32_t> odd(std::vector<int>{32767});
  kernel.raiseOddAtEnd(odd.data(), high.data(), 1);
  EXPECT_EQ(odd[0], -2);
}

TEST_P(LiftingKernels, WrapSumsOf32Bits) {
  constexpr int kMost = std::numeric_limits<int>::max();
  Row<std::int32_t> most(std::vector<int>{kMost});
  Row<std::int32_t> odd(std::vector<int>{0});
  tested().wide.lifting.raiseOdd(odd.data(), most.data(), most.data(), 1);  // kMost + kMost wraps to -2
  EXPECT_EQ(odd[0], -1);
  Row<std::int32_t> even(std::vector<int>{0});
  tested().wide.lifting.lowerEvenAtEnd(even.data(), even.data(), most.data(), 1);  // kMost + 1 wraps to -2^31
  EXPECT_EQ(even[0], 1 << 30);
}

/// Each sample by itself at and just beyond a limit, at every place of a row of a few vectors.
TEST_P(LiftingKernels, WatchEverySampleOfANarrowRow) {
  const auto& kernel = tested().narrow.lifting;
  constexpr std::size_t kCount = 50;
  const Row<std::int16_t> zeros(kCount);
  for (std::size_t i = 0; i < kCount; ++i) {
    for (const int value : {kLeastNarrow - 1, kLeastNarrow, kMostNarrow, kMostNarrow + 1}) {
      const bool within = Narrow::isWithin(value);
      Row<std::int16_t> before = zeros;
      Row<std::int16_t> row = zeros;
      row[i] = static_cast<std::int16_t>(value);
      Row<std::int16_t> other = row;
      EXPECT_EQ(kernel.lowerEven(other.data(), row.data(), before.data(), before.data(), kCount), within)
          << i;
      EXPECT_EQ(kernel.lowerEvenAtEnd(other.data(), row.data(), before.data(), kCount), within) << i;
      other = row;
      EXPECT_EQ(kernel.raiseOdd(other.data(), before.data(), before.data(), kCount), within) << i;
      other = row;
      EXPECT_EQ(kernel.raiseOddAtEnd(other.data(), before.data(), kCount), within) << i;
      for (const std::size_t count : {2 * kCount - 1, 2 * kCount}) {
        Row<std::int16_t> out(count);
        other = row;
        EXPECT_EQ(kernel.invertRow(other.data(), before.data(), count, out.data()), within)
            << i << " of " << count;
      }
    }
  }
}

TEST(Filter, SumsIn32BitsAndStoresAsItsSamplesDo) {
  EXPECT_EQ(&CFilter5_3<short>::kernel(), &kernels().wrapped);
  EXPECT_EQ(&CFilter5_3<int>::kernel(), &kernels().wide);
}

}  // namespace
}  // namespace ei4::test
