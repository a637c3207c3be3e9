#include "encoder/bit_writer.h"

#include <gmock/gmock.h>

#include "encoder/encode_error.h"

namespace {

using ei4::tools::bitsFrom;
using ei4::tools::BitWriter;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(BitWriter, IsEmptyAtFirst) {
  EXPECT_EQ(BitWriter().bitCount(), 0U);
  EXPECT_THAT(BitWriter().bytes(), IsEmpty());
}

TEST(BitWriter, FillsBytesFromTheLowestBit) {
  BitWriter bits;
  bits.put(1, 1);
  bits.put(0, 2);
  bits.put(0b11, 2);
  EXPECT_EQ(bits.bitCount(), 5U);
  EXPECT_THAT(bits.bytes(), ElementsAre(0b11001));
}

TEST(BitWriter, WritesTheLowestBitOfAValueFirst) {
  BitWriter bits;
  bits.put(0, 4);
  bits.put(0x123, 12);
  EXPECT_THAT(bits.bytes(), ElementsAre(0x30, 0x12));
}

TEST(BitWriter, IgnoresBitsAboveTheCount) {
  BitWriter bits;
  bits.put(~0ULL, 3);
  bits.put(0, 5);
  EXPECT_THAT(bits.bytes(), ElementsAre(7));
}

TEST(BitWriter, TakesWholeWordsAtAnyOffset) {
  for (int offset = 0; offset < 64; ++offset) {
    BitWriter bits;
    bits.putZeros(static_cast<std::uint64_t>(offset));
    bits.put(0x8000000000000001ULL, 64);
    const std::vector<unsigned char> bytes = bits.bytes();
    const auto bitAt = [&bytes](int i) { return (bytes[static_cast<std::size_t>(i / 8)] >> (i % 8)) & 1; };
    EXPECT_EQ(bits.bitCount(), static_cast<std::uint64_t>(offset) + 64);
    for (int i = 0; i < offset + 64; ++i) {
      EXPECT_EQ(bitAt(i), i == offset || i == offset + 63 ? 1 : 0) << offset << ": " << i;
    }
  }
}

TEST(BitWriter, AppendsAnotherWriterBitByBit) {
  const BitWriter pattern = bitsFrom("1011 0001 1");
  BitWriter together = bitsFrom("001");
  for (int i = 0; i < 20; ++i) together.append(pattern);
  BitWriter expected = bitsFrom("001");
  for (int i = 0; i < 20; ++i) {
    for (const int bit : {1, 0, 1, 1, 0, 0, 0, 1, 1}) expected.put(static_cast<std::uint64_t>(bit), 1);
  }
  EXPECT_EQ(together.bitCount(), 183U);
  EXPECT_EQ(together.bytes(), expected.bytes());
}

TEST(BitWriter, AppendsItself) {
  BitWriter bits = bitsFrom("101");
  bits.append(bits);
  EXPECT_EQ(bits.bytes(), bitsFrom("101101").bytes());
}

TEST(BitWriter, PutsMoreZerosThanAWordHolds) {
  BitWriter bits;
  bits.putZeros(200);
  EXPECT_EQ(bits.bitCount(), 200U);
  EXPECT_THAT(bits.bytes(), testing::Each(0));
}

TEST(BitsFrom, RefusesOtherCharacters) { EXPECT_THROW(bitsFrom("0120"), ei4::tools::EncodeError); }

}  // namespace
