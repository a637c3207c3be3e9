// The outline of DICOM files, and the headers of coded frames.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "check.h"
#include "ei4make/dicom_structure.h"
#include "ei4make/jpeg_header.h"
#include "ei4make/rle_header.h"
#include "picture_checks.h"

namespace ei4::fuzz {

namespace {

using tools::DicomEncoding;
using tools::DicomOutline;
using tools::DicomPrologue;
using tools::PictureError;
using Bytes = std::span<const std::uint8_t>;

// In copies of their own, whose end a sanitizer knows.
std::optional<DicomOutline> tryOutline(Bytes bytes, DicomEncoding encoding) {
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
  try {
    return tools::outlineOf(exact, encoding);
  } catch (const PictureError&) {
    return {};
  }
}

std::optional<DicomPrologue> tryPrologue(Bytes bytes) {
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
  try {
    return tools::readPrologue(exact);
  } catch (const PictureError&) {
    return {};
  }
}

bool same(const DicomOutline& a, const DicomOutline& b) {
  return a.pixelElement == b.pixelElement && a.pixelValue == b.pixelValue &&
         a.pixelValueEnd == b.pixelValueEnd && a.hasFragments == b.hasFragments &&
         a.isWordValue == b.isWordValue;
}

bool hasAt(Bytes bytes, std::size_t at, std::initializer_list<std::uint8_t> wanted) {
  return at <= bytes.size() && bytes.size() - at >= wanted.size() &&
         std::equal(wanted.begin(), wanted.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

void tryDataSet(Bytes bytes, DicomEncoding encoding) {
  const auto outline = tryOutline(bytes, encoding);
  if (!outline) return;
  const std::size_t end = outline->pixelValueEnd;
  require(
      outline->pixelElement + 8 <= outline->pixelValue && outline->pixelValue <= end && end <= bytes.size(),
      "an outline lies in the data set");
  require(encoding.isBigEndian ? hasAt(bytes, outline->pixelElement, {0x7F, 0xE0, 0x00, 0x10})
                               : hasAt(bytes, outline->pixelElement, {0xE0, 0x7F, 0x10, 0x00}),
          "the pixels are those of their element");
  if (outline->hasFragments) {
    require(end - outline->pixelValue >= 8 &&
                (encoding.isBigEndian ? hasAt(bytes, end - 8, {0xFF, 0xFE, 0xE0, 0xDD, 0, 0, 0, 0})
                                      : hasAt(bytes, end - 8, {0xFE, 0xFF, 0xDD, 0xE0, 0, 0, 0, 0})),
            "fragments are ended");
  } else {
    require((end - outline->pixelValue) % 2 == 0, "a value has an even length");
  }
  const auto again = tryOutline(bytes.first(end), encoding);
  require(again && same(*outline, *again), "what follows the pixels does not matter");
  require(!tryOutline(bytes.first(end - 1), encoding), "pixels that are cut are refused");
}

std::uint32_t wordAt(Bytes bytes, std::size_t at) { return Input(&bytes[at], bytes.size() - at).u32(); }

bool plainRleHeader(Bytes frame, std::uint32_t segments) {
  if (frame.size() < 64 || segments < 1 || segments > 15 || wordAt(frame, 0) != segments) return false;
  std::vector<std::uint64_t> begins = {63};
  for (std::size_t i = 1; i <= segments; ++i) begins.push_back(wordAt(frame, 4 * i));
  begins.push_back(frame.size());
  return std::adjacent_find(begins.begin(), begins.end(), [](auto a, auto b) { return a >= b; }) ==
         begins.end();
}

}  // namespace

void tryDicomFile(Bytes file) {
  const auto prologue = tryPrologue(file);
  if (!prologue) return;
  const std::string& uid = prologue->transferSyntax;
  require(!uid.empty() && uid.size() <= 64 && uid.find_first_not_of("0123456789.") == std::string::npos,
          "a transfer syntax is digits and points");
  const std::size_t offset = prologue->dataSetOffset;
  require(offset >= 132 && offset <= file.size(), "the data set begins in the file");
  const auto again = tryPrologue(file.first(offset));
  require(again && again->transferSyntax == uid && again->dataSetOffset == offset,
          "the meta information ends where the data set begins");
  tryDataSet(file.subspan(offset),
             {.isExplicit = uid != "1.2.840.10008.1.2", .isBigEndian = uid == "1.2.840.10008.1.2.2"});
}

void tryDataSet(Input input) {
  const int encoding = input.u8();
  tryDataSet(input.rest(), {.isExplicit = (encoding & 1) != 0, .isBigEndian = (encoding & 2) != 0});
}

void tryRleHeader(Input input) {
  const std::uint8_t segments = input.u8();
  require(tools::hasRleHeader(input.rest(), segments) == plainRleHeader(input.rest(), segments),
          "the RLE headers of the plain reading");
}

void tryJpegHeader(Input input) {
  const Bytes stream = input.rest();
  const auto header = tools::readJpegHeader(stream);
  if (!header) return;
  require(hasAt(stream, 0, {0xFF, 0xD8}), "a JPEG stream begins as one");
  // The frame header is one of the places that look like one, and so many scans stand behind it.
  bool isFound = false;
  for (std::size_t at = 2; at + 10 <= stream.size() && !isFound; ++at) {
    if (stream[at] != 0xFF || (stream[at + 1] < 0xC0 && stream[at + 1] != 0xF7)) continue;
    const std::size_t behind = at + 2 + static_cast<std::size_t>(stream[at + 2] * 256 + stream[at + 3]);
    if (behind > stream.size() || header->precision != stream[at + 4] ||
        header->height != stream[at + 5] * 256 + stream[at + 6] ||
        header->width != stream[at + 7] * 256 + stream[at + 8]) {
      continue;
    }
    int scans = 0;
    for (std::size_t i = behind; i < stream.size(); ++i) scans += hasAt(stream, i, {0xFF, 0xDA}) ? 1 : 0;
    isFound = scans == header->scans;
  }
  require(isFound, "what the frame header states stands in the stream");
}

}  // namespace ei4::fuzz
