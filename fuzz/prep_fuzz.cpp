// From a compressed input to an image: the preamble, the source (a plain file or containers), budget and decoding.
//
// Input   u8 kind (modulo 3: 0 a plain file, 1 a container, 2 two containers), i32 target width (0: no target),
//         u16 size of the first file, for kind 2 only, then the files. In containers the image is "img.ei4".
// Limits  Not tried: inputs whose stream header states more than 65536 samples, unless nothing comes of them. A budget
//         leaves something out only of streams above 8 KiB: prep.options makes inputs long enough.
// Holds   The image, its size and format, and the window are those that the definitions and the slow decoder give.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "check.h"
#include "driver/picture_limit.h"
#include "driver/prep_ei4.h"
#include "driver/settings.h"
#include "gwav4/header.h"
#include "input.h"
#include "literal_source.h"
#include "quiet.h"
#include "reference/naive_decoder.h"
#include "target.h"
#include "work_folder.h"

namespace {

using ei4::fuzz::LiteralSource;
using ei4::fuzz::require;
using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t kMostSamples = 1 << 16;
constexpr long kPreamble = 24;
constexpr long kHeader = zel::gwav4::kHeaderBytes;

/// The files of one input: as they lie in a folder, and as the description sees them.
struct Source {
  bool blob;
  std::string path;
  LiteralSource literal;
};

Source place(const ei4::fuzz::WorkFolder& folder, int kind, std::size_t firstSize, Bytes files) {
  if (kind == 0) return {false, folder.write("img.ei4", files), LiteralSource::ofFile(files)};
  const std::size_t split = kind == 2 ? std::min(firstSize, files.size()) : files.size();
  const Bytes full = files.first(split);
  std::optional<Bytes> initial;
  folder.write("full.erblb", full);
  std::remove(folder.path("initial.erblb").c_str());
  if (kind == 2) {
    initial = files.subspan(split);
    folder.write("initial.erblb", *initial);
  }
  return {true, folder.path("img.ei4"), LiteralSource::ofContainers(full, initial)};
}

void resetSettings() {
  bWL = 0;
  dIntercept = dSlope = 0.0;
  nWindow = nLevel = 0;
  csSrc = CSize(0, 0);
  nInputColorType = COLOR_TYPE_C08;
  pImageFromEI4.reset();
}

double floatAt(Bytes file, std::size_t at) {
  float value = 0;
  std::memcpy(&value, file.data() + at, sizeof value);
  return static_cast<double>(value);
}

bool same(double a, double b) { return std::isnan(a) ? std::isnan(b) : a == b; }

/// Whether an int setting came of a window number. What has no int has a result that is nowhere defined.
bool isTruncated(int setting, double number) {
  return !(std::abs(number) < 2147483648.0) || setting == static_cast<int>(number);
}

void checkWindow(Bytes preamble, bool taken) {
  require(bWL == (taken ? 1 : 0), "a valid preamble sets the window");
  if (!taken) return;
  require(same(dIntercept, floatAt(preamble, 8)) && same(dSlope, floatAt(preamble, 12)),
          "slope and intercept");
  require(isTruncated(nWindow, floatAt(preamble, 16)) && isTruncated(nLevel, floatAt(preamble, 20)),
          "window and level");
}

/// What an input must lead to, up to the decoding.
struct Outcome {
  std::vector<std::uint8_t> preamble;
  bool hasWindow = false;
  bool accepted = false;
  int width = 0, height = 0, bytesPerPixel = 0, factor = 0;
  bool mayClaim = false;               ///< pixels of that number
  std::vector<std::uint8_t> stream{};  ///< the header and what the decoder gets behind it
};

Outcome outcomeOf(LiteralSource source, int targetWidth) {
  Outcome outcome;
  const long length = source.length();
  if (length <= 40) return outcome;
  auto first = source.read(kPreamble);
  if (first.answer != kPreamble) return outcome;
  outcome.preamble = std::move(first.bytes);
  const long preamble = outcome.preamble[6] | outcome.preamble[7] << 8;
  outcome.hasWindow = preamble >= kPreamble && preamble < length - 15;
  if (!outcome.hasWindow || source.skip(preamble - kPreamble) != preamble - kPreamble) return outcome;

  auto header = source.read(kHeader);
  if (header.answer != kHeader) return outcome;
  outcome.stream = std::move(header.bytes);
  outcome.stream.resize(kHeader);
  int budget = 0;
  outcome.accepted = zel::gwav4::getBestFactor(targetWidth, &budget, &outcome.factor, outcome.stream.data(),
                                               kHeader, &outcome.width, &outcome.height, nullptr,
                                               &outcome.bytesPerPixel, nullptr) != 0;
  if (!outcome.accepted) return outcome;
  const std::int64_t pixels = std::int64_t{outcome.width} * outcome.height;
  outcome.mayClaim = pixels <= ei4::kPixelsForAnyInput || pixels <= length * ei4::kPixelsForEachByte;

  long wanted = budget < 0 ? length : std::max(budget, 32);
  if (targetWidth >= 1 && targetWidth <= 128) wanted *= 2;
  const long size = std::min(wanted, length) - kHeader;
  auto coded = source.read(size);
  // A read that counts one less leaves that byte to nobody.
  coded.bytes.resize(static_cast<std::size_t>(std::clamp(coded.answer, 0L, size)));
  outcome.stream.insert(outcome.stream.end(), coded.bytes.begin(), coded.bytes.end());
  return outcome;
}

/// Samples of the picture that would be decoded, before any halving.
std::uint64_t samplesToDecode(const Outcome& outcome) {
  if (!outcome.accepted || !outcome.mayClaim) return 0;
  const auto fields = zel::gwav4::parseHeader(outcome.stream.data());
  return std::uint64_t{fields.xSize} * fields.ySize * (fields.bytesPerPixel == 3 ? 3 : 1);
}

void checkImage(const Outcome& outcome) {
  const bool hasCoded = outcome.stream.size() > static_cast<std::size_t>(kHeader);
  const bool isTried = outcome.accepted && outcome.mayClaim && hasCoded;
  const auto picture =
      isTried ? ei4::test::decodeNaively(outcome.stream, outcome.factor) : ei4::test::NaiveResult{};
  const bool decodes = isTried && (picture.status == 0 || picture.status == 4);
  require(decodes == (pImageFromEI4 != nullptr), "there is an image if the stream decodes");
  if (!decodes) return;
  const CDicomImage& image = *pImageFromEI4;
  require(nInputColorType == (outcome.bytesPerPixel == 1   ? COLOR_TYPE_M08
                              : outcome.bytesPerPixel == 2 ? COLOR_TYPE_M16
                                                           : COLOR_TYPE_C08),
          "the format is the stream's");
  require(image.m_Size == csSrc && image.GetColorType() == nInputColorType, "so are the image's");
  require(image.m_nBufferSize == picture.pixels.size(), "the image has room for the pixels");
  require(std::equal(picture.pixels.begin(), picture.pixels.end(), image.m_pBuffer), "the same pixels");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::silence();
  static const ei4::fuzz::WorkFolder folder;
  ei4::fuzz::Input input(data, size);
  const int kind = input.u8() % 3;
  const int targetWidth = input.i32();
  const std::size_t firstSize = kind == 2 ? input.u16() : 0;
  const Source source = place(folder, kind, firstSize, input.rest());
  const Outcome outcome = outcomeOf(source.literal, targetWidth);
  if (samplesToDecode(outcome) > kMostSamples) return 0;

  resetSettings();
  const CSize target(targetWidth, 7);
  const bool accepted = PrepEI4(source.path.c_str(), source.blob, targetWidth != 0 ? &target : nullptr);
  require(accepted == outcome.accepted, "the same inputs are accepted");
  checkWindow(outcome.preamble, outcome.hasWindow);
  if (accepted) require(csSrc == tagSIZE{outcome.width, outcome.height}, "the size of the level choice");
  checkImage(outcome);
  resetSettings();
  return 0;
}
