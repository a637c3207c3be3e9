#include "gwav4/run_codes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <vector>

#include "gwav4/bit_decoder.h"

namespace ei4::test {
namespace {

using zel::gwav4::CBitDecoder;
using zel::gwav4::CBitInfiniteReader;
using zel::gwav4::CBitReader;
using zel::gwav4::kRunCodeBits;
using zel::gwav4::kRunCodes;
using zel::gwav4::RunCodes;

struct Events {
  unsigned taken = 0;
  unsigned decided = 0;
  std::uint32_t decisions = 0;
  std::uint32_t minuses = 0;

  bool operator==(const Events&) const = default;
};

Events unpacked(RunCodes codes) {
  return {static_cast<unsigned>(codes & 255), static_cast<unsigned>((codes >> 8) & 255),
          static_cast<std::uint32_t>((codes >> 16) & 0xffffff), static_cast<std::uint32_t>(codes >> 40)};
}

/// What the coder makes of the bits. A run of 0 in front of them lets it start with an event.
Events steppedBy(unsigned bits) {
  std::vector<unsigned char> bytes(32);  // zeros behind the bits, so that nothing ends by chance
  const unsigned coded = 1U | (bits << 1);
  bytes[0] = static_cast<unsigned char>(coded);
  bytes[1] = static_cast<unsigned char>(coded >> 8);
  CBitInfiniteReader source;
  const CBitReader start(bytes.data(), bytes.size());
  source.create(&start, 0);
  CBitDecoder coder;
  coder.attach(&source, {});
  Events events;
  for (;;) {
    const bool minus = coder.takeEvent();
    const long taken = coder.getStoredTotal() - 1;
    if (taken > kRunCodeBits) return events;
    const std::uint32_t place = 1U << events.decided;
    events.decisions |= place;
    if (minus) events.minuses |= place;
    events.decided += static_cast<unsigned>(coder.run) + 1;
    events.taken = static_cast<unsigned>(taken);
  }
}

TEST(RunCodes, SayOfAnyBitsWhatTheCoderReads) {
  for (unsigned bits = 0; bits < std::size(kRunCodes.entries); ++bits) {
    ASSERT_EQ(unpacked(kRunCodes.entries[bits]), steppedBy(bits)) << bits;
  }
}

// Worked out by hand.
TEST(RunCodes, CountWholeEventsOnly) {
  EXPECT_EQ(kRunCodes.entries[0], 0U);
  // A plus, a run of 0, five times; the eleventh bit is a sign without a code.
  EXPECT_EQ(unpacked(kRunCodes.entries[0b010'1010'1010]), (Events{10, 5, 0b11111, 0}));
  // A minus and 001 0: a run of 2. A plus and 01: a run of 1. 1 01: a minus and a run of 1.
  EXPECT_EQ(unpacked(kRunCodes.entries[0b101'1000'1001]), (Events{11, 7, 0b101001, 0b100001}));
  // A plus and 00001 111: a run of 15. The bits 0 0 behind it are no whole event.
  EXPECT_EQ(unpacked(kRunCodes.entries[0b001'1110'0000]), (Events{9, 16, 1, 0}));
  // A plus and 000001 0000, a run of 16, end with the last bit; one zero more, and the first event is not whole.
  EXPECT_EQ(unpacked(kRunCodes.entries[0b000'0100'0000]), (Events{11, 17, 1, 0}));
  EXPECT_EQ(kRunCodes.entries[0b000'1000'0000], 0U);
}

}  // namespace
}  // namespace ei4::test
