#include "ei4make/make.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ei4make/dicom_picture.h"
#include "ei4make/input_kind.h"
#include "ei4make/output_file.h"
#include "ei4make/picture.h"
#include "ei4make/png_picture.h"
#include "ei4make/preamble.h"
#include "ei4make/request.h"
#include "encoder/gw_encoder.h"

namespace ei4::tools {

namespace {

enum ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2 };

constexpr int kMostSkippedLevels = 4;

std::vector<unsigned char> readFile(const std::string& path) {
  const File file(std::fopen(path.c_str(), "rb"));
  if (!file) throw FileError(path);
  std::vector<unsigned char> bytes;
  std::vector<unsigned char> piece(1U << 20);
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), file.get())) {
    bytes.insert(bytes.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  }
  if (std::ferror(file.get()) != 0) throw FileError(path);
  return bytes;
}

Source readSource(std::span<const unsigned char> bytes, const MakeRequest& request) {
  if (request.raw) {
    return {readRaw(bytes, request.raw->width, request.raw->height, request.raw->bytesPerPixel), {}, {}};
  }
  const InputKind kind = kindOf(bytes);
  if (kind == InputKind::Dicom) {
    return readDicom(bytes, {request.frame, request.slope.has_value() && request.intercept.has_value()});
  }
  if (request.frame.value_or(1) != 1) throw PictureError("only a DICOM file can have several frames");
  if (kind == InputKind::Png) return {readPng(bytes), {}, {}};
  if (kind == InputKind::Pnm) return {readPnm(bytes), {}, {}};
  throw PictureError(
      "neither DICOM nor PNG nor a binary PGM (P5) or PPM (P6); raw pixels need --size and --format");
}

struct Prepared {
  Picture picture;
  Ei4Preamble preamble;
};

void note(std::ostream& err, const std::string& text) { err << "ei4make: note: " << text << '\n'; }

// The picture as it is to be coded, and what is to stand in front of it.
Prepared prepare(const MakeRequest& request, std::ostream& err) try {
  Source source = readSource(readFile(request.input), request);
  const PreambleWishes wishes{request.slope, request.intercept, request.window, request.level};
  Prepared prepared;
  prepared.preamble =
      source.stored ? preambleOfStored(source, wishes) : preambleOf(source.picture, request.bits, wishes);
  prepared.preamble.length = request.preambleLength;
  if (request.bits) stateBits(source.picture, *request.bits);
  for (const std::string& text : source.notes) note(err, request.input + ": " + text);
  prepared.picture = std::move(source.picture);
  return prepared;
} catch (const PictureError& error) {
  throw PictureError(request.input + ": " + error.what());
}

void noteSurprises(const MakeRequest& request, const Picture& picture, int levels, std::ostream& err) {
  if (levels < std::min(kMostSkippedLevels, naturalLevels(picture.width, picture.height))) {
    note(err,
         "with only " + std::to_string(levels) + " wavelet levels, strongly reduced pictures come out blank");
  }
  if (!request.bareStream && request.preambleLength != kShortestPreamble) {
    note(err, "a preamble that is not 24 bytes long can be read inside a container only");
  }
}

void make(const MakeRequest& request, std::ostream& err) {
  refuseSameFile(request.input, request.output);
  const auto [picture, preamble] = prepare(request, err);
  EncodeOptions options;
  options.magic = request.magic;
  options.bytesPerPixel = picture.bytesPerPixel;
  options.bitsPerPixel = picture.bitsPerPixel;
  options.levels = request.levels;
  options.lowestBit = request.lowestBit;
  std::vector<unsigned char> bytes = encode(picture.pixels, picture.width, picture.height, options);
  noteSurprises(request, picture, levelsOf(bytes), err);
  if (!request.bareStream) bytes = writeEi4(preamble, bytes);
  writeOutput(request.output, bytes);
}

}  // namespace

int runEi4make(std::span<const std::string_view> words, std::ostream& out, std::ostream& err) {
  try {
    const MakeRequest request = parseRequest(words);
    if (request.wantsHelp) {
      out << usageText();
    } else if (request.wantsVersion) {
      out << "ei4make " << EI4_VERSION << '\n';
    } else {
      make(request, err);
    }
    if (out.flush()) return kDone;
    err << "ei4make: the answer cannot be written\n";
  } catch (const UsageError& error) {
    err << "ei4make: " << error.what() << "\nTry 'ei4make --help'.\n";
    return kWrongUsage;
  } catch (const std::bad_alloc&) {
    err << "ei4make: out of memory\n";
  } catch (const std::exception& error) {
    err << "ei4make: " << error.what() << '\n';
  }
  return kFailed;
}

}  // namespace ei4::tools
