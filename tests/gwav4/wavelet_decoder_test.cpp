#include "gwav4/wavelet_decoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/stream_reading.h"

namespace ei4::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using zel::gwav4::kComplete;
using zel::gwav4::kPartial;

TEST(ReadWavelet, RebuildsEachCoefficientFromItsCodersAndStreamers) {
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, lineStream().end()), kComplete);
  EXPECT_THAT(coefficients(decoder), ElementsAre(5, 0, -9));
}

TEST(ReadWavelet, RebuildsTheSameIn32Bits) {
  Decoder<int> decoder(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, lineStream().end()), kComplete);
  EXPECT_THAT(coefficients(decoder), ElementsAre(5, 0, -9));
}

// Doubled values: weights are 16, 8, 4, 2 for the bits 3 to 0, and u is the weight below the last bit read.
TEST(ReadWavelet, AddsTheMidPointOfWhatWasNotRead) {
  struct Case {
    int chunks;
    std::vector<short> coefficients;
  };
  for (const Case& c : {Case{1, {0, 0, -10}},  // 16 | 8 / 2
                        Case{2, {5, 0, -10}},  // 8 | 4 / 2: each coefficient counts from its own last bit
                        Case{3, {5, 0, -9}},   // refined down to bit 2: 16 | 4 / 2
                        Case{4, {4, 0, -8}},   // down to bit 1: u is 2, nothing is added
                        Case{6, {4, 0, -8}},   // significance further down than refinement changes nothing
                        Case{7, {5, 0, -9}}}) {
    Decoder<short> decoder(1, 3, 1, 0, 3, 1);
    EXPECT_EQ(readStream(decoder, lineStream(c.chunks).end()), kComplete);
    EXPECT_EQ(coefficients(decoder), c.coefficients) << c.chunks << " chunks";
  }
}

TEST(ReadWavelet, ScansTheOrdersOfEachRowInTheInterleavedLayout) {
  Decoder<short> decoder(1, 4, 4, 0, 4, 4);
  EXPECT_EQ(readStream(decoder, squareStream()), kComplete);
  // Unrefined, the bits 3, 2 and 1 stand for 10, 5 and 2.
  EXPECT_THAT(coefficients(decoder), ElementsAre(10, 2, 5, 2,  //
                                                 2, 2, 2, 2,   //
                                                 5, 2, 5, 2,   //
                                                 2, 2, 2, 2));
}

TEST(ReadWavelet, LeavesOutTheFinestOrdersAndSaysSo) {
  Decoder<short> decoder(1, 2, 2, /*skip=*/1, 4, 4);
  EXPECT_EQ(readStream(decoder, squareStream()), kPartial);
  EXPECT_THAT(coefficients(decoder), ElementsAre(10, 5, 5, 5));
}

TEST(ReadWavelet, TakesTheFullSizeForTheLengthFieldsWhateverIsLeftOut) {
  Decoder<short> wrong(1, 2, 2, /*skip=*/1, 2,
                       2);  // as if the picture were 2 x 2: the directory reads differently
  readStream(wrong, squareStream());
  EXPECT_NE(coefficients(wrong), (std::vector<short>{10, 5, 5, 5}));
  Decoder<short> ownSize(1, 4, 4, 0, /*fullX=*/0, /*fullY=*/0);  // 0: the planes' own size
  EXPECT_EQ(readStream(ownSize, squareStream()), kComplete);
}

TEST(ReadWavelet, ReadsAllPlanes) {
  const Bytes stream = CodedStream({Magic::GW41, 3, 8, 3, 1})
                           .preamble(0, 0)
                           .significance(2, 0, "1 0 0001 00")
                           .significance(0, 0, "01 1 0001 00")
                           .end();
  Decoder<short> decoder(3, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, stream), kComplete);
  EXPECT_THAT(coefficients(decoder, 0), ElementsAre(0, -1, 0));
  EXPECT_THAT(coefficients(decoder, 1), Each(0));
  EXPECT_THAT(coefficients(decoder, 2), ElementsAre(1, 0, 0));
}

TEST(ReadWavelet, GoesOnReadingBehindAChunk) {
  // The chunk states one bit, "0"; its coder reads on into the end code: a run of 1, a minus.
  const Bytes stream = CodedStream(kLine).preamble(0, 0).significance(0, 0, "0").end();
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, stream), kComplete);
  EXPECT_THAT(coefficients(decoder), ElementsAre(0, -1, 0));
}

