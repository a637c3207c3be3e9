// From a compressed input to an image: the preamble, the source (a plain file or containers), budget and decoding.
//
// Input   u8 kind (modulo 3: 0 a plain file, 1 a container, 2 two containers), i32 target width (0: no target),
//         u16 size of the first file, for kind 2 only, then the files. In containers the entry looked for is "img.ei4".
// Limits  Not tried: inputs whose stream header states more than 65536 samples. A budget leaves something out only of
//         streams above 8 KiB: for those the fuzzer needs a longer -max_len.
// Holds   A plain file gives the image, size, format and window that the definitions and the slow decoder give.
//         From any source an image has the size and format of the settings; a refusal makes none.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "check.h"
#include "container/blob_reader.h"
#include "container/file_reader.h"
#include "driver/prep_ei4.h"
#include "driver/settings.h"
#include "gwav4/header.h"
#include "input.h"
#include "quiet.h"
#include "reference/naive_decoder.h"
#include "target.h"
#include "work_folder.h"

namespace {

using ei4::fuzz::require;
using Bytes = std::span<const std::uint8_t>;

constexpr std::uint64_t kMostSamples = 1 << 16;
constexpr std::size_t kPreamble = 24;
constexpr std::size_t kHeader = zel::gwav4::kHeaderBytes;

/// The files of one input, in place.
struct Source {
  bool blob;
  std::string path;

  std::unique_ptr<SerialReader> open() const {
    if (blob) return std::make_unique<BlobReader>(path.c_str());
    return std::make_unique<FileReader>(path.c_str());
  }
};

Source place(const ei4::fuzz::WorkFolder& folder, int kind, std::size_t firstSize, Bytes files) {
  if (kind == 0) return {.blob = false, .path = folder.write("img.ei4", files)};
  const std::size_t split = kind == 2 ? std::min(firstSize, files.size()) : files.size();
  folder.write("full.erblb", files.first(split));
  std::remove(folder.path("initial.erblb").c_str());
  if (kind == 2) folder.write("initial.erblb", files.subspan(split));
  return {.blob = true, .path = folder.path("img.ei4")};
}

/// Samples that the stream header asks for, if the source is read as far as that.
std::uint64_t samplesAsked(const Source& source) {
  const auto reader = source.open();
  std::array<unsigned char, kPreamble> preamble{};
  std::array<unsigned char, kHeader> header{};
  if (reader->readBytes(preamble.data(), 0, kPreamble) != static_cast<int>(kPreamble)) return 0;
  const int length = preamble[6] | preamble[7] << 8;
  if (length > static_cast<int>(kPreamble)) reader->skipBytes(length - static_cast<int>(kPreamble));
  if (reader->readBytes(header.data(), 0, kHeader) != static_cast<int>(kHeader)) return 0;
  const auto fields = zel::gwav4::parseHeader(header.data());
  return std::uint64_t{fields.xSize} * fields.ySize * (fields.bytesPerPixel == 3 ? 3 : 1);
}

void resetSettings() {
  bWL = 0;
  dIntercept = dSlope = 0.0;
  nWindow = nLevel = 0;
  csSrc = CSize(0, 0);
  nInputColorType = COLOR_TYPE_C08;
  pImageFromEI4.reset();
}

void checkImage() {
  if (!pImageFromEI4) return;
  const CDicomImage& image = *pImageFromEI4;
  require(image.m_Size == csSrc, "the image has the size of the settings");
  require(image.GetColorType() == nInputColorType, "the image has the format of the settings");
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

void checkWindow(Bytes file, bool taken) {
  require(bWL == (taken ? 1 : 0), "a valid preamble sets the window");
  if (!taken) return;
  require(same(dIntercept, floatAt(file, 8)) && same(dSlope, floatAt(file, 12)), "slope and intercept");
  require(isTruncated(nWindow, floatAt(file, 16)) && isTruncated(nLevel, floatAt(file, 20)),
          "window and level");
}

/// What a plain file must lead to.
void checkPlain(Bytes file, int targetWidth, bool accepted) {
  const auto length = static_cast<long>(file.size());
  const long preamble = file.size() < kPreamble ? 0 : file[6] | file[7] << 8;
  const bool hasWindow = length > 40 && preamble >= 24 && preamble < length - 15;
  checkWindow(file, hasWindow);
  if (!hasWindow || preamble != 24) return require(!accepted, "the preamble is refused");

  const Bytes stream = file.subspan(kPreamble);
  int budget = 0, factor = 0, width = 0, height = 0, bytesPerPixel = 0;
  const bool known = zel::gwav4::getBestFactor(targetWidth, &budget, &factor, stream.data(), stream.size(),
                                               &width, &height, nullptr, &bytesPerPixel, nullptr) != 0;
  require(accepted == known, "a known header is accepted");
  if (!known) return;
  require(csSrc == tagSIZE{width, height}, "the size is that of the level choice");

  long wanted = budget < 0 ? length : std::max(budget, 32);
  if (targetWidth >= 1 && targetWidth <= 128) wanted *= 2;
  const auto size = static_cast<std::size_t>(std::min(wanted, length));
  const std::vector<std::uint8_t> held(
      stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(std::min(size, stream.size())));
  const auto picture = ei4::test::decodeNaively(held, factor);
  const bool decodes = held.size() > kHeader && (picture.status == 0 || picture.status == 4);
  require(decodes == (pImageFromEI4 != nullptr), "there is an image if the stream decodes");
  if (!decodes) return;
  require(nInputColorType == (bytesPerPixel == 1   ? COLOR_TYPE_M08
                              : bytesPerPixel == 2 ? COLOR_TYPE_M16
                                                   : COLOR_TYPE_C08),
          "the format is the stream's");
  require(pImageFromEI4->m_nBufferSize == picture.pixels.size(), "the image has room for the pixels");
  require(std::equal(picture.pixels.begin(), picture.pixels.end(), pImageFromEI4->m_pBuffer),
          "the same pixels");
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
  if (samplesAsked(source) > kMostSamples) return 0;

  resetSettings();
  const CSize target(targetWidth, 7);
  const bool accepted = PrepEI4(source.path.c_str(), source.blob, targetWidth != 0 ? &target : nullptr);
  require(accepted || pImageFromEI4 == nullptr, "a refusal makes no image");
  checkImage();
  if (kind == 0) checkPlain(input.rest(), targetWidth, accepted);
  resetSettings();
  return 0;
}
