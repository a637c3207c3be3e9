// The run-length code of the significance streams.
#pragma once

#include <cstdint>
#include <string>

#include "gwav4/bit_reader.h"

namespace zel::gwav4 {

/// Code of a coder over some source of bits.
class CBitCoder : public CBitStreamer {
 public:
  const char* getCode() const override { return "rleish"; }
};

/// Tells, coefficient by coefficient, which ones become significant at one bit position of one plane and
/// order.
///
/// A run value R is coded as q zeros and a one. With the parameter k: q <= k is R itself; else q - k bits v
/// follow, least significant first, and R = k + 2^(q - k) - 1 + v. 40 zeros and a one announce the coder's
/// final run, 41 zeros an endless one. R insignificant coefficients come first, then a significant one with
/// its sign bit (1 is minus), then the next run value.
class CBitDecoder final : public CBitCoder {
 public:
  static constexpr int kEscapeZeros = 40;
  static constexpr int kEndlessZeros = 41;
  static constexpr std::int64_t kEndlessRun = (std::int64_t{1} << 30) + 1;
  static constexpr std::int64_t kRunAfterTerminator = 41;

  const char* getType() const override { return source == nullptr ? "" : source->getType(); }
  /// Quirk decoder-mode-is-write: answers as a writer does.
  int getMode() const override { return 'w'; }
  /// Coefficient positions consumed.
  long getTotal() const override;
  long getStoredTotal() const override { return source == nullptr ? 0 : source->getTotal(); }

  /// Starts over on `bits`, which stays the caller's, and reads the first run value.
  void attach(CBitInfiniteReader* bits, const ChunkId& chunk);

  /// Steps one coefficient of an attached coder: 0 not significant here; 1 significant, plus; -1 significant, minus.
  int step() {
    if (--run >= 0) return 0;
    return takeEvent() ? -1 : 1;
  }

  /// Reads what stands behind a finished run: the sign of the significant coefficient, true for minus, and
  /// the next run value, which becomes `run`.
  bool takeEvent();

  /// Reads one run value of an attached coder and counts the positions that it covers.
  std::int64_t readRun();

  /// "n coder for plane P ord O bits B" once it is attached, else empty.
  std::string name() const;

  // The state of the run code. Loops over whole rows keep it in registers and write it back.
  std::int64_t run = -1;    ///< insignificant coefficients before the next significant one
  int k = 1;                ///< parameter of the run code, at least 1
  std::uint64_t total = 0;  ///< sum of R + 1 over the run values
  CBitInfiniteReader* source = nullptr;
  bool terminated = false;  ///< the final run was read

 private:
  int countZeros();
  std::int64_t valueOf(int zeros);
  std::int64_t terminatorBits();

  ChunkId id;
};

}  // namespace zel::gwav4
