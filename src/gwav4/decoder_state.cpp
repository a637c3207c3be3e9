#include "gwav4/decoder_state.h"

namespace zel::gwav4 {

template <int Positions>
void DecoderState<Positions>::reset(int topPosition, int finest, int coarsest) {
  top = topPosition;
  finestOrder = finest;
  orderCount = finest > coarsest ? 0 : index(coarsest - finest + 1);
  for (auto& orders : next) orders.fill({topPosition, topPosition - 1});
  const std::size_t count = firstOf(planeCount, finest);
  coders = std::vector<CBitDecoder>(count);
  streamers = std::vector<CBitInfiniteReader>(count);
  sources = std::vector<CBitInfiniteReader>(count);
}

template <int Positions>
void DecoderState<Positions>::placeSignificance(int plane, int order, int position, bool hasData,
                                                const CBitReader& reader) {
  const std::size_t at = firstOf(plane, order) + index(position);
  // Quirk empty-refinement-placed: only a significance chunk without data is left unplaced.
  const CBitReader empty;
  sources[at].create(hasData ? &reader : &empty, 0);
  sources[at].setInfinite(true);
  coders[at].attach(&sources[at], {plane, order, position});
}

template <int Positions>
void DecoderState<Positions>::placeRefinement(int plane, int order, int position, const CBitReader& reader) {
  CBitInfiniteReader& streamer = streamers[firstOf(plane, order) + index(position)];
  streamer.create(&reader, 0);
  streamer.setInfinite(true);
  streamer.setId({plane, order, position});
}

template <int Positions>
OrderCursors DecoderState<Positions>::cursors(int plane, int order) const {
  const auto& upcoming = next[index(plane)][index(order)];
  const std::size_t first = firstOf(plane, order);
  const auto cursorOf = [](const CBitReader& reader) {
    const CBitReader::Window window = reader.window();
    return BitCursor{window.bytes, window.position, window.bitCount};
  };
  OrderCursors result;
  result.top = top;
  result.lowestSignificance = upcoming[index(static_cast<int>(ChunkKind::significance))] + 1;
  result.lowestRefinement = upcoming[index(static_cast<int>(ChunkKind::refinement))] + 1;
  for (int position = result.lowestSignificance; position <= top; ++position) {
    const std::size_t at = index(position);
    const CBitDecoder& coder = coders[first + at];
    result.runs[at].bits = cursorOf(*coder.source);
    result.runs[at].terminated = coder.terminated;
    result.runs[at].zeros = coder.run;
  }
  for (int position = result.lowestRefinement; position < top; ++position) {
    result.refinements[index(position)] = cursorOf(streamers[first + index(position)]);
  }
  return result;
}

template class DecoderState<16>;
template class DecoderState<32>;

}  // namespace zel::gwav4
