#include "encoder/stream_builder.h"

#include <algorithm>
#include <string>

#include "encoder/encode_error.h"

namespace ei4::tools {

namespace {
void requireRange(int value, int most, const char* what) {
  if (value < 0 || value > most) throw EncodeError(std::string(what) + " does not fit the stream header");
}
}  // namespace

StreamBuilder::StreamBuilder(const StreamHeader& header) : header_(header) {
  requireRange(header.width, kMostSide, "width");
  requireRange(header.height, kMostSide, "height");
  requireRange(header.bytesPerPixel, 255, "bytes per pixel");
  requireRange(header.bitsPerPixel, 255, "bits per pixel");
}

void StreamBuilder::preamble(int top, int levels) {
  coded_.put(static_cast<std::uint64_t>(top), 8);
  coded_.put(static_cast<std::uint64_t>(levels), 8);
}

bool StreamBuilder::fits(const ChunkId& id, std::uint64_t lengthInBits) const {
  const int width = lengthFieldBits(header_, id);
  return lengthInBits == 0 || (width > 0 && (width >= 64 || lengthInBits >> width == 0));
}

void StreamBuilder::chunk(const ChunkId& id, const BitWriter& payload) {
  if (!fits(id, payload.bitCount())) {
    throw ChunkTooLong("the length field of order " + std::to_string(id.order) + " is too narrow for " +
                       std::to_string(payload.bitCount()) + " bits: use fewer levels" +
                       (header_.magic == Magic::GW40 ? " or GW41" : ""));
  }
  chunkStating(payload.bitCount(), id, payload);
}

void StreamBuilder::chunkStating(std::uint64_t lengthInBits, const ChunkId& id, const BitWriter& payload) {
  coded_.put(static_cast<std::uint64_t>(id.plane), 2);
  coded_.put(static_cast<std::uint64_t>(id.order), 4);
  coded_.put(static_cast<std::uint64_t>(id.kind), 1);
  coded_.put(lengthInBits, std::max(0, lengthFieldBits(header_, id)));
  coded_.append(payload);
}

std::vector<unsigned char> StreamBuilder::build() const {
  const auto low = [](int value) { return static_cast<unsigned char>(value & 0xFF); };
  const auto high = [](int value) { return static_cast<unsigned char>(value >> 8); };
  std::vector<unsigned char> stream = {'G',
                                       'W',
                                       '4',
                                       static_cast<unsigned char>(header_.magic == Magic::GW40 ? '0' : '1'),
                                       low(header_.bytesPerPixel),
                                       low(header_.bitsPerPixel),
                                       low(header_.width),
                                       high(header_.width),
                                       low(header_.height),
                                       high(header_.height)};
  stream.resize(kStreamHeaderBytes);
  const std::vector<unsigned char> coded = coded_.bytes();
  stream.insert(stream.end(), coded.begin(), coded.end());
  return stream;
}

}  // namespace ei4::tools
