// An image as the converter takes it out of a file or container: preamble, stream header, coded data.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "container/serial_reader.h"
#include "gwav4/header.h"

namespace ei4::info {

/// What stands in front of the stream.
struct Preamble {
  int length = 0;  ///< bytes, as it is stated
  float intercept = 0;
  float slope = 0;
  float window = 0;  ///< width, in rescaled units
  float level = 0;   ///< centre, in rescaled units
};

struct CodedImage {
  std::int64_t length = -1;                    ///< bytes of the source; -1: it could not be opened
  std::optional<Preamble> preamble;            ///< when its 24 bytes are there
  std::optional<zel::gwav4::GWHeader> header;  ///< when its 16 bytes are there, whatever they say
  std::string refusal;                         ///< why the converter does not take it; else empty

  /// Header and coded data in one piece. Empty without a header of a known magic.
  std::span<const unsigned char> stream() const { return {bytes.get(), streamBytes}; }

  std::unique_ptr<unsigned char[]> bytes;
  std::size_t streamBytes = 0;
};

/// Reads the image by the very calls that the converter makes, and so with all that a source is known to do. What it
/// would refuse is read on as far as its fields can be found. Memory: the source's length. Throws std::bad_alloc only.
CodedImage readCodedImage(SerialReader& source);

}  // namespace ei4::info
