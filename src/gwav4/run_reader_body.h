// What the significance streams decide.
// Compiled once for each instruction set: see kernels.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "gwav4/bits_body.h"
#include "gwav4/run_codes.h"

namespace zel::gwav4 {
namespace {

// The run code (see CBitDecoder). Its parameter is 1 in every stream of this format.
constexpr int kEscape = 40;
constexpr int kEndless = 41;
constexpr std::int64_t kEndlessCount = (std::int64_t{1} << 30) + 1;
constexpr std::int64_t kCountAfterTerminator = 41;

int takeZeros(BitCursor& bits) {
  const int zeros = __builtin_ctzll(lookSafely(bits) | (Word{1} << kEndless));
  bits.position += static_cast<std::uint64_t>(zeros == kEndless ? zeros : zeros + 1);
  return zeros;
}

/// Any run code at any place. Escape behind escape ends with the data: zeros are no escape.
std::int64_t takeRun(BitCursor& bits, bool& terminated) {
  int zeros = takeZeros(bits);
  if (zeros == kEscape) {
    if (terminated) return kCountAfterTerminator;
    while (zeros == kEscape) zeros = takeZeros(bits);
    terminated = true;
  }
  if (zeros == kEndless) return kEndlessCount;
  if (zeros <= 1) return zeros;
  const int extraBits = zeros - 1;
  const Word extra = lookSafely(bits) & firstOnes(static_cast<unsigned>(extraBits));
  bits.position += static_cast<unsigned>(extraBits);
  return static_cast<std::int64_t>((Word{1} << extraBits) + extra);
}

/// An event fits the visible bits up to this many zeros: 1 + (28 + 1) + (28 - 1) bits.
constexpr int kMostZerosAtOnce = 28;

/// Reads a significance stream ahead, until a number of decisions is there.
class RunReader {
 public:
  RunReader(RunCursor& of, std::size_t needed)
      : cursor(&of),
        bytes(of.bits.bytes),
        position(of.bits.position),
        loadEnd(of.bits.bitCount < 64 ? 0 : of.bits.bitCount - 63),
        signsAt(of.signsAt) {
    const std::size_t used = of.begin / 8;
    const std::size_t kept = of.end / 8 - used;
    if (used != 0) {
      std::memmove(of.ahead, of.ahead + used, kept + 1);
      std::memmove(of.ahead + signsAt, of.ahead + used + signsAt, kept + 1);
      of.begin -= 8 * used;
      of.end -= 8 * used;
    }
    to = of.ahead + kept;
    fill = of.end % 8;
    openDecisions = to[0] & firstOnes(fill);
    openSigns = to[signsAt] & firstOnes(fill);
    left = static_cast<std::int64_t>(needed) - static_cast<std::int64_t>(of.end - of.begin);
    if (left > 0) {  // zeros need not be written from here on
      const std::size_t bytesLeft = static_cast<std::size_t>(left) / 8 + 2;
      std::memset(to, 0, bytesLeft);
      std::memset(to + signsAt, 0, bytesLeft);
    }
    const std::int64_t zeros = left <= 0 ? 0 : of.zeros < left ? of.zeros : left;
    of.zeros -= zeros;
    left -= zeros;
    appendZerosBehind(0, 0, static_cast<std::uint64_t>(zeros));
  }
  RunReader(const RunReader&) = delete;
  RunReader& operator=(const RunReader&) = delete;

  /// There is more to read, and eight bytes of it can be loaded.
  bool canLook() const { return left > 0 && position < loadEnd; }

