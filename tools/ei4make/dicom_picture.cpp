#include "ei4make/dicom_picture.h"

#include <dcmtk/config/osconfig.h>
// The configuration has to stand in front of all other headers of the library.
#include <dcmtk/dcmdata/dccodec.h>
#include <dcmtk/dcmdata/dcdatset.h>
#include <dcmtk/dcmdata/dcdeftag.h>
#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dcrledrg.h>
#include <dcmtk/dcmjpeg/djdecode.h>
#include <dcmtk/dcmjpls/djdecode.h>
#include <dcmtk/oflog/oflog.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "driver/picture_limit.h"
#include "ei4make/dicom_coded_frame.h"
#include "ei4make/dicom_structure.h"
#include "ei4make/frame_pixels.h"
#include "ei4make/inflate.h"

namespace ei4::tools {

const bool kReadsDicom = true;

namespace {

using Bytes = std::span<const unsigned char>;

// What a deflated data set may grow to: this, and so many times the file.
constexpr std::size_t kSureInflatedBytes = std::size_t{1} << 28;
constexpr std::size_t kInflatedForEachByte = 16;

/// The library as it is needed here: silent, with all its decoders.
class Library {
 public:
  Library() {
    OFLog::configure(OFLogger::OFF_LOG_LEVEL);
    DcmRLEDecoderRegistration::registerCodecs();
    DJDecoderRegistration::registerCodecs();
    DJLSDecoderRegistration::registerCodecs();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    DJLSDecoderRegistration::cleanup();
    DJDecoderRegistration::cleanup();
    DcmRLEDecoderRegistration::cleanup();
  }
};

DcmXfer supportedSyntax(const std::string& uid) {
  DcmXfer syntax(uid.c_str());
  const E_TransferSyntax id = syntax.getXfer();
  const bool isPlain = id == EXS_LittleEndianImplicit || id == EXS_LittleEndianExplicit ||
                       id == EXS_BigEndianExplicit || id == EXS_DeflatedLittleEndianExplicit;
  if (isPlain || (syntax.isEncapsulated() && DcmCodecList::canChangeCoding(id, EXS_LittleEndianExplicit))) {
    return syntax;
  }
  const std::string name = id == EXS_Unknown ? "" : std::string(syntax.getXferName()) + ", ";
  throw PictureError("the DICOM file's transfer syntax is not one that is read: " + name + uid);
}

std::optional<int> number(DcmItem& item, const DcmTagKey& tag, unsigned long position = 0) {
  Uint16 word = 0;
  if (item.findAndGetUint16(tag, word, position).good()) return word;
  Sint16 signedWord = 0;
  if (item.findAndGetSint16(tag, signedWord, position).good()) return signedWord;
  return std::nullopt;
}

int neededNumber(DcmItem& item, const DcmTagKey& tag, const char* name) {
  if (const auto value = number(item, tag)) return *value;
  throw PictureError(std::string("the DICOM file states no ") + name);
}

std::optional<double> real(DcmItem& item, const DcmTagKey& tag) {
  Float64 value = 0;
  if (item.findAndGetFloat64(tag, value).good() && std::isfinite(value)) return value;
  return std::nullopt;
}

bool hasText(DcmItem& item, const DcmTagKey& tag) {
  OFString text;
  return item.findAndGetOFString(tag, text).good() && !text.empty();
}

bool hasItems(DcmItem& item, const DcmTagKey& sequence) {
  DcmItem* first = nullptr;
  return item.findAndGetSequenceItem(sequence, first).good();
}

/// Which frame, from 0.
int chosenFrame(DcmItem& dataSet, const std::optional<int>& wish) {
  Sint32 frames = 1;
  if (hasText(dataSet, DCM_NumberOfFrames) &&
      (dataSet.findAndGetSint32(DCM_NumberOfFrames, frames).bad() || frames < 1)) {
    throw PictureError("the DICOM file states a number of frames that is none");
  }
  const std::string count =
      "the DICOM file has " + std::to_string(frames) + (frames == 1 ? " frame" : " frames");
  if (!wish && frames > 1) throw PictureError(count + ": say which one with --frame");
  if (wish && *wish > frames) throw PictureError(count + ", and no frame " + std::to_string(*wish));
  return wish.value_or(1) - 1;
}

std::string colourName(DcmItem& dataSet) {
  OFString name;
  if (dataSet.findAndGetOFString(DCM_PhotometricInterpretation, name).bad()) {
    throw PictureError("the DICOM file states no photometric interpretation");
  }
  return {name.c_str(), name.length()};
}

bool isGrey(const std::string& name) { return name == "MONOCHROME1" || name == "MONOCHROME2"; }

// Only what is printed anyway: the text comes from the file.
std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text.substr(0, 16)) result += c >= ' ' && c <= '~' ? c : '?';
  return result + '"';
}

