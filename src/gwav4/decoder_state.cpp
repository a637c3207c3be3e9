#include "gwav4/decoder_state.h"

namespace zel::gwav4 {

template <int Positions>
void DecoderState<Positions>::reset(int topPosition) {
  top = topPosition;
  for (auto& orders : next) orders.fill({topPosition, topPosition - 1});
}

template <int Positions>
void DecoderState<Positions>::placeSignificance(int plane, int order, int position, bool hasData,
                                                const CBitReader& reader) {
  CBitInfiniteReader& source = sources[index(plane)][index(order)][index(position)];
  const CBitReader empty;
  source.create(hasData ? &reader : &empty, 0);
  source.setInfinite(true);
  coders[index(plane)][index(order)][index(position)].attach(&source, {plane, order, position});
}

template <int Positions>
void DecoderState<Positions>::placeRefinement(int plane, int order, int position, const CBitReader& reader) {
  CBitInfiniteReader& streamer = streamers[index(plane)][index(order)][index(position)];
  streamer.create(&reader, 0);
  streamer.setInfinite(true);
  streamer.setId({plane, order, position});
}

template <int Positions>
OrderStreams DecoderState<Positions>::streams(int plane, int order) {
  const auto& lowest = next[index(plane)][index(order)];
  return {coders[index(plane)][index(order)].data(), streamers[index(plane)][index(order)].data(), top,
          lowest[static_cast<std::size_t>(ChunkKind::significance)] + 1,
          lowest[static_cast<std::size_t>(ChunkKind::refinement)] + 1};
}

template class DecoderState<16>;
template class DecoderState<32>;

}  // namespace zel::gwav4
