// A wavelet decoder by itself, and two small streams for it.
#pragma once

#include <string>
#include <vector>

#include "gwav4/header.h"
#include "gwav4/wavelet_decoder.h"
#include "support/stream_builder.h"

namespace ei4::test {

using Bytes = std::vector<unsigned char>;

template <class T>
using Decoder = zel::gwav4::CWaveletDecoder<T, zel::gwav4::CFilter5_3<T>>;

template <class T>
int readStream(Decoder<T>& decoder, const Bytes& stream, int level = 0, bool resumable = false) {
  using zel::gwav4::kHeaderBytes;
  zel::gwav4::CBitReader reader(stream.data() + kHeaderBytes, stream.size() - kHeaderBytes);
  return decoder.readWavelet(reader, level, resumable);
}

template <class T>
std::vector<T> coefficients(Decoder<T>& decoder, int plane = 0) {
  return {decoder.plane(plane), decoder.row(plane, decoder.height())};
}

inline constexpr StreamHeader kLine = {Magic::GW41, 1, 8, 3, 1};    // three coefficients of order 0
inline constexpr StreamHeader kSquare = {Magic::GW41, 1, 8, 4, 4};  // 4 x 4 coefficients

/// The coefficients 5, 0, -9 in full, or only the first `chunks` of the seven chunks.
inline CodedStream lineStream(int chunks = 7) {
  CodedStream stream(kLine);
  stream.preamble(/*top=*/3, /*levels=*/0);
  if (chunks > 0) stream.significance(0, 0, "001 0 1 1");  // bit 3: the third one, a minus
  if (chunks > 1) stream.significance(0, 0, "1 0 01");     // bit 2: the first one, a plus
  if (chunks > 2) stream.refinement(0, 0, "0");            // bit 2 of the third
  if (chunks > 3) stream.refinement(0, 0, "0 0");          // bit 1 of the first and the third
  if (chunks > 4) stream.significance(0, 0, "");           // bit 1
  if (chunks > 5) stream.significance(0, 0, "");           // bit 0
  if (chunks > 6) stream.refinement(0, 0, "1 1");          // bit 0 of both
  return stream;
}

/// Four by four coefficients, all positive, whose highest bit is 3 in order 2, 2 in order 1 and 1 in order 0.
inline Bytes squareStream() {
  std::string twelve = "1";
  for (int i = 0; i < 12; ++i) twelve += "0 1";
  return CodedStream(kSquare)
      .preamble(3, 2)
      .significance(0, 2, "1 0")
      .significance(0, 1, "")
      .significance(0, 1, "1 0 1 0 1 0 1")
      .significance(0, 0, "")
      .significance(0, 0, "")
      .significance(0, 0, twelve)
      .end();
}

}  // namespace ei4::test
