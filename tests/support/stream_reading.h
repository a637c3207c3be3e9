// A wavelet decoder by itself, and two small streams for it.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "gwav4/header.h"
#include "gwav4/wavelet_decoder.h"
#include "support/stream_builder.h"

namespace ei4::test {

using Bytes = std::vector<unsigned char>;

/// A wavelet decoder together with the streams that it was given: it reads them whenever rows are made.
template <class T>
class Decoder {
 public:
  /// As those of the decoder.
  Decoder(int planeCount, int xSize, int ySize, int skip, int fullX, int fullY)
      : m_Decoder(planeCount, xSize, ySize, skip, fullX, fullY) {}

  int read(const Bytes& stream, int level, bool resumable) {
    const Bytes& kept = m_Streams.emplace_back(stream);
    zel::gwav4::CBitReader reader(kept.data() + zel::gwav4::kHeaderBytes,
                                  kept.size() - zel::gwav4::kHeaderBytes);
    return m_Decoder.readWavelet(reader, level, resumable);
  }
  std::vector<T> plane(int index) {
    std::vector<T> all(static_cast<std::size_t>(m_Decoder.width()) *
                       static_cast<std::size_t>(m_Decoder.height()));
    m_Decoder.copyPlane(index, all.data());
    return all;
  }
  void untransform() { m_Decoder.untransform(); }
  void untransformTo(void* out, int bytesPerPixel, int bits) {
    m_Decoder.untransformTo(out, bytesPerPixel, bits);
  }
  void convertAndCopyTo(void* out, int bytesPerPixel, int bits, int step) {
    m_Decoder.convertAndCopyTo(out, bytesPerPixel, bits, step);
  }
  void stop() { m_Decoder.stop(); }
  void kill() { m_Decoder.kill(); }
  void setSizeMode(bool gw40) { m_Decoder.setSizeMode(gw40); }

 private:
  zel::gwav4::CWaveletDecoder<T, zel::gwav4::CFilter5_3<T>> m_Decoder;
  std::deque<Bytes> m_Streams;  ///< references into a deque stay valid
};

template <class T>
int readStream(Decoder<T>& decoder, const Bytes& stream, int level = 0, bool resumable = false) {
  return decoder.read(stream, level, resumable);
}

/// A plane as it stands: coefficients, or samples once it is untransformed.
template <class T>
std::vector<T> coefficients(Decoder<T>& decoder, int plane = 0) {
  return decoder.plane(plane);
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
