#include "gwav4/block_kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "encoder/bit_writer.h"
#include "encoder/run_code.h"
#include "gwav4/decoder_state.h"
#include "gwav4/kernels.h"
#include "read_ahead.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using tools::BitWriter;
using zel::gwav4::avx2Kernels;
using zel::gwav4::BlockScratch;
using zel::gwav4::CBitDecoder;
using zel::gwav4::CBitInfiniteReader;
using zel::gwav4::CBitReader;
using zel::gwav4::ChunkKind;
using zel::gwav4::DecoderState;
using zel::gwav4::Kernels;
using zel::gwav4::kMostInBlock;
using zel::gwav4::kMostPositions;
using zel::gwav4::kNarrowPositions;
using zel::gwav4::LaneKernel;
using zel::gwav4::OrderCursors;
using zel::gwav4::portableKernels;

/// The chunks of one order: where each starts in some bytes.
struct Chunks {
  static constexpr std::int64_t kNoData = -1;

  int top = 0;
  int lowestSignificance = 0;
  int lowestRefinement = 0;
  std::vector<unsigned char> bytes;
  std::array<std::int64_t, kMostPositions> significance{};
  std::array<std::int64_t, kMostPositions> refinement{};

  CBitReader readerAt(std::int64_t bit) const {
    CBitReader reader(bytes.data(), bytes.size());
    reader.skipBits(static_cast<std::uint64_t>(bit));
    return reader;
  }

  OrderCursors cursors() const {
    const auto state = std::make_unique<DecoderState<kMostPositions>>(1);
    state->reset(top);
    for (int b = top; b >= lowestSignificance; --b) {
      const std::int64_t at = significance[static_cast<std::size_t>(b)];
      state->placeSignificance(0, 0, state->takePosition(0, 0, ChunkKind::significance), at != kNoData,
                               readerAt(std::max<std::int64_t>(at, 0)));
    }
    for (int b = top - 1; b >= lowestRefinement; --b) {
      state->placeRefinement(0, 0, state->takePosition(0, 0, ChunkKind::refinement),
                             readerAt(refinement[static_cast<std::size_t>(b)]));
    }
    return state->cursors(0, 0);
  }

  std::string described() const {
    return "top " + std::to_string(top) + ", significance to " + std::to_string(lowestSignificance) +
           ", refinement to " + std::to_string(lowestRefinement) + ", " + std::to_string(bytes.size()) +
           " bytes";
  }
};

/// One coefficient at a time, as the format describes it: in doubled values, so that the lowest bit is the sign.
class OneByOne {
 public:
  explicit OneByOne(const Chunks& chunks) : m_Chunks(chunks), m_Coders(kMostPositions) {
    for (int b = chunks.top; b >= chunks.lowestSignificance; --b) {
      const auto at = static_cast<std::size_t>(b);
      if (chunks.significance[at] != Chunks::kNoData) {
        const CBitReader start = chunks.readerAt(chunks.significance[at]);
        m_Sources[at].create(&start, 0);
      }
      m_Coders[at].attach(&m_Sources[at], {});
    }
    for (int b = chunks.top - 1; b >= chunks.lowestRefinement; --b) {
      const auto at = static_cast<std::size_t>(b);
      const CBitReader start = chunks.readerAt(chunks.refinement[at]);
      m_Streamers[at].create(&start, 0);
    }
  }

  std::int64_t next() {
    for (int b = m_Chunks.top; b >= m_Chunks.lowestSignificance; --b) {
      const int sign = m_Coders[static_cast<std::size_t>(b)].step();
      if (sign == 0) continue;
      std::int64_t value = std::int64_t{1} << (b + 1);
      int last = b;
      for (int lower = b - 1; lower >= m_Chunks.lowestRefinement; --lower) {
        if (m_Streamers[static_cast<std::size_t>(lower)].takeBit() != 0)
          value |= std::int64_t{1} << (lower + 1);
        last = lower;
      }
      const std::int64_t below = std::int64_t{1} << last;
      if (below > 2) value |= below / 2;
      return sign < 0 ? -(value >> 1) : value >> 1;
    }
    return 0;
  }