ColourModel modelOf(const std::string& name) {
  if (isGrey(name)) return ColourModel::Grey;
  if (name == "PALETTE COLOR") return ColourModel::Palette;
  if (name == "RGB") return ColourModel::Rgb;
  if (name == "YBR_FULL") return ColourModel::YbrFull;
  if (name == "YBR_FULL_422") return ColourModel::YbrFull422;
  throw PictureError("the photometric interpretation " + quoted(name) + " is not read");
}

FrameLayout layoutOf(DcmItem& dataSet) {
  FrameLayout layout;
  layout.height = neededNumber(dataSet, DCM_Rows, "number of rows");
  layout.width = neededNumber(dataSet, DCM_Columns, "number of columns");
  layout.bitsAllocated = neededNumber(dataSet, DCM_BitsAllocated, "bits allocated");
  layout.bitsStored = number(dataSet, DCM_BitsStored).value_or(layout.bitsAllocated);
  layout.highBit = number(dataSet, DCM_HighBit).value_or(layout.bitsStored - 1);
  layout.isSigned = number(dataSet, DCM_PixelRepresentation).value_or(0) == 1;
  layout.isPlanar = number(dataSet, DCM_PlanarConfiguration).value_or(0) == 1;
  layout.model = modelOf(colourName(dataSet));
  const int samples = number(dataSet, DCM_SamplesPerPixel).value_or(1);
  const bool hasThree = layout.model != ColourModel::Grey && layout.model != ColourModel::Palette;
  if (samples != (hasThree ? 3 : 1)) {
    throw PictureError("the DICOM file has " + std::to_string(samples) +
                       " samples a pixel, which does not go with its photometric interpretation");
  }
  checkLayout(layout);
  return layout;
}

// One colour's table, as bytes.
std::vector<unsigned char> paletteEntries(DcmItem& dataSet, const DcmTagKey& tag, std::size_t count,
                                          int bits) {
  const Uint16* words = nullptr;
  unsigned long wordCount = 0;
  if (dataSet.findAndGetUint16Array(tag, words, &wordCount).bad() || words == nullptr) {
    throw PictureError("the DICOM file has no palette that is written out");
  }
  std::vector<unsigned char> entries(count);
  if (bits == 8 && wordCount == (count + 1) / 2 && count > 1) {  // two to a word, the first one low
    for (std::size_t i = 0; i < count; ++i) {
      entries[i] = static_cast<unsigned char>(i % 2 == 0 ? words[i / 2] & 0xFFU : words[i / 2] >> 8U);
    }
    return entries;
  }
  if (wordCount < count) throw PictureError("the DICOM file's palette is shorter than it states");
  for (std::size_t i = 0; i < count; ++i) {
    entries[i] = static_cast<unsigned char>(bits == 8 ? words[i] & 0xFFU : words[i] >> 8U);
  }
  return entries;
}

