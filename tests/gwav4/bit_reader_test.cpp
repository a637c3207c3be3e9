#include "gwav4/bit_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "gwav4/status.h"
#include "support/stream_random.h"

namespace ei4::test {
namespace {

using zel::gwav4::CBitInfiniteReader;
using zel::gwav4::CBitRawStreamer;
using zel::gwav4::CBitReader;
using zel::gwav4::CBitStreamer;
using zel::gwav4::kEndOfData;

std::vector<unsigned char> randomBytes(std::size_t count, unsigned seed) {
  return Dice(seed).bytes(static_cast<int>(count));
}

int bitAt(const std::vector<unsigned char>& bytes, std::size_t index) {
  return bytes[index / 8] >> (index % 8) & 1;
}

int reasonOf(CBitReader& reader) {
  try {
    reader.takeBit();
  } catch (int reason) {
    return reason;
  }
  return 0;
}

// Every tail length, with and without whole words in front of it.
class BlockSizes : public testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(EveryTail, BlockSizes, testing::Range(std::size_t{0}, std::size_t{26}));

TEST_P(BlockSizes, DeliverEachByteFromItsLowestBitUpAndThenEnd) {
  const auto bytes = randomBytes(GetParam(), 1);
  CBitReader reader(bytes.data(), bytes.size());
  for (std::size_t i = 0; i < 8 * bytes.size(); ++i) {
    ASSERT_EQ(reader.getTotal(), static_cast<long>(i));
    ASSERT_EQ(reader.takeBit(), bitAt(bytes, i)) << "bit " << i;
  }
  EXPECT_EQ(reader.getTotal(), static_cast<long>(8 * bytes.size()));
  EXPECT_EQ(reasonOf(reader), kEndOfData);
  EXPECT_EQ(reasonOf(reader), kEndOfData);  // and stays at the end
  EXPECT_EQ(reader.getTotal(), static_cast<long>(8 * bytes.size()));
}

TEST_P(BlockSizes, GoOnWithZerosInAnInfiniteReader) {
  const auto bytes = randomBytes(GetParam(), 2);
  CBitReader finite(bytes.data(), bytes.size());
  CBitInfiniteReader reader;
  reader.create(&finite, 0);
  for (std::size_t i = 0; i < 8 * bytes.size(); ++i)
    ASSERT_EQ(reader.takeBit(), bitAt(bytes, i)) << "bit " << i;
  for (int i = 0; i < 10'000; ++i) ASSERT_EQ(reader.takeBit(), 0);
}

TEST_P(BlockSizes, CanBeSkippedAndSoughtToAnyBit) {
  const auto bytes = randomBytes(GetParam(), 3);
  const std::size_t bits = 8 * bytes.size();
  for (std::size_t to = 0; to <= bits; ++to) {
    CBitReader skipping(bytes.data(), bytes.size());
    CBitReader seeking(bytes.data(), bytes.size());
    skipping.skipBits(to / 3);
    skipping.skipBits(to - to / 3);
    seeking.seek(to);
    EXPECT_EQ(skipping.getTotal(), static_cast<long>(to));
    EXPECT_EQ(seeking.getTotal(), static_cast<long>(to));
    if (to == bits) {
      EXPECT_EQ(reasonOf(skipping), kEndOfData);
      EXPECT_EQ(reasonOf(seeking), kEndOfData);
    } else {
      EXPECT_EQ(skipping.takeBit(), bitAt(bytes, to)) << "bit " << to;
      EXPECT_EQ(seeking.takeBit(), bitAt(bytes, to)) << "bit " << to;
    }
  }
}

TEST_P(BlockSizes, EndASkipThatGoesPastThem) {
  const auto bytes = randomBytes(GetParam(), 4);
  for (const std::uint64_t beyond :
       {std::uint64_t{1}, std::uint64_t{64}, std::uint64_t{1} << 40, ~std::uint64_t{0} >> 8}) {
    CBitReader reader(bytes.data(), bytes.size());
    EXPECT_THROW(reader.skipBits(8 * bytes.size() + beyond), int);
    EXPECT_EQ(reasonOf(reader), kEndOfData);
  }
}

TEST(CBitReader, LoadsATailByteBehindAWholeWord) {
  const std::vector<unsigned char> bytes = {1, 0, 0, 0, 0, 0, 0, 0x80, 0x81};
  CBitReader reader(bytes.data(), bytes.size());
  EXPECT_EQ(reader.takeBits(64), 0x8000000000000001U);
  EXPECT_EQ(reader.getTotal(), 64);
  EXPECT_EQ(reader.takeBit(), 1);
  EXPECT_EQ(reader.getTotal(), 65);
  EXPECT_EQ(reader.takeBits(7), 0x40U);
  EXPECT_EQ(reader.getTotal(), 72);
  EXPECT_EQ(reasonOf(reader), kEndOfData);
}

TEST(CBitReader, EndsAtOnceOverAnEmptyBlock) {
  CBitReader none;
  EXPECT_EQ(none.getTotal(), 0);
  EXPECT_EQ(reasonOf(none), kEndOfData);
}

TEST(CBitReader, ReadsAnUnalignedBlock) {
  const auto bytes = randomBytes(33, 5);
  CBitReader reader(bytes.data() + 1, bytes.size() - 1);
  for (std::size_t i = 8; i < 8 * bytes.size(); ++i) ASSERT_EQ(reader.takeBit(), bitAt(bytes, i));
}

TEST(CBitReader, TakesNumbersFromTheLowestBitUp) {
  const std::vector<unsigned char> bytes = {0xB4, 0x01};  // 00101101 10000000 in the order of reading
  CBitReader reader(bytes.data(), bytes.size());
  EXPECT_EQ(reader.takeBits(0), 0U);
  EXPECT_EQ(reader.takeBits(3), 4U);
  EXPECT_EQ(reader.takeBits(6), 0x36U);
  EXPECT_EQ(reader.getTotal(), 9);
}

TEST(CBitReader, TakesNoBitsForANegativeWidth) {
  const std::vector<unsigned char> bytes = {0xFF};
  CBitReader reader(bytes.data(), bytes.size());
  EXPECT_EQ(reader.takeBits(-3), 0U);
  EXPECT_EQ(reader.getTotal(), 0);
}

TEST(CBitReader, CreateStandsWhereTheSourceStandsWhateverTheSecondArgument) {
  const auto bytes = randomBytes(21, 6);
  for (std::size_t at = 0; at <= 8 * bytes.size(); ++at) {
    CBitReader source(bytes.data(), bytes.size());
    source.skipBits(at);
    CBitReader copy;
    copy.create(&source, 12345);
    EXPECT_EQ(copy.getTotal(), static_cast<long>(at));
    if (at < 8 * bytes.size()) {
      EXPECT_EQ(copy.takeBit(), bitAt(bytes, at));
    }
    EXPECT_EQ(source.getTotal(), static_cast<long>(at));  // the source does not move
  }
}

TEST(CBitReader, AnswersWhatItIs) {
  CBitReader reader;
  const CBitStreamer& streamer = reader;
  EXPECT_STREQ(streamer.getType(), "buffer");
  EXPECT_EQ(streamer.getMode(), 'r');
  EXPECT_STREQ(streamer.getCode(), "raw");
  const std::vector<unsigned char> byte = {0};
  CBitReader other(byte.data(), 1);
  other.takeBit();
  const CBitStreamer& moved = other;
  EXPECT_EQ(moved.getTotal(), 1);
  EXPECT_EQ(moved.getStoredTotal(), 1);
}

TEST(CBitInfiniteReader, AnswersAsAnyReader) {
  CBitInfiniteReader reader;
  EXPECT_STREQ(reader.getType(), "buffer");
  EXPECT_EQ(reader.getMode(), 'r');
  EXPECT_STREQ(reader.getCode(), "raw");
}

TEST(CBitInfiniteReader, FailsLikeAFiniteOneWhenToldTo) {
  const std::vector<unsigned char> byte = {0x03};
  CBitReader source(byte.data(), 1);
  CBitInfiniteReader reader;
  reader.create(&source, 0);
  reader.setInfinite(false);
  EXPECT_EQ(reader.takeBits(8), 3U);
  EXPECT_EQ(reasonOf(reader), kEndOfData);
  reader.setInfinite(true);
  EXPECT_EQ(reader.takeBit(), 0);
}

TEST(CBitInfiniteReader, CountsFromTheSupplyOfZerosOnceItHasSwitched) {
  const std::vector<unsigned char> bytes(10, 0xFF);
  CBitReader source(bytes.data(), bytes.size());
  CBitInfiniteReader reader;
  reader.create(&source, 0);
  for (int i = 0; i < 80; ++i) reader.takeBit();
  EXPECT_EQ(reader.getTotal(), 80);
  reader.takeBit();
  EXPECT_EQ(reader.getTotal(), 1);
  constexpr int kSupplyBits = 64 * 64;
  for (int i = 1; i < kSupplyBits; ++i) reader.takeBit();
  EXPECT_EQ(reader.getTotal(), kSupplyBits);
  reader.takeBit();  // the supply is rewound
  EXPECT_EQ(reader.getTotal(), 1);
  EXPECT_EQ(reader.getStoredTotal(), 1);
}

TEST(CBitInfiniteReader, IsNamedForItsChunk) {
  CBitInfiniteReader reader;
  EXPECT_EQ(reader.name(), "");
  reader.setId({2, 7, 15});
  EXPECT_EQ(reader.name(), "u streamer for plane 2 ord 7 bits 15");
}

TEST(CBitStreamer, AllocatesItsChildrenAlignedTo8Bytes) {
  static_assert(std::is_base_of_v<zel::gwav4::CAligned<8>, CBitStreamer>);
  static_assert(std::is_base_of_v<CBitStreamer, CBitRawStreamer>);
  static_assert(std::is_base_of_v<CBitRawStreamer, CBitReader>);
  static_assert(std::is_base_of_v<CBitReader, CBitInfiniteReader>);
  const auto reader = std::make_unique<CBitInfiniteReader>();
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(reader.get()) % 8, 0U);
}

}  // namespace
}  // namespace ei4::test
