#include "gwav4/decoder_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "gwav4/kernels.h"
#include "read_ahead.h"

namespace ei4::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using zel::gwav4::BitCursor;
using zel::gwav4::BlockScratch;
using zel::gwav4::CBitReader;
using zel::gwav4::ChunkKind;
using zel::gwav4::DecoderState;
using zel::gwav4::kMostInBlock;
using zel::gwav4::OrderCursors;
using zel::gwav4::portableKernels;

using State = DecoderState<16>;

TEST(DecoderState, HandsOutPositionsFromTheTopDownPerPlaneOrderAndKind) {
  const auto state = std::make_unique<State>();
  state->reset(11);
  EXPECT_EQ(state->takePosition(0, 0, ChunkKind::significance), 11);
  EXPECT_EQ(state->takePosition(0, 0, ChunkKind::significance), 10);
  EXPECT_EQ(state->takePosition(0, 0, ChunkKind::refinement), 10);  // refinement starts one below the top
  EXPECT_EQ(state->takePosition(0, 0, ChunkKind::refinement), 9);
  EXPECT_EQ(state->takePosition(0, 0, ChunkKind::significance), 9);
  EXPECT_EQ(state->takePosition(2, 8, ChunkKind::significance), 11);
  EXPECT_EQ(state->takePosition(0, 8, ChunkKind::refinement), 10);
}

TEST(DecoderState, KnowsThePositionsOfItsCoefficients) {
  EXPECT_FALSE(DecoderState<16>::isPosition(-1));
  EXPECT_TRUE(DecoderState<16>::isPosition(0));
  EXPECT_TRUE(DecoderState<16>::isPosition(15));
  EXPECT_FALSE(DecoderState<16>::isPosition(16));
  EXPECT_TRUE(DecoderState<32>::isPosition(31));
  EXPECT_FALSE(DecoderState<32>::isPosition(32));
}

TEST(DecoderState, TellsHowFarDownTheChunksOfAnOrderReach) {
  const auto state = std::make_unique<State>();
  state->reset(5);
  const OrderCursors none = state->cursors(1, 2);
  EXPECT_EQ(none.top, 5);
  EXPECT_EQ(none.lowestSignificance, 6);
  EXPECT_EQ(none.lowestRefinement, 5);

  const CBitReader nothing;
  for (int i = 0; i < 2; ++i) {
    state->placeSignificance(1, 2, state->takePosition(1, 2, ChunkKind::significance), false, nothing);
  }
  state->placeRefinement(1, 2, state->takePosition(1, 2, ChunkKind::refinement), nothing);
  const OrderCursors some = state->cursors(1, 2);
  EXPECT_EQ(some.lowestSignificance, 4);
  EXPECT_EQ(some.lowestRefinement, 4);
}

/// What an order's streams say about its first coefficients.
std::vector<int> firstCoefficients(OrderCursors order, std::size_t count) {
  const ReadAhead ahead(order, count);
  std::vector<int> out(kMostInBlock);
  const auto scratch = std::make_unique<BlockScratch>();
  portableKernels().wide.read(order, count, *scratch, out.data());
  out.resize(count);
  return out;
}

TEST(DecoderState, PlacesASignificanceChunkAndReadsItsFirstRun) {
  // Two bits of something else, then 1, a run of 0; 1 1, a minus and a run of 0; 0 01, a plus and a run of 1
  const std::vector<unsigned char> bytes = {0b1001'1100, 0b0000'0000};
  CBitReader reader(bytes.data(), bytes.size());
  reader.skipBits(2);
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeSignificance(1, 3, state->takePosition(1, 3, ChunkKind::significance), true, reader);
  const OrderCursors order = state->cursors(1, 3);
  EXPECT_EQ(order.runs[7].bits.bytes, bytes.data());
  EXPECT_EQ(order.runs[7].bits.bitCount, 16U);
  EXPECT_GT(order.runs[7].bits.position, 2U);
  constexpr int kValue = 128 + 32;  // with the mid-point
  EXPECT_THAT(firstCoefficients(order, 6), ElementsAre(-kValue, kValue, 0, kValue, 0, 0));
  EXPECT_EQ(reader.getTotal(), 2);  // the reader itself does not move
}

