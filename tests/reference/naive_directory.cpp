#include "reference/naive_directory.h"

namespace ei4::test {
namespace {

constexpr int kCut = 4;
constexpr int kRefused = 128;
constexpr int kMaxLevels = 8;
constexpr int kNoTop = 255;

// floor(log2(2 * samples + 1)), where the samples of a "GW41" plane count one and a half times.
int lengthBits(const NaiveLayout& layout) {
  std::int64_t samples = layout.fullWidth * layout.fullHeight;
  if (!layout.sizeMode) samples += samples / 2;
  int bits = 0;
  for (std::int64_t n = 2 * samples + 1; n > 1; n /= 2) ++bits;
  return bits;
}

bool takePreamble(NaiveBits& bits, const NaiveLayout& layout, NaiveDirectory& directory) {
  const int top = static_cast<int>(bits.takeNumber(8));
  directory.top = top == kNoTop ? -1 : top;
  directory.levels = static_cast<int>(bits.takeNumber(8));
  if (directory.levels > kMaxLevels || directory.top >= layout.positions) {
    directory.status = kRefused;
    return false;
  }
  if (directory.levels < layout.skipLevels) {
    directory.status = kCut;
    return false;
  }
  for (auto& plane : directory.orders) {
    for (NaiveOrder& order : plane) {
      order.nextSignificance = directory.top;
      order.nextRefinement = directory.top - 1;
    }
  }
  directory.empty = false;
  return true;
}

// One entry with its chunk. False ends the directory.
bool takeEntry(NaiveBits& bits, const NaiveLayout& layout, int lenBits, NaiveDirectory& directory) {
  const int plane = static_cast<int>(bits.takeNumber(2));
  if (plane == 3) return false;
  const int order = static_cast<int>(bits.takeNumber(4));
  const bool refinement = bits.takeNumber(1) == 1;
  const int shorter = refinement && !layout.sizeMode ? 0 : 1;
  const std::uint64_t length = bits.takeNumber(lenBits - 2 * order + shorter);
  if (plane >= layout.planes || order > directory.levels) {
    directory.status = kRefused;
    return false;
  }

  NaiveOrder& entry = directory.orders[static_cast<std::size_t>(plane)][static_cast<std::size_t>(order)];
  int& next = refinement ? entry.nextRefinement : entry.nextSignificance;
  if (next < 0) {
    directory.status = kRefused;
    return false;
  }
  const auto position = static_cast<std::size_t>(next--);
  if (refinement) {
    entry.refinements[position] = bits;  // an empty chunk is positioned too
  } else {
    entry.coders[position] = NaiveCoder(length == 0 ? NaiveBits() : bits);
  }
  bits.skip(length);
  return true;
}

}  // namespace

void readDirectory(std::span<const std::uint8_t> coded, const NaiveLayout& layout, int chunkLimit,
                   NaiveDirectory& directory) {
  NaiveBits bits(coded);
  try {
    if (!takePreamble(bits, layout, directory)) return;
    const int lenBits = lengthBits(layout);
    for (int chunks = 1; takeEntry(bits, layout, lenBits, directory); ++chunks) {
      if (chunks == chunkLimit) {
        directory.status = kCut;
        return;
      }
    }
  } catch (const EndOfData&) {
    directory.status = kCut;
  }
}

}  // namespace ei4::test
