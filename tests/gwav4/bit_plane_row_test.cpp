#include "gwav4/bit_plane_row.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "gwav4/decoder_state.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using zel::gwav4::BitPlaneRow;
using zel::gwav4::bmi2RowKernel;
using zel::gwav4::CBitReader;
using zel::gwav4::ChunkKind;
using zel::gwav4::DecoderState;
using zel::gwav4::OrderStreams;
using zel::gwav4::portableRowKernel;
using zel::gwav4::RowKernel;
using zel::gwav4::RowMasks;

/// Chunks of one order: where each starts in some random bytes.
struct Chunks {
  int top = 0;
  int lowestSignificance = 0;
  int lowestRefinement = 0;
  std::vector<unsigned char> bytes;

  template <int Positions>
  std::unique_ptr<DecoderState<Positions>> place() const {
    auto state = std::make_unique<DecoderState<Positions>>();
    state->reset(top);
    Dice dice(7);
    const auto reader = [&] {
      CBitReader at(bytes.data(), bytes.size());
      at.skipBits(static_cast<std::uint64_t>(dice.below(8 * static_cast<int>(bytes.size()))));
      return at;
    };
    for (int b = top; b >= lowestSignificance; --b) {
      state->placeSignificance(0, 0, state->takePosition(0, 0, ChunkKind::significance), !dice.chance(8),
                               reader());
    }
    for (int b = top - 1; b >= lowestRefinement; --b) {
      state->placeRefinement(0, 0, state->takePosition(0, 0, ChunkKind::refinement), reader());
    }
    return state;
  }
};

// One coefficient at a time, as the format describes it: in doubled values, so that the lowest bit is the
// sign.
std::int64_t rebuild(const OrderStreams& streams) {
  for (int b = streams.top; b >= streams.lowestSignificance; --b) {
    const int sign = streams.coders[b].step();
    if (sign == 0) continue;
    std::int64_t value = std::int64_t{1} << (b + 1);
    int last = b;
    for (int lower = b - 1; lower >= streams.lowestRefinement; --lower) {
      if (streams.streamers[lower].takeBit() != 0) value |= std::int64_t{1} << (lower + 1);
      last = lower;
    }
    const std::int64_t next = std::int64_t{1} << last;
    if (next > 2) value |= next / 2;
    return sign < 0 ? -(value >> 1) : value >> 1;
  }
  return 0;
}

Chunks randomChunks(Dice& dice, int positions) {
  Chunks chunks;
  chunks.top = dice.between(-1, positions - 1);
  chunks.lowestSignificance = dice.between(0, chunks.top + 1);
  chunks.lowestRefinement = chunks.top < 0 ? -1 : dice.between(0, chunks.top);
  chunks.bytes = dice.bytes(dice.between(1, 400), dice.below(4));  // sparse bits make long runs
  return chunks;
}

template <class T>
void compareWithOneByOne(unsigned seed) {
  constexpr int kPositions = 8 * sizeof(T);
  Dice dice(seed);
  const Chunks chunks = randomChunks(dice, kPositions);
  const int longest = dice.between(1, 300);
  const auto fast = chunks.place<kPositions>();
  const auto slow = chunks.place<kPositions>();
  BitPlaneRow rows(longest, kPositions);
  for (int row = 0; row < 4; ++row) {  // the streams go on from row to row
    const int count = dice.between(0, longest);
    const int step = dice.between(1, 3);
    std::vector<T> got(static_cast<std::size_t>(count * step) + 1);
    rows.decode(fast->streams(0, 0), count, got.data(), step);
    std::vector<T> wanted(got.size());
    for (int i = 0; i < count; ++i) {
      wanted[static_cast<std::size_t>(i) * static_cast<std::size_t>(step)] =
          static_cast<T>(rebuild(slow->streams(0, 0)));
    }
    ASSERT_EQ(got, wanted) << "seed " << seed << ", row " << row << " of " << count << ", top " << chunks.top
                           << ", significance to " << chunks.lowestSignificance << ", refinement to "
                           << chunks.lowestRefinement;
  }
}

TEST(BitPlaneRow, EqualsRebuildingShortsOneByOne) {
  for (unsigned seed = 0; seed < 400; ++seed) compareWithOneByOne<short>(seed);
}

TEST(BitPlaneRow, EqualsRebuildingIntsOneByOne) {
  for (unsigned seed = 0; seed < 400; ++seed) compareWithOneByOne<int>(seed);
}

TEST(BitPlaneRow, WritesNothingWhenNothingIsCoded) {
  const auto state = std::make_unique<DecoderState<16>>();
  state->reset(-1);
  BitPlaneRow rows(10, 16);
  std::vector<short> out(10, 77);
  rows.decode(state->streams(0, 0), 10, out.data(), 1);
  rows.decode(state->streams(0, 0), 0, out.data(), 1);
  EXPECT_EQ(out, std::vector<short>(10, 77));
}

// Both kernels' masks and results, where the processor has the second one.
TEST(RowKernels, AgreeWithEachOther) {
  const RowKernel* other = bmi2RowKernel();
  if (other == nullptr) GTEST_SKIP() << "this processor or build has one kernel only";
  for (unsigned seed = 0; seed < 400; ++seed) {
    Dice dice(seed);
    const Chunks chunks = randomChunks(dice, 32);
    const int count = dice.between(1, 300);
    std::vector<std::vector<std::uint64_t>> masks;
    std::vector<std::vector<int>> stored;
    for (const RowKernel* kernel : {&portableRowKernel(), other}) {
      const auto state = chunks.place<32>();
      const std::size_t words = (static_cast<std::size_t>(count) + 63) / 64;
      auto& memory = masks.emplace_back(words * 34);
      auto& out = stored.emplace_back(2 * static_cast<std::size_t>(count));
      const RowMasks row = {words, memory.data(), memory.data() + words, memory.data() + 2 * words};
      if (chunks.lowestSignificance <= chunks.top) kernel->readRow(state->streams(0, 0), count, row);
      kernel->store32(row, count, chunks.top + 1, out.data(), 2);
    }
    ASSERT_EQ(masks[0], masks[1]) << "seed " << seed;
    ASSERT_EQ(stored[0], stored[1]) << "seed " << seed;
  }
}

TEST(RowKernels, StoreOnlyWordsWithSignificantCoefficients) {
  for (const RowKernel* kernel : {&portableRowKernel(), bmi2RowKernel()}) {
    if (kernel == nullptr) continue;
    constexpr std::size_t kWords = 2;
    std::vector<std::uint64_t> memory(kWords * 18);
    const RowMasks row = {kWords, memory.data(), memory.data() + kWords, memory.data() + 2 * kWords};
    row.significant[1] = 0b101;
    row.negative[1] = 0b100;
    row.planes[0 * kWords + 1] = 0b100;   // bit 0 of coefficient 66
    row.planes[15 * kWords + 1] = 0b001;  // bit 15 of coefficient 64
    std::vector<short> out(67, 77);
    kernel->store16(row, 67, 16, out.data(), 1);
    EXPECT_EQ(out[63], 77);
    EXPECT_EQ(out[64], -32768);
    EXPECT_EQ(out[65], 0);
    EXPECT_EQ(out[66], -1);
  }
}

}  // namespace
}  // namespace ei4::test
