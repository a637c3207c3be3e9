#include "gwav4/bit_decoder.h"

namespace zel::gwav4 {

void CBitDecoder::attach(CBitInfiniteReader* bits, const ChunkId& chunk) {
  id = chunk;
  k = 1;
  run = 0;
  total = 0;
  terminated = false;
  source = bits;
  run = readRun();
}

long CBitDecoder::getTotal() const { return static_cast<long>(total) - 1 - static_cast<long>(run); }

bool CBitDecoder::takeEvent() {
  const bool negative = source->takeBit() != 0;
  run = readRun();
  return negative;
}

int CBitDecoder::countZeros() {
  int zeros = 0;
  while (zeros < kEndlessZeros && source->takeBit() == 0) ++zeros;
  return zeros;
}

std::int64_t CBitDecoder::valueOf(int zeros) {
  if (zeros == kEndlessZeros) return kEndlessRun;
  if (zeros <= k) return zeros;
  const int extraBits = zeros - k;
  const auto extra = static_cast<std::int64_t>(source->takeBits(extraBits));
  return k + (std::int64_t{1} << extraBits) - 1 + extra;
}

std::int64_t CBitDecoder::readRun() {
  const int zeros = countZeros();
  // Quirk second-terminator-uncounted: it gives a run of 41 that does not enter the total.
  if (zeros == kEscapeZeros && terminated) return kRunAfterTerminator;
  const std::int64_t value = zeros == kEscapeZeros ? terminatorBits() : valueOf(zeros);
  total += static_cast<std::uint64_t>(value) + 1;
  return value;
}

std::int64_t CBitDecoder::terminatorBits() {
  int zeros = kEscapeZeros;
  while (zeros == kEscapeZeros) zeros = countZeros();  // an escape behind an escape reads on in the same way
  const std::int64_t finalRun = valueOf(zeros);
  terminated = true;
  return finalRun;
}

std::string CBitDecoder::name() const {
  if (id.plane < 0) return {};
  return "n coder for plane " + std::to_string(id.plane) + " ord " + std::to_string(id.order) + " bits " +
         std::to_string(id.position);
}

}  // namespace zel::gwav4
