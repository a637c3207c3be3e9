// getBestFactor, and the sharing of a factor between wavelet and output, against the definitions.
//
// Input   i32 wanted size, u8 which outputs are null (bit 0 budget, 1 bytes, 2 bytes per pixel, 3 bits per pixel,
//         4 both sides if the wanted size is 0), then the header: as many bytes as there are.
// Limits  None.
// Holds   Result and outputs are those of the definition; what a refusal must leave alone stays; the decompressor's
//         output size for the factor found is the size that was reported.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>

#include "check.h"
#include "gwav4/header.h"
#include "input.h"
#include "target.h"

namespace {

using ei4::fuzz::require;

constexpr int kUnset = -77;

struct Answer {
  int result = 0;
  int budget = kUnset;
  int factor = kUnset;
  int width = kUnset;
  int height = kUnset;
  unsigned long bytes = 77;
  int bytesPerPixel = kUnset;
  int bitsPerPixel = kUnset;
};

int low32(std::int64_t value) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(value)); }

int ceilShifted(int size, int n) { return ((size + (1 << n) - 1) >> n) & 0xFFFF; }

int budgetOf(std::int64_t width, std::int64_t height, int bytesPerPixel, int bitsPerPixel) {
  const int bits = low32(width * height * (bytesPerPixel == 3 ? 3 * bitsPerPixel : bitsPerPixel));
  const int kilobytes = bits / 8000;
  const auto x = static_cast<float>(kilobytes);
  if (x < 40.0F) return 8192;
  return static_cast<int>(x / (6.25F * std::log(x) - 15.0F)) * 1024;
}

Answer defined(int wantedSize, std::span<const std::uint8_t> header) {
  Answer answer;
  answer.factor = 0;
  if (wantedSize == 0) answer.budget = -1;
  if (header.size() < 16) return answer;
  if (std::memcmp(header.data(), "GW40", 4) != 0 && std::memcmp(header.data(), "GW41", 4) != 0) return answer;
  answer.result = 1;
  answer.budget = -1;
  answer.bytesPerPixel = header[4];
  answer.bitsPerPixel = header[5];
  const int fullWidth = header[6] | header[7] << 8;
  const int fullHeight = header[8] | header[9] << 8;
  int n = 0;
  if (wantedSize != 0) {
    while (fullHeight >> n > 16 && wantedSize < fullWidth >> n) ++n;
    while (fullWidth >> n > 16 && wantedSize < fullHeight >> n) ++n;
  }
  answer.factor = n;
  answer.width = n == 0 ? fullWidth : ceilShifted(fullWidth, n);
  answer.height = n == 0 ? fullHeight : ceilShifted(fullHeight, n);
  answer.bytes = static_cast<unsigned long>(
      long{low32(std::int64_t{answer.bytesPerPixel} * answer.width * answer.height)});
  if (n != 0)
    answer.budget = budgetOf(answer.width, answer.height, answer.bytesPerPixel, answer.bitsPerPixel);
  return answer;
}

void checkSharing(std::span<const std::uint8_t> header, const Answer& got) {
  const int fullWidth = header[6] | header[7] << 8;
  const int fullHeight = header[8] | header[9] << 8;
  const auto levels = zel::gwav4::chooseLevels(fullWidth, fullHeight, got.factor);
  require(levels.skipLevels + levels.outputShift == got.factor, "the factor is shared without a rest");
  require(levels.skipLevels >= 0 && levels.skipLevels <= 4 && levels.skipLevels <= levels.levels,
          "no more levels are left out than there are");
  require(zel::gwav4::halveUp(levels.xSize, levels.outputShift) == got.width &&
              zel::gwav4::halveUp(levels.ySize, levels.outputShift) == got.height,
          "both ways of halving give one size");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::Input input(data, size);
  const int wantedSize = input.i32();
  const unsigned nulls = input.u8();
  const auto header = input.rest();
  const bool noSides = (nulls & 16) != 0 && wantedSize == 0;

  Answer got;
  const auto unless = [nulls](unsigned bit, auto* out) { return (nulls & bit) != 0 ? nullptr : out; };
  got.result = zel::gwav4::getBestFactor(wantedSize, unless(1, &got.budget), &got.factor, header.data(),
                                         header.size(), noSides ? nullptr : &got.width,
                                         noSides ? nullptr : &got.height, unless(2, &got.bytes),
                                         unless(4, &got.bytesPerPixel), unless(8, &got.bitsPerPixel));

  const Answer wanted = defined(wantedSize, header);
  require(got.result == wanted.result, "the result");
  require(got.factor == wanted.factor, "the factor");
  require((nulls & 1) != 0 || got.budget == wanted.budget, "the budget");
  require((nulls & 2) != 0 || got.bytes == wanted.bytes, "the bytes");
  require((nulls & 4) != 0 || got.bytesPerPixel == wanted.bytesPerPixel, "the bytes per pixel");
  require((nulls & 8) != 0 || got.bitsPerPixel == wanted.bitsPerPixel, "the bits per pixel");
  require(noSides || (got.width == wanted.width && got.height == wanted.height), "the size");
  if (wanted.result != 0 && !noSides) checkSharing(header, got);
  return 0;
}
