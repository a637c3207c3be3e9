#include "encoder/gw_encoder.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "encoder/coefficients.h"
#include "encoder/run_code.h"
#include "encoder/stream_builder.h"

namespace ei4::tools {

namespace {

using Band = std::vector<Coefficient>;

void require(bool condition, const char* message) {
  if (!condition) throw EncodeError(message);
}

void checkRequest(std::size_t pixelBytes, int width, int height, const EncodeOptions& options) {
  require(width >= 1 && width <= kMostSide && height >= 1 && height <= kMostSide,
          "a side must be 1 to 65535 pixels");
  require(options.bytesPerPixel >= 1 && options.bytesPerPixel <= 3, "a pixel has 1, 2 or 3 bytes");
  require(options.bitsPerPixel >= 1 && options.bitsPerPixel <= (options.bytesPerPixel == 2 ? 16 : 8),
          "a sample has 1 to 8 significant bits, a 16-bit one 1 to 16");
  require(pixelBytes == static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                            static_cast<std::size_t>(options.bytesPerPixel),
          "the pixel data does not have the size of the picture");
  require(options.levels.value_or(0) >= 0 && options.levels.value_or(0) <= kMostLevels,
          "there are 0 to 8 decomposition levels");
  require(options.lowestBit >= 0 && options.lowestBit <= kHighestBit, "the lowest bit position is 0 to 31");
}

int topBitOf(const std::vector<PlaneCoefficients>& planes) {
  std::uint32_t all = 0;
  for (const PlaneCoefficients& orders : planes) {
    for (const Band& band : orders) {
      for (const Coefficient& coefficient : band) all |= coefficient.magnitude();
    }
  }
  return static_cast<int>(std::bit_width(all)) - 1;
}

bool isSignificantAbove(const Coefficient& coefficient, int bit) {
  return (coefficient.magnitude() >> bit) > 1;
}
bool hasBit(const Coefficient& coefficient, int bit) { return ((coefficient.magnitude() >> bit) & 1U) != 0; }

/// `rest` coefficients are left, none of them significant.
void putEnding(BitWriter& bits, RunEnding ending, std::uint64_t rest) {
  switch (ending) {
    case RunEnding::ExactRun:
      putRun(bits, rest);
      break;
    case RunEnding::EndlessRun:
      putEndlessRun(bits);
      break;
    case RunEnding::Terminator:
      putTerminator(bits);
      putRun(bits, rest);
      break;
    case RunEnding::OverLongRun:
      putRun(bits, 2 * rest + 5);
      break;
  }
}

class ChunkWriter {
 public:
  ChunkWriter(StreamBuilder& stream, const EncodeOptions& options) : stream_(stream), options_(options) {}

  void write(const PlannedChunk& chunk, const Band& band) {
    if (chunk.id.kind == ChunkKind::Significance) {
      writeSignificance(chunk, band);
    } else {
      writeRefinement(chunk, band);
    }
  }

 private:
  void writeSignificance(const PlannedChunk& chunk, const Band& band) {
    BitWriter bits;
    std::uint64_t run = 0;
    for (const Coefficient& coefficient : band) {
      if (isSignificantAbove(coefficient, chunk.bitPosition)) continue;
      if (hasBit(coefficient, chunk.bitPosition)) {
        putRun(bits, run);
        bits.put(coefficient.isNegative() ? 1 : 0, 1);
        run = 0;
      } else {
        ++run;
      }
    }
    const bool isEmpty = bits.bitCount() == 0;
    if (!isEmpty || options_.runsInEmptyChunks) bits = ended(chunk.id, bits, run, isEmpty);
    stream_.chunk(chunk.id, bits);
  }

  BitWriter ended(const ChunkId& id, const BitWriter& runs, std::uint64_t rest, bool isEmpty) const {
    for (const RunEnding ending : {options_.ending, RunEnding::ExactRun}) {
      BitWriter whole = runs;
      putEnding(whole, ending, rest);
      if (stream_.fits(id, whole.bitCount()) || (ending == RunEnding::ExactRun && !isEmpty)) return whole;
    }
    return runs;  // an empty chunk can always do without its run
  }

  void writeRefinement(const PlannedChunk& chunk, const Band& band) {
    BitWriter bits;
    for (const Coefficient& coefficient : band) {
      if (!isSignificantAbove(coefficient, chunk.bitPosition)) continue;
      bits.put(hasBit(coefficient, chunk.bitPosition) ? 1 : 0, 1);
    }
    stream_.chunk(chunk.id, bits);
  }

  StreamBuilder& stream_;
  const EncodeOptions& options_;
};

std::vector<unsigned char> encodeWithLevels(std::span<const unsigned char> pixels, const StreamHeader& header,
                                            const EncodeOptions& options, int levels) {
  const std::vector<PlaneCoefficients> planes = transformPicture(pixels, header, levels);
  const ChunkSupply supply{static_cast<int>(planes.size()), levels, topBitOf(planes), options.lowestBit};
  const std::vector<PlannedChunk> plan = options.chunkOrder == ChunkOrder::Custom
                                             ? planChunks(supply, options.customOrder)
                                             : planChunks(supply, options.chunkOrder);

  StreamBuilder stream(header);
  stream.preamble(supply.topBit, levels);
  ChunkWriter chunks(stream, options);
  for (const PlannedChunk& chunk : plan) {
    chunks.write(chunk,
                 planes[static_cast<std::size_t>(chunk.id.plane)][static_cast<std::size_t>(chunk.id.order)]);
  }

  ChunkSupply wholeSupply = supply;
  wholeSupply.lowestBit = 0;
  const bool isWhole = plan.size() == planChunks(wholeSupply, ChunkOrder::ByOrder).size();
  if (options.endCode.value_or(isWhole)) stream.end();
  return stream.build();
}

}  // namespace

std::vector<unsigned char> encode(std::span<const unsigned char> pixels, int width, int height,
                                  const EncodeOptions& options) {
  checkRequest(pixels.size(), width, height, options);
  const StreamHeader header{options.magic, options.bytesPerPixel, options.bitsPerPixel, width, height};
  if (options.levels) return encodeWithLevels(pixels, header, options, *options.levels);
  for (int levels = naturalLevels(width, height); levels > 0; --levels) {
    try {
      return encodeWithLevels(pixels, header, options, levels);
    } catch (const ChunkTooLong&) {
      continue;  // the field of the coarsest order grows with every level less
    }
  }
  return encodeWithLevels(pixels, header, options, 0);
}

int levelsOf(std::span<const unsigned char> stream) { return stream[kStreamHeaderBytes + 1]; }

}  // namespace ei4::tools
