// What the directory of a stream says, found without looking at what its chunks hold.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gwav4/header.h"

namespace ei4::info {

enum class DirectoryState {
  complete,  ///< it has its end code
  open,  ///< the data ends behind a whole chunk, without an end code: a lossy stream, or one that was cut there
  cut,  ///< the data ends within an entry or a chunk
  bad   ///< an entry that no stream of this format can have
};

struct ChunkSums {
  std::int64_t chunks = 0;
  std::int64_t bits = 0;  ///< of the chunks' contents, as far as they are there
};

/// The chunks of one plane and order.
struct OrderSums {
  int plane = 0;
  int order = 0;  ///< 0 is the finest level
  ChunkSums significance;
  ChunkSums refinement;
};

struct StreamDirectory {
  DirectoryState state = DirectoryState::cut;
  std::string fault;              ///< what is wrong with it; empty when complete or open
  std::optional<int> levels;      ///< when its byte is there
  std::optional<int> top;         ///< highest bit position; -1: all coefficients are 0
  std::vector<OrderSums> orders;  ///< those that have chunks, by plane, then order
  std::int64_t codedBytes = 0;
  std::int64_t trailingBytes = 0;  ///< behind the end code; 0 without one
};

/// Walks the directory as the decoder does, up to where that stops. Time and memory are bounded by the chunks that a
/// stream can have, some 1700.
/// header  with bytesPerPixel 1 to 3 and a known magic.
/// coded   what stands behind the header.
StreamDirectory walkDirectory(const zel::gwav4::GWHeader& header, std::span<const unsigned char> coded);

}  // namespace ei4::info
