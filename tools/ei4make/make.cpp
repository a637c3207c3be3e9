#include "ei4make/make.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "ei4make/output_file.h"
#include "ei4make/picture.h"
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

Picture readPicture(const MakeRequest& request) {
  const std::vector<unsigned char> bytes = readFile(request.input);
  try {
    Picture picture =
        request.raw ? readRaw(bytes, request.raw->width, request.raw->height, request.raw->bytesPerPixel)
                    : readPnm(bytes);
    if (request.bits) stateBits(picture, *request.bits);
    return picture;
  } catch (const PictureError& error) {
    throw PictureError(request.input + ": " + error.what());
  }
}

Ei4Preamble preambleOf(const MakeRequest& request, int bits) {
  Ei4Preamble preamble;
  preamble.intercept = request.intercept;
  preamble.slope = request.slope;
  preamble.length = request.preambleLength;
  showFullRange(preamble, bits);
  preamble.window = request.window.value_or(preamble.window);
  preamble.level = request.level.value_or(preamble.level);
  if (!std::isfinite(preamble.window) || !std::isfinite(preamble.level)) {
    throw std::range_error(
        "this slope and intercept make the window or level infinite: state --window and --level");
  }
  return preamble;
}

void noteSurprises(const MakeRequest& request, const Picture& picture, int levels, std::ostream& err) {
  if (levels < std::min(kMostSkippedLevels, naturalLevels(picture.width, picture.height))) {
    err << "ei4make: note: with only " << levels
        << " wavelet levels, strongly reduced pictures come out blank\n";
  }
  if (!request.bareStream && request.preambleLength != kShortestPreamble) {
    err << "ei4make: note: a preamble that is not 24 bytes long can be read inside a container only\n";
  }
}

void make(const MakeRequest& request, std::ostream& err) {
  refuseSameFile(request.input, request.output);
  const Picture picture = readPicture(request);
  const Ei4Preamble preamble = preambleOf(request, picture.bitsPerPixel);
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