Palette paletteOf(DcmItem& dataSet, bool isSigned) {
  constexpr std::size_t kColours = 3;
  const DcmTagKey descriptors[kColours] = {DCM_RedPaletteColorLookupTableDescriptor,
                                           DCM_GreenPaletteColorLookupTableDescriptor,
                                           DCM_BluePaletteColorLookupTableDescriptor};
  const DcmTagKey tables[kColours] = {DCM_RedPaletteColorLookupTableData,
                                      DCM_GreenPaletteColorLookupTableData,
                                      DCM_BluePaletteColorLookupTableData};
  Palette palette;
  for (std::size_t i = 0; i < kColours; ++i) {
    const auto count = number(dataSet, descriptors[i], 0);
    const auto first = number(dataSet, descriptors[i], 1);
    const auto bits = number(dataSet, descriptors[i], 2);
    if (!count || !first || !bits || (*bits != 8 && *bits != 16)) {
      throw PictureError("the DICOM file has no usable description of its palette");
    }
    const int firstValue = isSigned ? static_cast<std::int16_t>(*first) : static_cast<std::uint16_t>(*first);
    if (i > 0 && firstValue != palette.first) {
      throw PictureError("the tables of the DICOM file's palette begin at different values");
    }
    palette.first = firstValue;
    const std::size_t entries = static_cast<std::uint16_t>(*count);
    palette.entries[i] = paletteEntries(dataSet, tables[i], entries == 0 ? 65536 : entries, *bits);
  }
  return palette;
}

/// The item that describes one frame for a functional group of a multi-frame file, else the data set itself.
DcmItem& groupOf(DcmItem& dataSet, const DcmTagKey& group, int frame) {
  DcmItem* groups = nullptr;
  DcmItem* item = nullptr;
  if (dataSet.findAndGetSequenceItem(DCM_PerFrameFunctionalGroupsSequence, groups, frame).good() &&
      groups->findAndGetSequenceItem(group, item).good()) {
    return *item;
  }
  if (dataSet.findAndGetSequenceItem(DCM_SharedFunctionalGroupsSequence, groups).good() &&
      groups->findAndGetSequenceItem(group, item).good()) {
    return *item;
  }
  return dataSet;
}

void readRescale(DcmItem& item, bool isIgnored, StoredValues& stored, std::vector<std::string>& notes) {
  if (hasItems(item, DCM_ModalityLUTSequence) && !isIgnored) {
    throw PictureError(
        "the DICOM file has a modality lookup table, which a .ei4 cannot hold: state --slope and "
        "--intercept");
  }
  stored.slope = real(item, DCM_RescaleSlope).value_or(hasText(item, DCM_RescaleSlope) ? 0 : 1);
  if (stored.slope == 0) {
    stored.slope = 1;
    notes.emplace_back("the file's rescale slope cannot be used, 1 is taken");
  }
  if (const auto intercept = real(item, DCM_RescaleIntercept)) {
    stored.intercept = *intercept;
  } else if (hasText(item, DCM_RescaleIntercept)) {
    notes.emplace_back("the file's rescale intercept cannot be used, 0 is taken");
  }
}

void readWindow(DcmItem& item, StoredValues& stored, std::vector<std::string>& notes) {
  const auto width = real(item, DCM_WindowWidth);
  const auto centre = real(item, DCM_WindowCenter);
  if (width && centre && *width > 0) {
    stored.window = width;
    stored.level = centre;
    OFString function;
    if (item.findAndGetOFString(DCM_VOILUTFunction, function).good() && function == "SIGMOID") {
      notes.emplace_back("the file's window is a sigmoid one, it becomes a straight ramp");
    }
  } else if (hasItems(item, DCM_VOILUTSequence)) {
    notes.emplace_back(
        "the file has a lookup table for its window, which is left out: all its values are shown");
  } else if (hasText(item, DCM_WindowWidth)) {
    notes.emplace_back("the file's window cannot be used: all its values are shown");
  }
}

/// A data set in memory, in front of or with its pixel data.
class DataSet {
 public:
  DataSet(Bytes bytes, E_TransferSyntax syntax) {
    DcmInputBufferStream stream;
    if (!bytes.empty()) stream.setBuffer(bytes.data(), static_cast<offile_off_t>(bytes.size()));
    stream.setEos();
    dataSet_.transferInit();
    const OFCondition condition = dataSet_.read(stream, syntax, EGL_noChange);
    dataSet_.transferEnd();
    if (condition.bad()) throw PictureError(std::string("the DICOM file is damaged: ") + condition.text());
  }