 private:
  const Chunks& m_Chunks;
  std::vector<CBitDecoder> m_Coders;
  std::array<CBitInfiniteReader, kMostPositions> m_Streamers;
  std::array<CBitInfiniteReader, kMostPositions> m_Sources;
};

/// Bits in which whatever a significance stream can hold occurs: runs of every length, escapes, endless runs, noise.
BitWriter randomBits(Dice& dice, int pieces) {
  BitWriter bits;
  const int longestRun = dice.between(1, 14);  // in bits
  const int oddities = dice.between(2, 60);
  for (; pieces > 0; --pieces) {
    if (dice.chance(oddities)) {
      switch (dice.below(5)) {
        case 0:
          tools::putTerminator(bits);
          break;
        case 1:
          bits.putZeros(static_cast<std::uint64_t>(dice.between(35, 90)));
          break;
        case 2:
          tools::putRun(bits, std::uint64_t{1} << dice.between(20, 38));
          break;
        case 3:
          for (const unsigned char byte : dice.bytes(20, dice.below(4))) bits.put(byte, 8);
          break;
        default:
          bits.put(~std::uint64_t{0}, dice.between(1, 64));
          break;
      }
    }
    tools::putRun(bits, static_cast<std::uint64_t>(dice.below(1 << dice.between(0, longestRun))));
    bits.put(dice.byte(), 1);
  }
  return bits;
}

Chunks randomChunks(Dice& dice, int positions, int pieces) {
  Chunks chunks;
  chunks.top = dice.below(positions);
  chunks.lowestSignificance = dice.chance(3) ? 0 : dice.between(0, chunks.top);
  chunks.lowestRefinement = dice.chance(3) ? 0 : dice.between(0, chunks.top);
  chunks.bytes = dice.chance(4) ? dice.bytes(dice.between(1, 2 * pieces), dice.below(4))
                                : randomBits(dice, dice.between(1, pieces)).bytes();
  const int bits = 8 * static_cast<int>(chunks.bytes.size());
  const auto anywhere = [&]() -> std::int64_t {
    return dice.chance(4) ? bits - dice.below(std::min(bits, 80) + 1) : dice.below(bits + 1);
  };
  for (auto& start : chunks.significance) start = dice.chance(8) ? Chunks::kNoData : anywhere();
  for (auto& start : chunks.refinement) start = anywhere();
  return chunks;
}

std::size_t randomCount(Dice& dice, std::size_t most) {
  constexpr std::array<std::size_t, 14> kCounts = {
      1, 2, 63, 64, 65, 127, 128, 129, 191, 192, 1000, 2049, kMostInBlock - 1, kMostInBlock};
  const std::size_t count = dice.chance(3) ? static_cast<std::size_t>(dice.between(1, 300))
                                           : kCounts[static_cast<std::size_t>(dice.below(kCounts.size()))];
  return std::min(count, most);
}

/// Reads some blocks and compares each coefficient, as `Stored` would hold it.
template <class Stored, class Lane>
void expectEqualToOneByOne(const LaneKernel<Lane>& kernel, const Chunks& chunks,
                           const std::vector<std::size_t>& counts) {
  constexpr Lane kGuard = 0x5A5A;
  OneByOne slow(chunks);
  OrderCursors order = chunks.cursors();
  const ReadAhead ahead(order, *std::max_element(counts.begin(), counts.end()));
  const auto scratch = std::make_unique<BlockScratch>();
  for (std::size_t block = 0; block < counts.size(); ++block) {  // the streams go on from block to block
    const std::size_t count = counts[block];
    const std::size_t room = (count + 63) / 64 * 64;
    std::vector<Lane> out(room + 64, kGuard);
    std::memset(scratch.get(), 0xA5, sizeof *scratch);
    kernel.read(order, count, *scratch, out.data());
    for (std::size_t i = 0; i < count; ++i) {
      ASSERT_EQ(out[i], static_cast<Stored>(slow.next()))
          << "coefficient " << i << " of " << count << ", block " << block << "; " << chunks.described();
    }
    for (std::size_t i = room; i < out.size(); ++i) ASSERT_EQ(out[i], kGuard) << i << " behind " << count;
  }
}

