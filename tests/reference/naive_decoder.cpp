#include "reference/naive_decoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "reference/naive_coefficients.h"
#include "reference/naive_directory.h"
#include "reference/naive_output.h"
#include "reference/naive_transform.h"

namespace ei4::test {
namespace {

constexpr int kPartial = 4;
constexpr int kRefused = 128;
constexpr std::size_t kHeaderBytes = 16;

int number16(std::span<const std::uint8_t> bytes, std::size_t at) { return bytes[at] | bytes[at + 1] << 8; }

std::int64_t halvedUp(std::int64_t size, int times) {
  return (size + (std::int64_t{1} << times) - 1) >> times;
}

// How many of the finest levels a reduction by `factor` leaves out; the rest of it is averaged afterwards.
int levelsToSkip(int width, int height, int factor) {
  int levels = 0;
  for (int k = 1; k <= 8; ++k) {
    if ((1 << k) <= width >> 3 && (1 << k) <= height >> 3) levels = k;
  }
  constexpr std::array<int, 6> kMost = {0, 1, 1, 2, 2, 3};
  const int most = factor > 5 ? 4 : kMost[static_cast<std::size_t>(factor)];
  return std::min({levels, factor, most});
}

bool hasMagic(std::span<const std::uint8_t> stream, const char* magic) {
  return std::memcmp(stream.data(), magic, 4) == 0;
}

}  // namespace

NaiveResult decodeNaively(std::span<const std::uint8_t> stream, int factor, int chunkLimit) {
  NaiveResult result;
  result.status = kRefused;
  if (stream.size() < kHeaderBytes) return result;

  factor = std::clamp(factor, 0, 40);  // no 16-bit size shrinks any further behind 16 halvings
  const int bytesPerPixel = stream[4];
  const int bitsPerPixel = stream[5];
  const int width = number16(stream, 6);
  const int height = number16(stream, 8);
  const int skipLevels = levelsToSkip(width, height, factor);
  const int outputShift = factor - skipLevels;
  const std::int64_t decodedWidth = halvedUp(width, skipLevels);
  const std::int64_t decodedHeight = halvedUp(height, skipLevels);
  result.width = static_cast<int>(halvedUp(decodedWidth, outputShift));
  result.height = static_cast<int>(halvedUp(decodedHeight, outputShift));
  result.bytesPerPixel = bytesPerPixel;
  if (!hasMagic(stream, "GW40") && !hasMagic(stream, "GW41")) return result;
  if (bytesPerPixel < 1 || bytesPerPixel > 3) return result;

  NaiveLayout layout;
  layout.fullWidth = width;
  layout.fullHeight = height;
  layout.planes = bytesPerPixel == 3 ? 3 : 1;
  layout.positions = bytesPerPixel == 2 && bitsPerPixel >= 12 ? 32 : 16;
  layout.skipLevels = skipLevels;
  layout.sizeMode = hasMagic(stream, "GW40");
  const auto directory = std::make_unique<NaiveDirectory>();
  readDirectory(stream.subspan(kHeaderBytes), layout, chunkLimit, *directory);
  result.status = directory->status;
  if (result.status == kRefused) return result;
  if (skipLevels > 0) result.status = kPartial;

  NaivePlane blank;
  blank.width = static_cast<int>(decodedWidth);
  blank.height = static_cast<int>(decodedHeight);
  blank.storageBits = layout.positions;
  blank.samples.resize(static_cast<std::size_t>(decodedWidth * decodedHeight));
  std::vector<NaivePlane> planes(static_cast<std::size_t>(layout.planes), blank);
  if (!directory->empty) {
    const std::int64_t lastRow = chunkLimit < 0 ? -std::int64_t{chunkLimit} : -1;
    bool goOn = true;
    for (int i = 0; goOn && i < layout.planes; ++i) {
      goOn = scanPlane(*directory, i, skipLevels, lastRow, planes[static_cast<std::size_t>(i)]);
    }
    for (NaivePlane& plane : planes) invertLevels(plane, directory->levels - skipLevels);
  }
  const int bits = result.status == 0 ? 0 : bitsPerPixel;
  result.pixels = convertSamples(planes, bytesPerPixel, bits, std::int64_t{1} << outputShift);
  return result;
}

}  // namespace ei4::test
