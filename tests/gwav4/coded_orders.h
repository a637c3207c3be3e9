// Coefficients as the streams of their order say them: what an encoder would write, and nothing else around it.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

#include "encoder/bit_writer.h"
#include "encoder/run_code.h"
#include "gwav4/decoder_state.h"

namespace ei4::test {

/// The highest bit position of any of the values; -1 for zeros alone.
inline int topOf(std::span<const std::int32_t> values) {
  int top = -1;
  for (const std::int32_t value : values) {
    const auto magnitude = static_cast<std::uint32_t>(std::abs(std::int64_t{value}));
    top = std::max(top, static_cast<int>(std::bit_width(magnitude)) - 1);
  }
  return top;
}

/// The streams of some orders of one plane, all bit positions from `top` down to 0.
class CodedOrders {
 public:
  /// orders: the coefficients of each, front to back; at most 9.
  CodedOrders(int top, const std::vector<std::vector<std::int32_t>>& orders)
      : m_State(std::make_unique<State>(1)) {
    std::vector<Start> starts;
    tools::BitWriter bits;
    for (std::size_t order = 0; order < orders.size(); ++order) {
      for (int position = top; position >= 0; --position) {
        starts.push_back({static_cast<int>(order), position, false, bits.bitCount()});
        putSignificance(bits, orders[order], position);
        if (position == top) continue;
        starts.push_back({static_cast<int>(order), position, true, bits.bitCount()});
        putRefinement(bits, orders[order], position);
      }
    }
    m_Bytes = bits.bytes();
    m_State->reset(top);
    for (const Start& start : starts) place(start);
    for (std::size_t order = 0; order < orders.size(); ++order) {
      cursors.push_back(m_State->cursors(0, static_cast<int>(order)));
    }
  }

  std::vector<zel::gwav4::OrderCursors>
      cursors;  ///< one for each order, at its start; the bytes stay in here

 private:
  using State = zel::gwav4::DecoderState<32>;

  struct Start {
    int order;
    int position;
    bool refined;
    std::uint64_t bit;
  };

  static std::uint32_t magnitudeOf(std::int32_t value) {
    return static_cast<std::uint32_t>(std::abs(std::int64_t{value}));
  }

  static void putSignificance(tools::BitWriter& bits, const std::vector<std::int32_t>& values, int position) {
    std::uint64_t run = 0;
    for (const std::int32_t value : values) {
      const int top = static_cast<int>(std::bit_width(magnitudeOf(value))) - 1;
      if (top > position) continue;
      if (top < position) {
        ++run;
        continue;
      }
      tools::putRun(bits, run);
      bits.put(value < 0 ? 1 : 0, 1);
      run = 0;
    }
    tools::putRun(bits, run);
  }

  static void putRefinement(tools::BitWriter& bits, const std::vector<std::int32_t>& values, int position) {
    for (const std::int32_t value : values) {
      const std::uint64_t magnitude = magnitudeOf(value);
      if (magnitude >> (position + 1) != 0) bits.put(magnitude >> position, 1);
    }
  }

  void place(const Start& start) {
    using zel::gwav4::ChunkKind;
    zel::gwav4::CBitReader reader(m_Bytes.data(), m_Bytes.size());
    reader.skipBits(start.bit);
    if (start.refined) {
      m_State->takePosition(0, start.order, ChunkKind::refinement);
      m_State->placeRefinement(0, start.order, start.position, reader);
    } else {
      m_State->takePosition(0, start.order, ChunkKind::significance);
      m_State->placeSignificance(0, start.order, start.position, true, reader);
    }
  }

  std::vector<unsigned char> m_Bytes;
  std::unique_ptr<State> m_State;
};

/// A plane's coefficients in the interleaved layout, sorted into the orders 0 to `levels`.
inline std::vector<std::vector<std::int32_t>> sortedIntoOrders(std::span<const std::int32_t> plane, int width,
                                                               int levels) {
  std::vector<std::vector<std::int32_t>> orders(static_cast<std::size_t>(levels) + 1);
  unsigned x = 0;
  unsigned y = 0;
  for (const std::int32_t coefficient : plane) {
    orders[static_cast<std::size_t>(std::min(std::countr_zero(x | y), levels))].push_back(coefficient);
    if (++x == static_cast<unsigned>(width)) {
      x = 0;
      ++y;
    }
  }
  return orders;
}

}  // namespace ei4::test