class BlockKernels : public testing::TestWithParam<const Kernels* (*)()> {
 protected:
  void SetUp() override {
    if (GetParam()() == nullptr) GTEST_SKIP() << "this processor or build lacks them";
  }
  const Kernels& tested() const { return *GetParam()(); }
};

INSTANTIATE_TEST_SUITE_P(Each, BlockKernels, testing::Values([] { return &portableKernels(); }, &avx2Kernels),
                         [](const auto& test) { return test.index == 0 ? "Portable" : "Avx2"; });

template <class Stored, class Lane>
void tryRandomChunks(const LaneKernel<Lane>& kernel, int positions) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Dice dice(seed);
    const bool large = seed % 10 == 0;
    const Chunks chunks = randomChunks(dice, positions, large ? 3000 : 200);
    std::vector<std::size_t> counts(4);
    for (std::size_t& count : counts) count = randomCount(dice, large ? kMostInBlock : 200);
    expectEqualToOneByOne<Stored>(kernel, chunks, counts);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST_P(BlockKernels, EqualRebuildingNarrowCoefficientsOneByOne) {
  tryRandomChunks<std::int16_t>(tested().narrow, kNarrowPositions);
}
TEST_P(BlockKernels, EqualRebuildingWideCoefficientsOneByOne) {
  tryRandomChunks<std::int32_t>(tested().wide, 32);
}
TEST_P(BlockKernels, EqualRebuildingWrappedCoefficientsOneByOne) {
  tryRandomChunks<std::int16_t>(tested().wrapped, 16);
}

/// Chunks that all start at the same bits, for every top and every pair of bottoms.
TEST_P(BlockKernels, AddTheMidPointsOfEveryTopAndBottom) {
  Dice dice(1);
  Chunks chunks;
  BitWriter bits;
  for (int i = 0; i < 100; ++i) {
    tools::putRun(bits, static_cast<std::uint64_t>(dice.below(8)));
    bits.put(dice.byte(), 1);
  }
  chunks.bytes = bits.bytes();
  for (std::size_t b = 0; b < kMostPositions; ++b) {
    chunks.significance[b] = dice.below(100);
    chunks.refinement[b] = dice.below(100);
  }
  for (chunks.top = 0; chunks.top < 32; ++chunks.top) {
    for (chunks.lowestSignificance = 0; chunks.lowestSignificance <= chunks.top;
         ++chunks.lowestSignificance) {
      for (chunks.lowestRefinement = 0; chunks.lowestRefinement <= chunks.top; ++chunks.lowestRefinement) {
        ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int32_t>(tested().wide, chunks, {70, 1}));
        if (chunks.top < 16) {
          ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int16_t>(tested().wrapped, chunks, {70, 1}));
        }
        if (chunks.top < kNarrowPositions) {
          ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, {70, 1}));
        }
      }
    }
  }
}

TEST_P(BlockKernels, ReadFromEveryBitOfABlockOfBytes) {
  Dice dice(2);
  Chunks chunks;
  chunks.top = 3;
  for (const int size : {1, 7, 8, 9, 15, 16, 17, 40}) {
    chunks.bytes = dice.bytes(size);
    for (int bit = 0; bit <= 8 * size; ++bit) {
      chunks.significance.fill(bit);
      chunks.refinement.fill(8 * size - bit);
      ASSERT_NO_FATAL_FAILURE(
          expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, {1, 63, 64, 65, 300}));
    }
  }
}

// A run of n coefficients, for which one block or several have no decision to make.
TEST_P(BlockKernels, PassLongRunsFromBlockToBlock) {
  for (const std::uint64_t run : {62U, 63U, 64U, 65U, 127U, 128U, 191U, 192U, 193U, 4094U, 4095U, 4096U,
                                  4097U, 8191U, 8192U, 8193U, 12288U, 20000U}) {
    BitWriter bits;
    for (int i = 0; i < 3; ++i) {
      tools::putRun(bits, run);
      bits.put(1, 1);
    }
    tools::putRun(bits, 0);
    Chunks chunks;
    chunks.bytes = bits.bytes();
    for (const auto& counts : {std::vector<std::size_t>(16, 4096), std::vector<std::size_t>(40, 64),
                               std::vector<std::size_t>(65, 63), std::vector<std::size_t>(70, 1)}) {
      ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, counts)) << run;
    }
  }
}

