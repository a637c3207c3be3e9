#include "gwav4/header.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace zel::gwav4 {
namespace {

std::uint16_t littleEndian16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | (bytes[1] << 8));
}

/// Quirk byte-size-wraps: a signed 32-bit product, widened afterwards.
unsigned long wrappedByteSize(const GWHeader& header, int width, int height) {
  const std::int64_t product = std::int64_t{header.bytesPerPixel} * width * height;
  return static_cast<unsigned long>(static_cast<std::int32_t>(product));
}

template <class T>
void setIfWanted(T* out, T value) {
  if (out != nullptr) *out = value;
}

/// Quirk uneven-halving: each stage tests one side against 16 and compares the wish with the other.
int countHalvings(int wantedSize, int width, int height) {
  int halvings = 0;
  const auto halve = [&] {
    width >>= 1;
    height >>= 1;
    ++halvings;
  };
  while (height > 16 && wantedSize < width) halve();
  while (width > 16 && wantedSize < height) halve();
  return halvings;
}

/// Bytes of the stream that a picture of this reduced size needs, found by measurement on coded pictures:
/// the single-precision arithmetic, each operation rounded, is part of the result.
int estimateBudget(const GWHeader& header, int width, int height) {
  constexpr int kSmallestBudget = 8192;
  const int bitsPerPixel = header.bitsPerPixel * (header.bytesPerPixel == 3 ? 3 : 1);
  const auto bits = static_cast<std::int32_t>(std::int64_t{bitsPerPixel} * width * height);  // wraps
  const int wholeKilobytes = bits / 8000;
  const auto kilobytes = static_cast<float>(wholeKilobytes);
  if (kilobytes < 40.0F) return kSmallestBudget;
  const float divisor = 6.25F * std::log(kilobytes) - 15.0F;
  return static_cast<int>(kilobytes / divisor) << 10;
}

}  // namespace

GWHeader parseHeader(const unsigned char* bytes) {
  GWHeader header;
  std::memcpy(header.magic.data(), bytes, header.magic.size());
  header.bytesPerPixel = bytes[4];
  header.bitsPerPixel = bytes[5];
  header.xSize = littleEndian16(bytes + 6);
  header.ySize = littleEndian16(bytes + 8);
  std::memcpy(header.reserved.data(), bytes + 10, header.reserved.size());
  return header;
}

Version versionOf(const GWHeader& header) {
  if (std::memcmp(header.magic.data(), "GW41", 4) == 0) return Version::gw41;
  if (std::memcmp(header.magic.data(), "GW40", 4) == 0) return Version::gw40;
  return Version::unknown;
}

int halveUp(int size, int halvings) {
  const int shift = std::min(halvings, 30);
  return static_cast<int>((std::int64_t{size} + (std::int64_t{1} << shift) - 1) >> shift);
}

LevelChoice chooseLevels(int width, int height, int factor) {
  // How many finest levels may be left out for each factor; the last entry serves all factors above 5.
  constexpr std::array<int, 7> maxwfactor = {0, 1, 1, 2, 2, 3, 4};
  constexpr int kMostLevels = 8;

  const int wanted = std::max(factor, 0);
  const auto shorterEighth = static_cast<unsigned>(std::min(width, height)) >> 3;
  LevelChoice choice{};
  choice.levels =
      shorterEighth < 2 ? 0 : std::min(kMostLevels, static_cast<int>(std::bit_width(shorterEighth)) - 1);
  const int most = maxwfactor[static_cast<std::size_t>(std::min(wanted, 6))];
  choice.skipLevels = std::min({choice.levels, wanted, most});
  choice.outputShift = wanted - choice.skipLevels;
  choice.xSize = halveUp(width, choice.skipLevels);
  choice.ySize = halveUp(height, choice.skipLevels);
  return choice;
}

int getBestFactor(int wantedSize, int* readBudget, int* factor, const unsigned char* header,
                  unsigned long headerLength, int* xSize, int* ySize, unsigned long* byteSize,
                  int* bytesPerPixel, int* bitsPerPixel) {
  *factor = 0;
  if (wantedSize == 0) setIfWanted(readBudget, -1);  // Quirk budget-set-before-check
  if (headerLength < kHeaderBytes) return 0;
  const GWHeader fields = parseHeader(header);
  if (versionOf(fields) == Version::unknown) return 0;

  const int width = fields.xSize;
  const int height = fields.ySize;
  setIfWanted(readBudget, -1);
  setIfWanted(bytesPerPixel, int{fields.bytesPerPixel});
  setIfWanted(bitsPerPixel, int{fields.bitsPerPixel});

  const int halvings = wantedSize == 0 ? 0 : countHalvings(wantedSize, width, height);
  const int reducedWidth = halveUp(width, halvings);
  const int reducedHeight = halveUp(height, halvings);
  if (halvings > 0) setIfWanted(readBudget, estimateBudget(fields, reducedWidth, reducedHeight));
  setIfWanted(xSize, reducedWidth);
  setIfWanted(ySize, reducedHeight);
  setIfWanted(byteSize, wrappedByteSize(fields, reducedWidth, reducedHeight));
  *factor = halvings;
  return 1;
}

}  // namespace zel::gwav4
