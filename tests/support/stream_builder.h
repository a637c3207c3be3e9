// Coded streams written by hand, chunk by chunk, so that a test reads as a meaning and not as a hex dump:
//
//   const auto stream = CodedStream({.width = 64, .height = 48}).preamble(/*top=*/11, /*levels=*/3)
//                           .significance(/*plane=*/0, /*order=*/3, "01 1 1")  // run of 1, a minus, run of 0
//                           .cut();
//
// Bits stand in the order in which the decoder takes them; blanks are for the reader.
#pragma once

#include <string_view>
#include <vector>

#include "encoder/stream_builder.h"

namespace ei4::test {

using tools::Magic;
using tools::StreamHeader;

class CodedStream {
 public:
  explicit CodedStream(const StreamHeader& header) : m_Builder(header) {}

  CodedStream& preamble(int top, int levels) {
    m_Builder.preamble(top, levels);
    return *this;
  }
  /// The next lower significance chunk of that plane and order.
  CodedStream& significance(int plane, int order, std::string_view bits) {
    m_Builder.chunk({plane, order, tools::ChunkKind::Significance}, tools::bitsFrom(bits));
    return *this;
  }
  /// The next lower refinement chunk of that plane and order.
  CodedStream& refinement(int plane, int order, std::string_view bits) {
    m_Builder.chunk({plane, order, tools::ChunkKind::Refinement}, tools::bitsFrom(bits));
    return *this;
  }
  CodedStream& raw(std::string_view bits) {
    m_Builder.raw(tools::bitsFrom(bits));
    return *this;
  }

  /// The stream with the end code of its directory.
  std::vector<unsigned char> end() {
    m_Builder.end();
    return m_Builder.build();
  }
  /// The stream as it stands, filled up to a whole byte. The filling can be mistaken for the start of an
  /// entry.
  std::vector<unsigned char> cut() const { return m_Builder.build(); }

 private:
  tools::StreamBuilder m_Builder;
};

/// The 16 header bytes alone.
inline std::vector<unsigned char> headerBytes(const StreamHeader& header) {
  return CodedStream(header).cut();
}

}  // namespace ei4::test
