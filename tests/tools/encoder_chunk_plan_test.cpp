#include "encoder/chunk_plan.h"

#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "encoder/encode_error.h"

namespace {

using namespace ei4::tools;

constexpr ChunkSupply kSupply{3, 4, 9, 2};

class EverySequence : public testing::TestWithParam<ChunkOrder> {};

TEST_P(EverySequence, AnnouncesEachPositionOnceFromTheTopDown) {
  std::map<std::tuple<int, int, ChunkKind>, int> next;
  const auto plan = planChunks(kSupply, GetParam());
  for (const PlannedChunk& chunk : plan) {
    const int first = chunk.id.kind == ChunkKind::Significance ? 9 : 8;
    auto& position = next.try_emplace({chunk.id.plane, chunk.id.order, chunk.id.kind}, first).first->second;
    EXPECT_EQ(chunk.bitPosition, position--);
  }
  EXPECT_EQ(next.size(), 3U * 5 * 2);
  for (const auto& [id, position] : next) EXPECT_EQ(position, 1);
}

TEST_P(EverySequence, IsEmptyWithoutAnyBit) {
  EXPECT_TRUE(planChunks(ChunkSupply{1, 3, -1, 0}, GetParam()).empty());
  EXPECT_TRUE(planChunks(ChunkSupply{1, 3, 4, 5}, GetParam()).empty());
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, EverySequence,
                         testing::Values(ChunkOrder::CoarseFirst, ChunkOrder::ByBitPosition,
                                         ChunkOrder::ByOrder));

TEST(ChunkPlan, CoarseFirstFallsByBitPositionPlusOrder) {
  const auto plan = planChunks(kSupply, ChunkOrder::CoarseFirst);
  const auto rank = [](const PlannedChunk& chunk) { return chunk.bitPosition + chunk.id.order; };
  for (std::size_t i = 1; i < plan.size(); ++i) {
    EXPECT_GE(rank(plan[i - 1]), rank(plan[i]));
    const bool isTie = rank(plan[i - 1]) == rank(plan[i]);
    EXPECT_TRUE(!isTie || plan[i - 1].id.order >= plan[i].id.order);
  }
}

TEST(ChunkPlan, ByBitPositionFallsByBitPosition) {
  const auto plan = planChunks(kSupply, ChunkOrder::ByBitPosition);
  for (std::size_t i = 1; i < plan.size(); ++i) EXPECT_GE(plan[i - 1].bitPosition, plan[i].bitPosition);
}

TEST(ChunkPlan, ByOrderFinishesTheCoarsestFirst) {
  const auto plan = planChunks(kSupply, ChunkOrder::ByOrder);
  for (std::size_t i = 1; i < plan.size(); ++i) EXPECT_GE(plan[i - 1].id.order, plan[i].id.order);
}

TEST(ChunkPlan, FollowsAListAndCountsItsPositions) {
  const ChunkId a{0, 1, ChunkKind::Significance};
  const ChunkId b{2, 4, ChunkKind::Refinement};
  const auto plan = planChunks(kSupply, {a, b, a, b, b});
  ASSERT_EQ(plan.size(), 5U);
  EXPECT_EQ(plan[2].id, a);
  EXPECT_EQ(plan[2].bitPosition, 8);
  EXPECT_EQ(plan[1].bitPosition, 8);
  EXPECT_EQ(plan[4].bitPosition, 6);
}

TEST(ChunkPlan, RefusesAListThatTheSupplyCannotFill) {
  using List = std::vector<ChunkId>;
  EXPECT_THROW(planChunks(kSupply, List{{3, 0, ChunkKind::Significance}}), EncodeError);
  EXPECT_THROW(planChunks(kSupply, List{{0, 5, ChunkKind::Significance}}), EncodeError);
  EXPECT_THROW(planChunks(kSupply, List(9, ChunkId{0, 0, ChunkKind::Significance})), EncodeError);
  EXPECT_NO_THROW(planChunks(kSupply, List(8, ChunkId{0, 0, ChunkKind::Significance})));
  EXPECT_THROW(planChunks(kSupply, ChunkOrder::Custom), EncodeError);
}

}  // namespace
