#include "ei4make/jpeg_header.h"

#include <cstddef>

namespace ei4::tools {

namespace {

constexpr int kStart = 0xD8;
constexpr int kScan = 0xDA;
constexpr int kLosslessFrame = 0xF7;  // of JPEG-LS

bool isFrameHeader(int marker) {
  const bool isTable = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
  return (marker >= 0xC0 && marker <= 0xCF && !isTable) || marker == kLosslessFrame;
}

int wordAt(std::span<const unsigned char> stream, std::size_t at) { return stream[at] << 8 | stream[at + 1]; }

// No coded byte of a scan looks like the beginning of another one.
int scansFrom(std::span<const unsigned char> stream, std::size_t at) {
  int scans = 0;
  for (; at + 1 < stream.size(); ++at) {
    if (stream[at] == 0xFF && stream[at + 1] == kScan) ++scans;
  }
  return scans;
}

}  // namespace

std::optional<JpegHeader> readJpegHeader(std::span<const unsigned char> stream) {
  if (stream.size() < 2 || stream[0] != 0xFF || stream[1] != kStart) return std::nullopt;
  std::size_t at = 2;
  while (stream.size() - at >= 4 && stream[at] == 0xFF) {
    const int marker = stream[at + 1];
    if (marker == 0xFF) {  // a fill byte
      ++at;
      continue;
    }
    const auto length = static_cast<std::size_t>(wordAt(stream, at + 2));
    if (marker == kScan || length < 2 || length > stream.size() - at - 2) return std::nullopt;
    if (isFrameHeader(marker)) {
      if (length < 8) return std::nullopt;
      return JpegHeader{wordAt(stream, at + 7), wordAt(stream, at + 5), stream[at + 4],
                        scansFrom(stream, at + 2 + length)};
    }
    at += 2 + length;
  }
  return std::nullopt;
}

}  // namespace ei4::tools