// The first escape announces the final run, a second one means 41 without a further value.
TEST_P(BlockKernels, TakeEscapesAndWhatLooksLikeThem) {
  for (const int zeros : {28, 29, 30, 38, 39, 40, 41, 42}) {
    for (const int again : {0, 1, 39, 40, 41}) {
      for (int before = 0; before < 70; before += 3) {
        BitWriter bits;
        for (int i = 0; i < before; ++i) bits.put(1, 1);
        for (const int prefix : {zeros, again, zeros, 40, 40}) {
          bits.putZeros(static_cast<std::uint64_t>(prefix));
          bits.put(0b1'0011, 5);
        }
        Chunks chunks;
        chunks.bytes = bits.bytes();
        ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, {300, 300}))
            << zeros << ", " << again << " behind " << before;
      }
    }
  }
}

TEST_P(BlockKernels, ReadBlocksInWhichAllOrNoneAreSignificant) {
  for (const int fill : {0x00, 0xFF, 0xAA, 0x55}) {
    Chunks chunks;
    chunks.top = 12;
    chunks.bytes.assign(3000, static_cast<unsigned char>(fill));
    for (std::size_t b = 0; b < kMostPositions; ++b) chunks.refinement[b] = static_cast<std::int64_t>(37 * b);
    ASSERT_NO_FATAL_FAILURE(
        expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, {4096, 4096, 5, 4096, 4096}));
    ASSERT_NO_FATAL_FAILURE(
        expectEqualToOneByOne<std::int32_t>(tested().wide, chunks, {4096, 4096, 5, 4096, 4096}));
  }
}

TEST_P(BlockKernels, ReadChunksWithoutData) {
  Chunks chunks;
  chunks.top = 5;
  chunks.bytes = {0xFF};
  chunks.significance.fill(Chunks::kNoData);
  ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, {100, 4096}));
  chunks.significance[5] = 0;  // eight bits of it, and the others none
  ASSERT_NO_FATAL_FAILURE(expectEqualToOneByOne<std::int16_t>(tested().narrow, chunks, {100, 4096}));
}

// By hand: 13 positions are the most that narrow numbers are for.
TEST_P(BlockKernels, KeepTheLargestCoefficients) {
  Chunks chunks;
  chunks.bytes = {0b0001'1101, 0xFF,
                  0xFF};  // a run of 0; a plus, then a minus, each with a run of 0 behind it
  chunks.refinement.fill(8);
  const auto scratch = std::make_unique<BlockScratch>();
  const auto firstTwo = [&](const auto& kernel, int top, auto lane) {
    chunks.top = top;
    OrderCursors order = chunks.cursors();
    const ReadAhead ahead(order, 2);
    std::vector<decltype(lane)> out(64);
    kernel.read(order, 2, *scratch, out.data());
    return std::pair<std::int64_t, std::int64_t>(out[0], out[1]);
  };
  using Pair = std::pair<std::int64_t, std::int64_t>;
  EXPECT_EQ(firstTwo(tested().narrow, 12, std::int16_t{}), Pair(8191, -8191));
  EXPECT_EQ(firstTwo(tested().wrapped, 15, std::int32_t{}),
            Pair(-1, 1));  // 65535 and -65535, of which 16 bits are kept
  EXPECT_EQ(firstTwo(tested().wide, 15, std::int32_t{}), Pair(65535, -65535));
  EXPECT_EQ(firstTwo(tested().wide, 30, std::int32_t{}), Pair(0x7fffffff, -0x7fffffff));
  EXPECT_EQ(firstTwo(tested().wide, 31, std::int32_t{}), Pair(-1, 1));
}

}  // namespace
}  // namespace ei4::test
