#include "gwav4/decoder_state.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace ei4::test {
namespace {

using zel::gwav4::CBitReader;
using zel::gwav4::ChunkKind;
using zel::gwav4::DecoderState;
using zel::gwav4::OrderStreams;

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
  const OrderStreams none = state->streams(1, 2);
  EXPECT_EQ(none.top, 5);
  EXPECT_EQ(none.lowestSignificance, 6);
  EXPECT_EQ(none.lowestRefinement, 5);

  state->takePosition(1, 2, ChunkKind::significance);
  state->takePosition(1, 2, ChunkKind::significance);
  state->takePosition(1, 2, ChunkKind::refinement);
  const OrderStreams some = state->streams(1, 2);
  EXPECT_EQ(some.lowestSignificance, 4);
  EXPECT_EQ(some.lowestRefinement, 4);
}

TEST(DecoderState, PlacesASignificanceChunkAndReadsItsFirstRun) {
  const std::vector<unsigned char> bytes = {
      0b0101'0100};  // two bits, then 1: a run of 0; behind it 01: a run of 1
  CBitReader reader(bytes.data(), bytes.size());
  reader.skipBits(2);
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeSignificance(1, 3, 7, true, reader);
  const auto& coder = state->streams(1, 3).coders[7];
  EXPECT_EQ(coder.name(), "n coder for plane 1 ord 3 bits 7");
  EXPECT_EQ(coder.run, 0);
  EXPECT_EQ(coder.getStoredTotal(), 3);
  EXPECT_EQ(reader.getTotal(), 2);  // the reader itself does not move
}

TEST(DecoderState, LeavesASignificanceChunkWithoutDataUnplaced) {
  const std::vector<unsigned char> bytes = {0xFF};
  const CBitReader reader(bytes.data(), bytes.size());
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeSignificance(0, 0, 7, false, reader);
  EXPECT_EQ(state->streams(0, 0).coders[7].run, (std::int64_t{1} << 30) + 1);
}

TEST(DecoderState, PlacesARefinementChunkUnderItsName) {
  const std::vector<unsigned char> bytes = {0b0000'0110};
  CBitReader reader(bytes.data(), bytes.size());
  reader.takeBit();
  const auto state = std::make_unique<State>();
  state->reset(7);
  state->placeRefinement(2, 4, 6, reader);
  auto& streamer = state->streams(2, 4).streamers[6];
  EXPECT_EQ(streamer.name(), "u streamer for plane 2 ord 4 bits 6");
  EXPECT_EQ(streamer.takeBits(3), 3U);
  EXPECT_EQ(streamer.takeBits(40), 0U);  // zeros for ever
}

TEST(DecoderState, IsAlignedTo8Bytes) {
  const auto state = std::make_unique<DecoderState<32>>();
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(state.get()) % 8, 0U);
}

}  // namespace
}  // namespace ei4::test
