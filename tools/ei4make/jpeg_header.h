#pragma once

#include <optional>
#include <span>

namespace ei4::tools {

/// What the frame header of a JPEG or JPEG-LS stream states.
struct JpegHeader {
  int width = 0;
  int height = 0;
  int precision = 0;  ///< bits of a sample
  int scans = 0;      ///< how often the stream goes over (parts of) the picture
};

/// Nothing when the bytes do not begin such a stream or hold no frame header.
std::optional<JpegHeader> readJpegHeader(std::span<const unsigned char> stream);

}  // namespace ei4::tools