TEST(ReadWavelet, PlacesAnEmptyRefinementChunkButNotAnEmptySignificanceChunk) {
  Decoder<short> refined(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(
      readStream(
          refined,
          CodedStream(kLine).preamble(1, 0).significance(0, 0, "1 0 0001 00").refinement(0, 0, "").end()),
      kComplete);
  EXPECT_THAT(coefficients(refined), ElementsAre(3, 0, 0));  // refined by the first bit of the end code

  Decoder<short> empty(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(empty, CodedStream(kLine).preamble(0, 0).significance(0, 0, "").end()), kComplete);
  EXPECT_THAT(coefficients(empty), Each(0));  // the end code would have been a run of 0 and a minus
}

TEST(ReadWavelet, KeepsTheHighestBitPositions) {
  Decoder<short> shorts(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(shorts, CodedStream(kLine).preamble(15, 0).significance(0, 0, "1 0 1 1 0001").end()),
            kComplete);
  EXPECT_THAT(coefficients(shorts),
              ElementsAre(static_cast<short>(0x8000 | 0x2000), static_cast<short>(-0xA000), 0));
  Decoder<int> ints(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(ints, CodedStream(kLine).preamble(30, 0).significance(0, 0, "1 0 1 1 0001").end()),
            kComplete);
  EXPECT_THAT(coefficients(ints), ElementsAre((1 << 30) | (1 << 28), -((1 << 30) | (1 << 28)), 0));
  Decoder<int> top(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(top, CodedStream(kLine).preamble(31, 0).significance(0, 0, "1 0 0001").end()),
            kComplete);
  EXPECT_EQ(coefficients(top)[0], static_cast<int>(0xA0000000U));
}

// The width of a length field, literally: floor(log2(2n + 1)) + 1 bits in order 0.
struct FieldCase {
  const char* name;
  StreamHeader header;
  int significanceBits;
  int refinementBits;
};
class LengthFields : public testing::TestWithParam<FieldCase> {};

TEST_P(LengthFields, HaveTheWidthThatTheFullPictureGives) {
  const auto& [name, header, significanceBits, refinementBits] = GetParam();
  const auto field = [](int width, const char* low) {
    std::string bits = low;
    bits.resize(static_cast<std::size_t>(width), '0');
    return bits;
  };
  // A chunk of 2 bits, one of 1 bit, one of 2 bits, and the end code: a wrong width cannot reach it.
  const Bytes stream = CodedStream(header)
                           .preamble(1, 0)
                           .raw("00 0000 0" + field(significanceBits, "01") + "11")
                           .raw("00 0000 1" + field(refinementBits, "1") + "1")
                           .raw("00 0000 0" + field(significanceBits, "01") + "00")
                           .raw("11" + std::string(300, '1'))
                           .cut();
  Decoder<short> decoder(1, header.width, 1, 0, header.width, header.height);  // one row of it is enough
  decoder.setSizeMode(header.magic == Magic::GW40);
  EXPECT_EQ(readStream(decoder, stream), kComplete);
  EXPECT_EQ(coefficients(decoder)[0], -3);  // run 0, a minus, refined by a 1
}

INSTANTIATE_TEST_SUITE_P(
    ReadWavelet, LengthFields,
    testing::Values(FieldCase{"Gw40", {Magic::GW40, 1, 8, 3, 1}, 3, 3},     // 2 * 3 + 1 = 7
                    FieldCase{"Gw41", {Magic::GW41, 1, 8, 3, 1}, 4, 3},     // n = 4: 9
                    FieldCase{"Gw40Of8", {Magic::GW40, 1, 8, 8, 1}, 5, 5},  // 17
                    FieldCase{"Gw41Of8", {Magic::GW41, 1, 8, 8, 1}, 5, 4},  // n = 12: 25
                    FieldCase{"Gw40Of1", {Magic::GW40, 1, 8, 1, 1}, 2, 2},  // 3
                    FieldCase{
                        "Exact", {Magic::GW40, 1, 8, 1023, 1025}, 21, 21},  // 2^21 - 1, a float would be 2^21
                    FieldCase{"Beyond32Bits", {Magic::GW41, 1, 8, 65535, 65535}, 34, 33}),
    [](const auto& test) { return test.param.name; });

TEST(ReadWavelet, ReadsNoBitsForAFieldOfNegativeWidth) {
  // 3 x 1, GW41: 4 - 2 * 3 bits are none. The chunk is empty, and the end code follows at once.
  Decoder<short> decoder(1, 3, 1, 0, 3, 1);
  EXPECT_EQ(readStream(decoder, CodedStream(kLine).preamble(1, 8).raw("00 1100 0  00 0001 1  11").cut()),
            kComplete);
  EXPECT_THAT(coefficients(decoder), Each(0));
}

}  // namespace
}  // namespace ei4::test