  DcmDataset& items() { return dataSet_; }

 private:
  DcmDataset dataSet_;
};

// The bytes of one frame of uncompressed pixel data, low byte first: those of the file, or swapped ones in `store`.
Bytes plainFrame(Bytes pixels, const FrameLayout& layout, int frame, bool isSwapped,
                 std::vector<unsigned char>& store) {
  const std::uint64_t size = frameBytes(layout);
  const auto before = static_cast<std::uint64_t>(frame);
  if (pixels.size() / size <= before) {  // a division: the product may need more than 64 bits
    throw PictureError("the DICOM file's pixel data end before its last pixel");
  }
  const std::uint64_t begin = size * before;
  if (!isSwapped) return pixels.subspan(begin, size);
  store.resize(size);
  for (std::size_t i = 0; i < size; ++i) store[i] = pixels[(begin + i) ^ 1U];  // the value's length is even
  return store;
}

Source readDataSet(Bytes bytes, const DcmXfer& syntax, std::size_t fileSize, const DicomRequest& request) {
  const bool isBigEndian = syntax.getXfer() == EXS_BigEndianExplicit;
  const DicomOutline outline = outlineOf(bytes, {syntax.isExplicitVR() != OFFalse, isBigEndian});
  if (outline.hasFragments != (syntax.isEncapsulated() != OFFalse)) {
    throw PictureError("the DICOM file is damaged: its pixel data do not go with its transfer syntax");
  }
  const std::size_t needed = outline.hasFragments ? outline.pixelValueEnd : outline.pixelElement;
  DataSet dataSet(bytes.first(needed), syntax.getXfer());
  DcmItem& items = dataSet.items();

  const int frame = chosenFrame(items, request.frame);
  FrameLayout layout = layoutOf(items);
  std::vector<unsigned char> swapped;
  SharedBytes decoded;
  Bytes pixels;
  if (outline.hasFragments) {
    if (!inputMayClaim(CSize(layout.width, layout.height), static_cast<std::int64_t>(fileSize))) {
      throw PictureError("the DICOM file claims more pixels than so short a file may");
    }
    decoded = decodedFrame(items, syntax.getXferID(), layout, frame);
    pixels = Bytes(decoded.bytes()).first(frameBytes(layout));
  } else {
    const Bytes all = bytes.subspan(outline.pixelValue, outline.pixelValueEnd - outline.pixelValue);
    pixels = plainFrame(all, layout, frame, isBigEndian && outline.isWordValue, swapped);
  }

  Source source;
  if (layout.model == ColourModel::Palette) {
    source.picture = pictureOf(pixels, layout, paletteOf(items, layout.isSigned));
    return source;
  }
  StoredValues stored;
  source.picture = pictureOf(pixels, layout, stored.atZero);
  if (layout.model != ColourModel::Grey) return source;
  stored.lowIsWhite = colourName(items) == "MONOCHROME1";
  readRescale(groupOf(items, DCM_PixelValueTransformationSequence, frame), request.hasRescale, stored,
              source.notes);
  readWindow(groupOf(items, DCM_FrameVOILUTSequence, frame), stored, source.notes);
  source.stored = stored;
  return source;
}

}  // namespace

Source readDicom(Bytes file, const DicomRequest& request) {
  const DicomPrologue prologue = readPrologue(file);
  const Library library;
  const DcmXfer syntax = supportedSyntax(prologue.transferSyntax);
  const Bytes rest = file.subspan(prologue.dataSetOffset);
  if (syntax.getXfer() != EXS_DeflatedLittleEndianExplicit) {
    return readDataSet(rest, syntax, file.size(), request);
  }
  const auto dataSet = inflated(rest, kSureInflatedBytes + kInflatedForEachByte * file.size());
  return readDataSet(dataSet, DcmXfer(EXS_LittleEndianExplicit), file.size(), request);
}

}  // namespace ei4::tools
