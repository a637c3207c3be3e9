#pragma once

#include <optional>
#include <span>
#include <vector>

#include "encoder/chunk_plan.h"
#include "encoder/encode_error.h"
#include "encoder/stream_format.h"

namespace ei4::tools {

/// How the runs of a significance chunk end behind its last significant coefficient. All decode alike.
enum class RunEnding {
  ExactRun,    ///< a run that covers what is left
  EndlessRun,  ///< 41 zeros
  Terminator,  ///< the escape, then a run that covers what is left
  OverLongRun  ///< a run that goes well past what is left
};

struct EncodeOptions {
  Magic magic = Magic::GW41;
  int bytesPerPixel = 1;  ///< 1 8-bit grey, 2 16-bit grey, 3 colour
  int bitsPerPixel =
      8;  ///< what the header states: 1..8, for 16-bit grey 1..16. Pixels are not checked against it.

  /// Decomposition levels, 0..8. Without a wish naturalLevels(), or fewer if a chunk is too long for the
  /// length field (that can only happen with GW40, whose fields are narrower).
  std::optional<int> levels;

  int lowestBit = 0;  ///< the lowest bit position that is coded, 0..31; 0 is lossless

  ChunkOrder chunkOrder = ChunkOrder::CoarseFirst;
  std::vector<ChunkId> customOrder;  ///< for ChunkOrder::Custom only; may leave chunks out

  /// Where another ending than the exact run makes a chunk too long for its field, the exact run is taken.
  RunEnding ending = RunEnding::ExactRun;
  bool runsInEmptyChunks =
      false;  ///< write a chunk without significant coefficients as a run, not as length 0

  /// Whether the directory gets its end code. Without a wish it does when every chunk is in: a decoder that
  /// finds no end takes the stream for a cut one and clamps the samples to the range, which lossy pictures
  /// need.
  std::optional<bool> endCode;
};

/// Codes a picture: the 16 header bytes and the coded data.
/// pixels: width * height * bytesPerPixel bytes, rows without padding, 16-bit samples in host byte order.
/// Throws EncodeError when sizes or options are out of range, ChunkTooLong when the picture does not fit the
/// level count that was asked for.
std::vector<unsigned char> encode(std::span<const unsigned char> pixels, int width, int height,
                                  const EncodeOptions& options);

/// The level count that a stream made by encode() states.
int levelsOf(std::span<const unsigned char> stream);

}  // namespace ei4::tools
