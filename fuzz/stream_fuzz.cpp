// The stream decoder against the slow one.
//
// Input   i8 factor, i32 level, u16 cut, then a stream: its 16-byte header and the coded data, from the end of which
//         `cut` bytes fall off, at most all.
// Limits  Not tried: fewer than 16 bytes, and headers that state more than 65536 samples. The slow decoder takes its
//         time for each.
// Holds   Status, size and every byte are those of the slow decoder, in memory of exactly the right size. A buffer that
//         is a byte too small is refused and not touched. A further call writes nothing.

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "check.h"
#include "gwav4/decompressor.h"
#include "input.h"
#include "reference/naive_decoder.h"
#include "target.h"

namespace {

using ei4::fuzz::require;
using ei4::test::NaiveResult;
using zel::gwav4::CGWavDecompressor;
using zel::gwav4::kHeaderBytes;
using Stream = std::span<const std::uint8_t>;

constexpr std::uint64_t kMostSamples = 1 << 16;
constexpr unsigned char kUntouched = 0xA5;

std::uint64_t samplesOf(Stream stream) {
  const auto header = zel::gwav4::parseHeader(stream.data());
  return std::uint64_t{header.xSize} * header.ySize * (header.bytesPerPixel == 3 ? 3 : 1);
}

unsigned long codedBytes(Stream stream) { return stream.size() - kHeaderBytes; }

bool isUntouched(const std::vector<unsigned char>& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte == kUntouched; });
}

void compare(Stream stream, int factor, int level, const NaiveResult& wanted) {
  CGWavDecompressor decompressor(stream.data(), codedBytes(stream), factor, 0);
  require(decompressor.getXSize() == wanted.width && decompressor.getYSize() == wanted.height,
          "the same size");
  require(decompressor.getBytesPerPixel() == wanted.bytesPerPixel, "the header's bytes per pixel");

  std::vector<unsigned char> pixels(wanted.pixels.size(), kUntouched);
  const int status = decompressor.decompress(pixels.data(), pixels.size(), level);
  require(status == wanted.status, "the same status");
  require(pixels == wanted.pixels, "the same pixels");

  std::fill(pixels.begin(), pixels.end(), kUntouched);
  require(decompressor.decompress(pixels.data(), pixels.size(), level) == status,
          "a second call says the same");
  require(isUntouched(pixels), "a second call writes nothing");
}

void decodeIntoTooLittle(Stream stream, int factor, int level, std::size_t needed) {
  CGWavDecompressor decompressor(stream.data(), codedBytes(stream), factor, 0);
  std::vector<unsigned char> pixels(needed - 1, kUntouched);
  require(decompressor.decompress(pixels.data(), pixels.size(), level) == zel::gwav4::kBufferTooSmall,
          "a buffer too small is refused");
  require(isUntouched(pixels), "a buffer too small is not touched");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::Input input(data, size);
  const int factor = input.i8();
  const int level = input.i32();
  const std::size_t cut = input.u16();
  const Stream whole = input.rest();
  if (whole.size() < kHeaderBytes || samplesOf(whole) > kMostSamples) return 0;

  // A copy, so that the end is that of an allocation here too.
  const std::size_t kept = whole.size() - std::min(cut, whole.size() - kHeaderBytes);
  const std::vector<std::uint8_t> stream(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(kept));
  const NaiveResult wanted = ei4::test::decodeNaively(stream, factor, level);
  compare(stream, factor, level, wanted);
  if (!wanted.pixels.empty()) decodeIntoTooLittle(stream, factor, level, wanted.pixels.size());
  return 0;
}
