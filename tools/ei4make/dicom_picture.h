#pragma once

#include <optional>
#include <span>

#include "ei4make/source.h"

namespace ei4::tools {

/// Whether this build reads DICOM.
extern const bool kReadsDicom;

struct DicomRequest {
  std::optional<int> frame;  ///< which one, from 1; without a wish the file must have only one
  bool hasRescale =
      false;  ///< slope and intercept will come from elsewhere: a lookup table in their place is ignored
};

/// Reads one frame of a DICOM file (with the mark "DICM" behind 128 bytes): 8 or 16 bits allocated a sample, signed or
/// not, MONOCHROME1 and 2, PALETTE COLOR, RGB, YBR_FULL, YBR_FULL_422; uncompressed, deflated, or in a transfer syntax
/// that DCMTK decodes: RLE, JPEG and JPEG-LS. Nothing but samples, rescaling and window comes out.
///
/// Throws PictureError for all else. Nothing is printed. Memory goes with the file's length and the one frame's pixels.
/// Not for several threads at once.
Source readDicom(std::span<const unsigned char> file, const DicomRequest& request);

}  // namespace ei4::tools
