#include "encoder/chunk_plan.h"

#include <algorithm>
#include <tuple>

#include "encoder/encode_error.h"

namespace ei4::tools {

namespace {

constexpr ChunkKind kKinds[] = {ChunkKind::Significance, ChunkKind::Refinement};

int firstPosition(const ChunkSupply& supply, ChunkKind kind) {
  return kind == ChunkKind::Significance ? supply.topBit : supply.topBit - 1;
}

/// Chunks of higher rank come first.
int rankOf(const PlannedChunk& chunk, ChunkOrder order) {
  switch (order) {
    case ChunkOrder::CoarseFirst:
      return chunk.bitPosition + chunk.id.order;
    case ChunkOrder::ByBitPosition:
      return chunk.bitPosition;
    case ChunkOrder::ByOrder:
      return chunk.id.order;
    case ChunkOrder::Custom:
      break;
  }
  throw EncodeError("a custom chunk order needs its list");
}

}  // namespace

std::vector<PlannedChunk> planChunks(const ChunkSupply& supply, ChunkOrder order) {
  std::vector<PlannedChunk> plan;
  for (int level = supply.levels; level >= 0; --level) {
    for (int plane = 0; plane < supply.planes; ++plane) {
      for (const ChunkKind kind : kKinds) {
        for (int bit = firstPosition(supply, kind); bit >= supply.lowestBit; --bit) {
          plan.push_back({{plane, level, kind}, bit});
        }
      }
    }
  }
  std::ranges::stable_sort(plan, [order](const PlannedChunk& a, const PlannedChunk& b) {
    const auto key = [order](const PlannedChunk& c) {
      return std::tuple(-rankOf(c, order), -c.id.order, -c.bitPosition, c.id.plane, c.id.kind);
    };
    return key(a) < key(b);
  });
  return plan;
}

std::vector<PlannedChunk> planChunks(const ChunkSupply& supply, const std::vector<ChunkId>& ids) {
  std::vector<PlannedChunk> plan;
  for (const ChunkId& id : ids) {
    if (id.plane < 0 || id.plane >= supply.planes || id.order < 0 || id.order > supply.levels) {
      throw EncodeError("the chunk list names a plane or an order that the picture does not have");
    }
    const auto sameId = [&id](const PlannedChunk& chunk) { return chunk.id == id; };
    const int bit = firstPosition(supply, id.kind) - static_cast<int>(std::ranges::count_if(plan, sameId));
    if (bit < supply.lowestBit) throw EncodeError("the chunk list goes below the lowest bit position");
    plan.push_back({id, bit});
  }
  return plan;
}

}  // namespace ei4::tools
