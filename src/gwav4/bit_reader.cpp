#include "gwav4/bit_reader.h"

#include <algorithm>
#include <cassert>

#include "gwav4/status.h"

namespace zel::gwav4 {
namespace {

// The endless supply of zero bits, shared by all readers: 64 words.
constexpr std::uint64_t kZeroWords = 64;
alignas(8) constexpr unsigned char zeroBlock[kZeroWords * 8] = {};

}  // namespace

CBitReader::CBitReader(const unsigned char* bytes, std::uint64_t byteCount)
    : data(bytes), wordCount(byteCount / 8), tailBytes(static_cast<std::uint32_t>(byteCount % 8)) {}

long CBitReader::getTotal() const {
  const auto bufferLength = static_cast<std::uint64_t>(std::bit_width(bitBuffer));
  const std::uint64_t missingInTail = cursor > wordCount ? 8 * (8 - std::uint64_t{tailBytes}) : 0;
  return static_cast<long>(64 * cursor + 1 - bufferLength - missingInTail);
}

void CBitReader::fetch() { throw int{kEndOfData}; }

void CBitReader::create(const CBitReader* source, unsigned long /*unused*/) {
  data = source->data;
  wordCount = source->wordCount;
  tailBytes = source->tailBytes;
  bitBuffer = source->bitBuffer;
  cursor = source->cursor;
}

std::uint64_t CBitReader::loadTail() const {
  std::uint64_t word = 0;
  for (std::uint32_t i = 0; i < tailBytes; ++i) word |= std::uint64_t{data[8 * wordCount + i]} << (8 * i);
  return word;
}

int CBitReader::takeBitOfNextWord() {
  bitBuffer = 1;
  while (cursor >= wordCount) {
    if (tailBytes != 0 && cursor == wordCount) {
      const std::uint64_t tail = loadTail();
      ++cursor;
      bitBuffer = (tail >> 1) | (std::uint64_t{1} << (8 * tailBytes - 1));
      return static_cast<int>(tail & 1);
    }
    fetch();
  }
  const std::uint64_t word = loadWord(data + 8 * cursor);
  ++cursor;
  bitBuffer = (word >> 1) | (std::uint64_t{1} << 63);
  return static_cast<int>(word & 1);
}

std::uint64_t CBitReader::takeBits(int count) {
  std::uint64_t value = 0;
  int taken = 0;
  while (taken < count) {
    const int ready = static_cast<int>(std::bit_width(bitBuffer)) - 1;
    if (ready == 0) {
      value |= static_cast<std::uint64_t>(takeBit()) << taken;
      ++taken;
      continue;
    }
    const int more = std::min(ready, count - taken);  // at most 63
    const std::uint64_t bits = bitBuffer & ((std::uint64_t{1} << more) - 1);
    value |= bits << taken;
    bitBuffer >>= more;
    taken += more;
  }
  return value;
}

void CBitReader::skipBits(std::uint64_t count) {
  const Window now = window();
  if (count > now.bitCount - now.position) {
    seek(now.bitCount);
    throw int{kEndOfData};
  }
  seek(now.position + count);
}

CBitReader::Window CBitReader::window() const {
  return {data, static_cast<std::uint64_t>(getTotal()), 64 * wordCount + 8 * std::uint64_t{tailBytes}};
}

void CBitReader::seek(std::uint64_t position) {
  assert(position <= window().bitCount);
  const std::uint64_t word = position / 64;
  const int offset = static_cast<int>(position % 64);
  if (offset == 0) {
    cursor = word;
    bitBuffer = 1;
    return;
  }
  cursor = word + 1;
  if (word < wordCount) {
    bitBuffer = (loadWord(data + 8 * word) >> offset) | (std::uint64_t{1} << (64 - offset));
  } else {
    bitBuffer = (loadTail() >> offset) | (std::uint64_t{1} << (8 * static_cast<int>(tailBytes) - offset));
  }
}

void CBitInfiniteReader::fetch() {
  if (!infinite) {
    CBitReader::fetch();
    return;
  }
  data = zeroBlock;  // Quirk total-restarts-in-zeros
  wordCount = kZeroWords;
  tailBytes = 0;
  cursor = 0;
}

std::string CBitInfiniteReader::name() const {
  if (id.plane < 0) return {};
  return "u streamer for plane " + std::to_string(id.plane) + " ord " + std::to_string(id.order) + " bits " +
         std::to_string(id.position);
}

}  // namespace zel::gwav4