  /// Takes some events where canLook.
  [[gnu::always_inline]] void takeSome() {
    Word word = loadWord8(bytes + position / 8) >> (position % 8);
    RunCodes codes = codesOf(word);
    if (codes != 0) {
      RunCodes sum = 0;
      for (int looks = 1;; ++looks) {
        word >>= codes % 64;
        sum += codes;
        append((codes >> 16) & 0xffffff, codes >> 40, (codes >> 8) & 0xff);
        if (looks == kVisible / kRunCodeBits) break;
        codes = codesOf(word);  // where no event fits, this and what follows changes nothing
      }
      position += sum % 64;
      left -= static_cast<std::int64_t>((sum >> 8) & 0xff);
      return;
    }
    const int zeros = __builtin_ctzll((word >> 1) | (Word{1} << (kVisible - 1)));
    if (zeros > kMostZerosAtOnce) [[unlikely]] {
      takeOne();
      return;
    }
    const auto extraBits = static_cast<unsigned>(zeros - 1);  // no zeros at all are among the codes
    const Word extra = (word >> (zeros + 2)) & firstOnes(extraBits);
    position += static_cast<unsigned>(zeros + 2) + extraBits;
    takeEvent(word & 1, static_cast<std::int64_t>((Word{1} << extraBits) + extra));
  }

  /// Takes what is left, and moves the cursor.
  void finish() {
    while (canLook()) takeSome();
    while (left > 0) takeOne();
    cursor->bits.position = position;
    cursor->end = 8 * static_cast<std::size_t>(to - cursor->ahead) + fill;
  }

 private:
  static RunCodes codesOf(Word word) { return kRunCodes.entries[word % RunCodeTable::kEntries]; }

  /// Takes the next event wherever it is.
  [[gnu::noinline]] void takeOne() {
    BitCursor bits = {bytes, position, cursor->bits.bitCount};
    const Word sign = lookSafely(bits) & 1;
    ++bits.position;
    const std::int64_t run = takeRun(bits, cursor->terminated);
    position = bits.position;
    takeEvent(sign, run);
  }

  void takeEvent(Word sign, std::int64_t run) {
    --left;
    const std::int64_t zeros = run < left ? run : left;
    cursor->zeros = run - zeros;
    left -= zeros;
    appendZerosBehind(1, sign, 1 + static_cast<std::uint64_t>(zeros));
  }

  /// At most 56 decisions.
  void append(Word decisions, Word signs, std::uint64_t count) {
    openDecisions |= decisions << fill;
    openSigns |= signs << fill;
    fill += count;
    storeOpen();
    to += fill / 8;
    openDecisions >>= fill & 56;
    openSigns >>= fill & 56;
    fill %= 8;
  }

  /// One decision with zeros behind it, `count` in all; 0: nothing.
  void appendZerosBehind(Word decision, Word sign, std::uint64_t count) {
    openDecisions |= decision << fill;
    openSigns |= sign << fill;
    fill += count;
    storeOpen();
    to += fill / 8;
    if (fill >= 8) {
      openDecisions = 0;
      openSigns = 0;
    }
    fill %= 8;
  }

  void storeOpen() {
    storeWord8(to, openDecisions);
    storeWord8(to + signsAt, openSigns);
  }

  RunCursor* cursor;
  const unsigned char* bytes;
  std::uint64_t position;
  std::uint64_t loadEnd;  ///< eight bytes can be loaded from positions before this one
  unsigned char* to;
  std::size_t signsAt;
  std::uint64_t fill;  ///< bits behind `to` that do not make a byte yet
  Word openDecisions;
  Word openSigns;
  std::int64_t left;  ///< decisions to be read; negative: read beyond those asked for
};

bool hasAhead(const RunCursor& cursor, std::size_t needed) {
  return cursor.end - cursor.begin >= needed ||
         (cursor.end == cursor.begin && cursor.zeros >= static_cast<std::int64_t>(needed));
}

/// Reads ahead until `needed` decisions are there for `position`, and for the one below it if it lacks some too: the two
/// streams have nothing to do with each other, so the processor works on one while it waits for the other.
[[gnu::noinline]] void readAhead(OrderCursors& order, int position, std::size_t needed) {
  RunReader first(order.runs[position], needed);
  if (position > order.lowestSignificance && !hasAhead(order.runs[position - 1], needed)) {
    RunReader second(order.runs[position - 1], needed);
    while (first.canLook() && second.canLook()) {
      first.takeSome();
      second.takeSome();
    }
    second.finish();
  }
  first.finish();
}

}  // namespace
}  // namespace zel::gwav4
