// Pictures as ei4make takes them in: PNM, PNG, and what is looked at of a DICOM file before its library sees a byte.
//
// Input   u8, modulo 8, says what follows:
//         0  a file of any kind;
//         1  the same, but the check sums of a PNG's chunks are set right first;
//         2  u8 encoding (bit 0 with representations, bit 1 big-endian), then a data set;
//         3  u8 number of segments, then a frame of RLE;
//         4  a JPEG stream;
//         5  u16 width, u16 height, u8 each for the colour model, bits allocated, bits stored, high bit and flags (bit 0
//            signed, bit 1 planar), then an uncompressed frame;
//         6  the same with three palettes between: u16 first value, u8 number of entries, all entries;
//         7  u16 most bytes / 16, then a deflated stream.
// Limits  PNG and frames of up to a megapixel, or of so many that they must be refused. A deflated data set of up to 1 MiB.
// Holds   Refusals are exceptions of one kind. A picture has just the bytes that its sides and format make and no sample
//         beyond its bits; it is that of a plain reading (PNM, frames) or of the library's own reading as a whole (PNG).
//         The outline of a DICOM file leads nowhere outside it, and takes what it outlines to the last byte.
//         Where this is built without a library, its part is left out.

#include <string_view>
#include <vector>

#include "check.h"
#include "ei4make/input_kind.h"
#include "input.h"
#include "picture_checks.h"
#include "png_sums.h"
#include "target.h"

namespace {

using ei4::fuzz::Input;
using ei4::fuzz::require;
using ei4::tools::InputKind;
using Bytes = std::span<const std::uint8_t>;

InputKind plainKind(Bytes file) {
  const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
  if (text.size() > 128 && text.substr(128).starts_with("DICM")) return InputKind::Dicom;
  if (text.starts_with("\x89PNG\r\n\x1a\n")) return InputKind::Png;
  const bool isPnm = (text.starts_with("P5") || text.starts_with("P6")) && text.size() > 2 &&
                     std::string_view(" \t\n\v\f\r#").find(text[2]) != std::string_view::npos;
  return isPnm ? InputKind::Pnm : InputKind::Unknown;
}

void tryFile(Bytes file) {
  const InputKind kind = ei4::tools::kindOf(file);
  require(kind == plainKind(file), "a file is what its first bytes say");
  ei4::fuzz::tryPnm(file);
  if constexpr (EI4_READS_PNG != 0) {
    if (kind == InputKind::Png) ei4::fuzz::tryPng(file);
  }
  if (kind == InputKind::Dicom) ei4::fuzz::tryDicomFile(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  switch (input.u8() % 8) {
    case 0:
      tryFile(input.rest());
      break;
    case 1: {
      std::vector<std::uint8_t> file(input.rest().begin(), input.rest().end());
      ei4::fuzz::setPngSums(file);
      tryFile(file);
      break;
    }
    case 2:
      ei4::fuzz::tryDataSet(input);
      break;
    case 3:
      ei4::fuzz::tryRleHeader(input);
      break;
    case 4:
      ei4::fuzz::tryJpegHeader(input);
      break;
    case 5:
      ei4::fuzz::tryFramePixels(input, /*hasPalette=*/false);
      break;
    case 6:
      ei4::fuzz::tryFramePixels(input, /*hasPalette=*/true);
      break;
    default:
      if constexpr (EI4_READS_DICOM != 0) ei4::fuzz::tryInflate(input);
  }
  return 0;
}
