// Where each sub-stream of an image stands, as the directory announces them.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "gwav4/aligned.h"
#include "gwav4/bit_decoder.h"
#include "gwav4/bit_reader.h"
#include "gwav4/block_kernel.h"

namespace zel::gwav4 {

inline constexpr int kPlanes = 4;     ///< values of a directory entry's plane code, the end code among them
inline constexpr int kMaxLevels = 8;  ///< decomposition levels that a stream can have
inline constexpr int kOrders = kMaxLevels + 1;

/// Bit positions of a decoder with coefficients of type T.
template <class T>
inline constexpr int kBitPositions = static_cast<int>(8 * sizeof(T));

enum class ChunkKind { significance = 0, refinement = 1 };

/// The coders and readers of one image, for the orders and bit positions that are decoded: about 20 kilobytes for a whole
/// grey one of 12 bits.
template <int Positions>
class DecoderState : public CAligned<8> {
 public:
  /// planes: of the image, 1 to 3; only their chunks can be placed.
  explicit DecoderState(int planes = kPlanes) : planeCount(planes) {}

  /// Forgets all chunks; to be called before any is placed.
  /// topPosition         of the first significance chunk of each plane and order, -1 for none; below Positions.
  /// finest, coarsest    chunks of these orders and those between them can be placed; of the others only positions are
  ///                     counted. None if finest > coarsest.
  void reset(int topPosition, int finest = 0, int coarsest = kMaxLevels);

  /// Takes the next bit position of (plane, order, kind): from the top position down, one lower for
  /// refinement.
  int takePosition(int plane, int order, ChunkKind kind) {
    return next[index(plane)][index(order)][static_cast<std::size_t>(kind)]--;
  }
  static bool isPosition(int position) { return position >= 0 && position < Positions; }

  /// Starts the chunk at the place where `reader` stands. A significance chunk without data is left unplaced:
  /// its coder sees zeros only. The reader itself does not move, and what is placed is not bounded by a
  /// chunk's length.
  void placeSignificance(int plane, int order, int position, bool hasData, const CBitReader& reader);
  void placeRefinement(int plane, int order, int position, const CBitReader& reader);

  /// Where the streams stand that were announced for one plane and order so far.
  OrderCursors cursors(int plane, int order) const;

  /// The first significance position.
  int topPosition() const { return top; }

 private:
  static constexpr std::size_t index(int i) { return static_cast<std::size_t>(i); }

  /// Where the bit positions of (plane, order) begin in the arrays below.
  std::size_t firstOf(int plane, int order) const {
    return (index(plane) * orderCount + index(order - finestOrder)) * index(top + 1);
  }

  int planeCount;
  int top = -1;
  int finestOrder = 0;
  std::size_t orderCount = 0;
  std::array<std::array<std::array<int, 2>, kOrders>, kPlanes> next{};
  std::vector<CBitDecoder> coders;
  std::vector<CBitInfiniteReader> streamers;  ///< of the refinement chunks
  std::vector<CBitInfiniteReader> sources;    ///< of the coders
};

extern template class DecoderState<16>;
extern template class DecoderState<32>;

}  // namespace zel::gwav4