TEST(DecoderState, TellsThatAChunkBeganWithItsTerminator) {
  // 40 zeros and a one, then the final run 01. Behind it a plus, and a second terminator: a run of 41.
  const std::vector<unsigned char> bytes = {0, 0, 0, 0, 0, 0b101, 0, 0, 0, 0, 0b11'0000};
  const auto state = std::make_unique<State>();
  state->reset(0);
  state->placeSignificance(0, 0, state->takePosition(0, 0, ChunkKind::significance), true,
                           CBitReader(bytes.data(), bytes.size()));
  EXPECT_TRUE(state->cursors(0, 0).runs[0].terminated);
  const auto all = firstCoefficients(state->cursors(0, 0), 100);
  EXPECT_EQ(all[0], 0);
  EXPECT_EQ(all[1], 1);
  EXPECT_THAT(std::vector<int>(all.begin() + 2, all.begin() + 2 + 41), Each(0));
  EXPECT_EQ(all[2 + 41], -1);
}

TEST(DecoderState, LeavesASignificanceChunkWithoutDataUnplaced) {
  const std::vector<unsigned char> bytes = {0xFF};
  const CBitReader reader(bytes.data(), bytes.size());
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeSignificance(0, 0, state->takePosition(0, 0, ChunkKind::significance), false, reader);
  EXPECT_THAT(firstCoefficients(state->cursors(0, 0), kMostInBlock), Each(0));
}

TEST(DecoderState, PlacesARefinementChunk) {
  const std::vector<unsigned char> bytes = {0b0000'0110};
  CBitReader reader(bytes.data(), bytes.size());
  reader.takeBit();
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeRefinement(2, 4, state->takePosition(2, 4, ChunkKind::refinement), reader);
  const BitCursor bits = state->cursors(2, 4).refinements[6];
  EXPECT_EQ(bits.bytes, bytes.data());
  EXPECT_EQ(bits.position, 1U);
  EXPECT_EQ(bits.bitCount, 8U);
  EXPECT_EQ(reader.getTotal(), 1);
}

TEST(DecoderState, PlacesTheChunksOfItsOrdersAndCountsThoseOfTheOthers) {
  const std::vector<unsigned char> bytes(8, 0xFF);
  const auto state = std::make_unique<State>(2);
  state->reset(7, /*finest=*/2, /*coarsest=*/3);
  EXPECT_EQ(state->takePosition(1, 0, ChunkKind::refinement), 6);
  EXPECT_EQ(state->takePosition(1, 0, ChunkKind::refinement), 5);
  std::uint64_t bit = 0;
  for (const int plane : {0, 1}) {
    for (const int order : {2, 3}) {
      CBitReader reader(bytes.data(), bytes.size());
      reader.skipBits(bit++);
      state->placeRefinement(plane, order, state->takePosition(plane, order, ChunkKind::refinement), reader);
    }
  }
  bit = 0;
  for (const int plane : {0, 1}) {
    for (const int order : {2, 3}) EXPECT_EQ(state->cursors(plane, order).refinements[6].position, bit++);
  }
}

TEST(DecoderState, ForgetsItsChunksWhenItIsReset) {
  const std::vector<unsigned char> bytes = {0xFF};
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeSignificance(0, 0, state->takePosition(0, 0, ChunkKind::significance), true,
                           CBitReader(bytes.data(), bytes.size()));
  state->reset(3);
  EXPECT_EQ(state->topPosition(), 3);
  EXPECT_EQ(state->cursors(0, 0).lowestSignificance, 4);
  EXPECT_EQ(state->cursors(0, 0).lowestRefinement, 3);
}

TEST(DecoderState, IsAlignedTo8Bytes) {
  const auto state = std::make_unique<DecoderState<32>>();
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(state.get()) % 8, 0U);
}

}  // namespace
}  // namespace ei4::test
