#pragma once

#include <vector>

#include "encoder/stream_format.h"

namespace ei4::tools {

/// In which sequence a stream announces its chunks. Any sequence decodes to the same picture once all of them
/// are there; they differ in what a prefix of the stream shows.
enum class ChunkOrder {
  CoarseFirst,    ///< by falling bit position + order: a prefix is the best picture it can be
  ByBitPosition,  ///< by falling bit position, whatever the order
  ByOrder,        ///< the coarsest order with all its bits first
  Custom          ///< as a list says
};

/// What there is to announce.
struct ChunkSupply {
  int planes = 1;
  int levels = 0;     ///< orders 0..levels
  int topBit = -1;    ///< significance starts here, refinement one below
  int lowestBit = 0;  ///< both kinds end here; above topBit there are no chunks at all
};

struct PlannedChunk {
  ChunkId id;
  int bitPosition = 0;
};

/// Every chunk of the supply once, in one of the built-in sequences; coarser orders first within a rank,
/// and significance before refinement.
std::vector<PlannedChunk> planChunks(const ChunkSupply& supply, ChunkOrder order);

/// The chunks that `ids` names, each repetition of an id being its next lower bit position.
/// Throws EncodeError for an id outside the supply or named more often than it has positions.
std::vector<PlannedChunk> planChunks(const ChunkSupply& supply, const std::vector<ChunkId>& ids);

}  // namespace ei4::tools
