#include "ei4make/dicom_coded_frame.h"

#include <dcmtk/config/osconfig.h>
// The configuration has to stand in front of all other headers of the library.
#include <dcmtk/dcmdata/dccodec.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcitem.h>
#include <dcmtk/dcmdata/dcpixel.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dcxfer.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <utility>

#include "ei4make/jpeg_header.h"
#include "ei4make/rle_header.h"

namespace ei4::tools {

namespace {

using Bytes = std::span<const unsigned char>;

// Far more than real pictures have; each scan costs as much as the whole picture.
constexpr int kMostScans = 100;

// Of processor time, for the decoding of one frame: some hundred times what a large one takes.
constexpr unsigned kMostSeconds = 120;
constexpr std::uint64_t kMostMemory = std::uint64_t{1} << 30;  // bytes, and
constexpr std::uint64_t kMostMemoryAByte = 16;                 // for each byte of the frame

/// Lets the base class's search for a frame's fragments be called.
struct FragmentSearch : DcmCodec {
  using DcmCodec::determineStartFragment;
};

// What the library's decoders do not look at before they work by it.
void checkRle(Bytes coded, const FrameLayout& layout) {
  const std::uint64_t pixels =
      static_cast<std::uint64_t>(layout.width) * static_cast<std::uint64_t>(layout.height);
  if (!hasRleHeader(coded, static_cast<int>(frameBytes(layout) / pixels))) {
    throw PictureError("the DICOM file is damaged: its coded data have no valid header");
  }
}

// The decoders take sides from the coded data, and memory for them, before they compare.
void checkJpeg(Bytes coded, FrameLayout& layout) {
  const auto header = readJpegHeader(coded);
  if (!header) throw PictureError("the DICOM file is damaged: its coded data have no valid header");
  if (header->width != layout.width || header->height != layout.height) {
    throw PictureError("the sides of the DICOM file's coded data are not those that it states");
  }
  if (header->scans > kMostScans) throw PictureError("the DICOM file's coded data have too many scans");
  if (header->precision > layout.bitsAllocated) {
    throw PictureError("the DICOM file's coded data have more bits than it states");
  }
  if (header->precision <= 8 && layout.bitsAllocated == 16) {  // then the decoder gives bytes
    layout.bitsAllocated = 8;
    layout.bitsStored = std::min(layout.bitsStored, 8);
    layout.highBit = layout.bitsStored - 1;
  }
}

/// The coded data of a file, and where one frame begins in them.
struct CodedFrame {
  DcmPixelData* pixels = nullptr;
  Uint32 frame = 0;
  Uint32 firstFragment = 0;
  Bytes coded;  ///< the first fragment
};

CodedFrame findFrame(DcmItem& dataSet, E_TransferSyntax syntax, int frame) {
  CodedFrame found;
  found.frame = static_cast<Uint32>(frame);
  DcmElement* element = nullptr;
  dataSet.findAndGetElement(DCM_PixelData, element);
  found.pixels = dynamic_cast<DcmPixelData*>(element);
  DcmPixelSequence* fragments = nullptr;
  DcmPixelItem* first = nullptr;
  Uint8* bytes = nullptr;
  Sint32 frames = 1;
  dataSet.findAndGetSint32(DCM_NumberOfFrames, frames);
  if (found.pixels == nullptr ||
      found.pixels->getEncapsulatedRepresentation(syntax, nullptr, fragments).bad() || fragments == nullptr ||
      FragmentSearch::determineStartFragment(found.frame, std::max(frames, 1), fragments, found.firstFragment)
          .bad() ||
      fragments->getItem(first, found.firstFragment).bad() || first->getUint8Array(bytes).bad() ||
      bytes == nullptr) {
    throw PictureError("the DICOM file is damaged: the frame's coded data are not to be found");
  }
  found.coded = {bytes, first->getLength()};
  return found;
}

}  // namespace

SharedBytes decodedFrame(DcmItem& dataSet, const std::string& transferSyntax, FrameLayout& layout,
                         int frame) {
  const E_TransferSyntax syntax = DcmXfer(transferSyntax.c_str()).getXfer();
  CodedFrame found = findFrame(dataSet, syntax, frame);
  if (layout.model == ColourModel::YbrFull422) layout.model = ColourModel::YbrFull;  // decoders never halve
  if (syntax == EXS_RLELossless) {
    checkRle(found.coded, layout);
  } else {
    checkJpeg(found.coded, layout);
  }
  const std::uint64_t size = frameBytes(layout);
  const std::uint64_t evenSize = size + size % 2;
  if (evenSize > UINT32_MAX) throw PictureError("the frame is too large");
  SharedBytes shared(evenSize + 1);
  unsigned char& isRgb = shared.bytes()[evenSize];
  const auto decode = [&] {
    OFString model;
    const OFCondition condition =
        found.pixels->getUncompressedFrame(&dataSet, found.frame, found.firstFragment, shared.bytes().data(),
                                           static_cast<Uint32>(evenSize), model);
    isRgb = model == "RGB" ? 1 : 0;
    return condition.good();
  };
  if (!succeedsInIsolation(decode, kMostSeconds, kMostMemory + kMostMemoryAByte * evenSize)) {
    throw PictureError("the DICOM file's coded data cannot be decoded");
  }
  if (layout.model == ColourModel::YbrFull && isRgb == 1) layout.model = ColourModel::Rgb;
  if (std::endian::native == std::endian::big && layout.bitsAllocated == 16) {
    for (std::size_t i = 0; i < size; i += 2) std::swap(shared.bytes()[i], shared.bytes()[i + 1]);
  }
  return shared;
}

}  // namespace ei4::tools
