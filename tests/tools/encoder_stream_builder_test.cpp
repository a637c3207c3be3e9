#include "encoder/stream_builder.h"

#include <gmock/gmock.h>

#include "encoder/encode_error.h"
#include "reference/naive_decoder.h"

namespace {

using namespace ei4::tools;
using testing::ElementsAre;

std::vector<unsigned char> codedPart(const StreamBuilder& builder) {
  const std::vector<unsigned char> stream = builder.build();
  return {stream.begin() + kStreamHeaderBytes, stream.end()};
}

constexpr ChunkId kFirstSignificance{0, 0, ChunkKind::Significance};

TEST(StreamBuilder, WritesTheHeaderLittleEndian) {
  const StreamBuilder builder({Magic::GW40, 2, 12, 0x0801, 0x0102});
  EXPECT_THAT(builder.build(),
              ElementsAre('G', 'W', '4', '0', 2, 12, 0x01, 0x08, 0x02, 0x01, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(StreamBuilder({Magic::GW41, 1, 8, 1, 1}).build()[3], '1');
}

TEST(StreamBuilder, WritesNoTopBitAs255) {
  StreamBuilder builder({Magic::GW41, 1, 8, 1, 1});
  builder.preamble(-1, 0);
  builder.end();
  EXPECT_THAT(codedPart(builder), ElementsAre(0xFF, 0, 3));
}

// One pixel of value 1: top bit 0, no levels; then, lowest bit first, plane 00, order 0000, kind 0, a length
// of 3 in its 2-bit field 11, the runs 1 (0 coefficients), 0 (plus), 1 (0 coefficients), and the end 11.
TEST(StreamBuilder, WritesAChunkFieldByField) {
  StreamBuilder builder({Magic::GW41, 1, 8, 1, 1});
  builder.preamble(0, 0);
  builder.chunk(kFirstSignificance, bitsFrom("1 0 1"));
  builder.end();
  EXPECT_EQ(builder.codedBits(), 16U + 2 + 4 + 1 + 2 + 3 + 2);
  EXPECT_THAT(codedPart(builder), ElementsAre(0, 0, 0b1000'0000, 0b0011'1011));
  EXPECT_THAT(ei4::test::decodeNaively(builder.build(), 0).pixels, ElementsAre(1));
}

TEST(StreamBuilder, WritesPlaneOrderAndKindOfARefinementChunk) {
  StreamBuilder builder({Magic::GW40, 3, 8, 16, 16});  // 513: the field of order 1 has 9 - 2 + 1 bits
  builder.chunk({2, 1, ChunkKind::Refinement}, bitsFrom("111"));
  const BitWriter expected = bitsFrom("01 1000 1 11000000 111");
  EXPECT_EQ(codedPart(builder), expected.bytes());
}

TEST(StreamBuilder, RefusesAChunkThatItsFieldCannotState) {
  StreamBuilder builder({Magic::GW41, 1, 8, 1, 1});
  EXPECT_TRUE(builder.fits(kFirstSignificance, 3));
  EXPECT_FALSE(builder.fits(kFirstSignificance, 4));
  EXPECT_THROW(builder.chunk(kFirstSignificance, bitsFrom("1111")), ChunkTooLong);
  EXPECT_EQ(builder.codedBits(), 0U);
}

TEST(StreamBuilder, GivesAVanishedFieldToEmptyChunksOnly) {
  StreamBuilder builder({Magic::GW41, 1, 8, 1, 1});
  const ChunkId coarse{0, 4, ChunkKind::Significance};
  EXPECT_TRUE(builder.fits(coarse, 0));
  EXPECT_FALSE(builder.fits(coarse, 1));
  builder.chunk(coarse, {});
  EXPECT_EQ(builder.codedBits(), 7U);
}

TEST(StreamBuilder, StatesAnotherLengthOnRequest) {
  StreamBuilder builder({Magic::GW41, 1, 8, 1, 1});
  builder.chunkStating(1, kFirstSignificance, bitsFrom("111"));
  EXPECT_EQ(codedPart(builder), bitsFrom("00 0000 0 10 111").bytes());
}

TEST(StreamBuilder, RefusesHeadersThatDoNotFit) {
  EXPECT_THROW(StreamBuilder({Magic::GW41, 1, 8, 65536, 1}), EncodeError);
  EXPECT_THROW(StreamBuilder({Magic::GW41, 1, 8, 1, -1}), EncodeError);
  EXPECT_THROW(StreamBuilder({Magic::GW41, 256, 8, 1, 1}), EncodeError);
}

}  // namespace
