#include "ei4info/image_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "ei4info_images.h"
#include "gwav4/decompressor.h"
#include "gwav4/status.h"

namespace {

using ei4::info::Decodes;
using ei4::info::DirectoryState;
using ei4::info::ImageFacts;
using ei4::test::Bytes;
using ei4::test::codedStream;
using ei4::test::ei4;
using ei4::test::first;
using ei4::test::inspect;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ImageFacts, OfAGoodImage) {
  ei4::tools::Ei4Preamble preamble{.intercept = -1024, .slope = 0.1F, .window = 400, .level = 40};
  const Bytes file = ei4::tools::writeEi4(preamble, codedStream(50, 40, 2, 12));
  const ImageFacts facts = inspect(file);
  EXPECT_EQ(facts.length, static_cast<std::int64_t>(file.size()));
  EXPECT_EQ(facts.decodes, Decodes::completely);
  EXPECT_THAT(facts.faults, IsEmpty());
  ASSERT_TRUE(facts.preamble);
  EXPECT_EQ(facts.preamble->length, 24);
  EXPECT_EQ(facts.preamble->intercept, -1024);
  EXPECT_EQ(facts.preamble->slope, 0.1F);
  EXPECT_EQ(facts.preamble->window, 400);
  EXPECT_EQ(facts.preamble->level, 40);
  ASSERT_TRUE(facts.header);
  EXPECT_EQ(facts.header->xSize, 50);
  ASSERT_TRUE(facts.directory);
  EXPECT_EQ(facts.directory->levels, ei4::tools::naturalLevels(50, 40));
  EXPECT_EQ(facts.directory->codedBytes, static_cast<std::int64_t>(file.size()) - 40);
  EXPECT_FALSE(facts.sizes.empty());
}

TEST(ImageFacts, OfALossyImageNameNoFault) {
  ei4::tools::EncodeOptions lossy;
  lossy.lowestBit = 2;
  const ImageFacts facts = inspect(ei4(codedStream(50, 40, 1, 8, lossy)));
  EXPECT_EQ(facts.decodes, Decodes::partly);
  EXPECT_EQ(facts.directory->state, DirectoryState::open);
  EXPECT_THAT(facts.faults, IsEmpty());
}

TEST(ImageFacts, OfALongPreambleAreThoseBehindIt) {
  const ImageFacts facts = inspect(ei4(codedStream(50, 40), 1000));
  EXPECT_EQ(facts.decodes, Decodes::completely);
  EXPECT_EQ(facts.preamble->length, 1000);
}

TEST(ImageFacts, SayWhatTheConverterRefuses) {
  const Bytes good = ei4(codedStream(50, 40));
  const auto faultsWith = [&good](std::size_t at, unsigned char byte) {
    Bytes bad = good;
    bad.at(at) = byte;
    return inspect(bad).faults;
  };
  EXPECT_THAT(inspect({}).faults, ElementsAre("has 0 bytes; 40 or less are no image"));
  EXPECT_THAT(inspect(first(good, 40)).faults,
              ElementsAre("has 40 bytes; 40 or less are no image", HasSubstr("directory")));
  EXPECT_THAT(faultsWith(6, 23), ElementsAre("states a preamble of 23 bytes; it has at least 24"));
  EXPECT_THAT(faultsWith(7, 255),
              ElementsAre("states a preamble of 65304 bytes, behind which no stream header fits"));
  EXPECT_THAT(faultsWith(24, 'g'), ElementsAre("has a stream header that begins with neither GW40 nor GW41"));
  EXPECT_THAT(faultsWith(28, 4), ElementsAre("states 4 bytes a pixel; there are 1, 2 and 3"));
  EXPECT_THAT(faultsWith(40, 16), ElementsAre("states a top bit of 16, too high for samples of 8 bits"));
  EXPECT_THAT(faultsWith(41, 9), ElementsAre("states 9 levels; there are at most 8"));
}

TEST(ImageFacts, OfAHeaderThatLiesAreItsClaims) {
  Bytes file = ei4(codedStream(50, 40));
  for (const std::size_t at : {30U, 31U, 32U, 33U}) file[at] = 0xFF;
  const ImageFacts facts = inspect(file);
  EXPECT_EQ(facts.header->xSize, 65535);
  EXPECT_EQ(facts.decodes, Decodes::no);
  EXPECT_THAT(facts.faults, testing::Contains("claims more pixels than an input of its length may"));
}

// What is said must be what the decoder does, for each prefix of a file and of a stream that is damaged.
TEST(ImageFacts, AgreeWithTheDecoderOnEveryPrefix) {
  for (const Bytes& whole :
       {ei4(codedStream(20, 16)), ei4(codedStream(9, 12, 3)), ei4(codedStream(17, 17, 2, 12))}) {
    int partly = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
      const Bytes file = first(whole, length);
      const ImageFacts facts = inspect(file);
      EXPECT_EQ(facts.length, static_cast<std::int64_t>(length));
      if (length <= 40) {
        EXPECT_EQ(facts.decodes, Decodes::no);
        EXPECT_FALSE(facts.faults.empty());
        continue;
      }
      zel::gwav4::CGWavDecompressor decompressor(file.data() + 24, length - 40, 0, 0);
      Bytes pixels(static_cast<std::size_t>(decompressor.getXSize() * decompressor.getYSize() * 3));
      const int status = decompressor.decompress(pixels.data(), pixels.size(), 0);
      EXPECT_EQ(facts.decodes, status == zel::gwav4::kComplete  ? Decodes::completely
                               : status == zel::gwav4::kPartial ? Decodes::partly
                                                                : Decodes::no);
      EXPECT_EQ(facts.faults.empty(), facts.directory->state == DirectoryState::complete ||
                                          facts.directory->state == DirectoryState::open);
      if (facts.decodes == Decodes::partly) ++partly;
    }
    EXPECT_GT(partly, 100);
    EXPECT_EQ(inspect(whole).decodes, Decodes::completely);
  }
}

TEST(ImageFacts, EndOnEveryDamagedByte) {
  const Bytes whole = ei4(codedStream(20, 16));
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const unsigned flip : {0x01U, 0x80U, 0xFFU}) {
      Bytes file = whole;
      file[at] = static_cast<unsigned char>(file[at] ^ flip);
      const ImageFacts facts = inspect(file);
      if (facts.decodes == Decodes::no) {
        EXPECT_FALSE(facts.faults.empty()) << at;
      } else {
        EXPECT_TRUE(facts.directory);
      }
    }
  }
}

TEST(ImageFacts, OfEveryStreamOfTheCorpusSayWhyThereIsNoPicture) {
  for (Bytes input : ei4::test::corpusOf("stream")) {
    input.erase(input.begin(),
                input.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(input.size(), 7)));
    const ImageFacts facts = inspect(ei4(input));
    EXPECT_TRUE(facts.decodes != Decodes::no || !facts.faults.empty());
  }
}

}  // namespace
