#include "gwav4/decompressor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "encoder/gw_encoder.h"
#include "support/stream_builder.h"
#include "support/stream_decode.h"

namespace ei4::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using zel::gwav4::CGWavDecompressor;
using zel::gwav4::CGWavHeader;
using zel::gwav4::IGWavDecompressor;
using zel::gwav4::kBadStream;
using zel::gwav4::kBufferTooSmall;
using zel::gwav4::kComplete;
using zel::gwav4::kHeaderBytes;
using zel::gwav4::kKilled;
using zel::gwav4::kPartial;

using Bytes = std::vector<unsigned char>;

constexpr unsigned char kUntouched = DecodedPicture::kUntouched;

/// A picture without much structure: every byte value occurs.
Bytes pattern(int width, int height, int bytesPerPixel) {
  Bytes pixels(static_cast<std::size_t>(width * height * bytesPerPixel));
  for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<unsigned char>(i * i / 7 + 31 * i);
  if (bytesPerPixel == 2) {
    for (std::size_t i = 1; i < pixels.size(); i += 2) pixels[i] &= 0x0F;
  }
  return pixels;
}

tools::EncodeOptions format(int bytesPerPixel, int bits, Magic magic = Magic::GW41) {
  tools::EncodeOptions options;
  options.magic = magic;
  options.bytesPerPixel = bytesPerPixel;
  options.bitsPerPixel = bits;
  return options;
}

std::unique_ptr<CGWavDecompressor> open(const Bytes& stream, int factor = 0) {
  return std::make_unique<CGWavDecompressor>(stream.data(), stream.size() - kHeaderBytes, factor, 0);
}

/// 16-bit pixels 5, 0, -9: clamped or not, as the case may be. No levels.
Bytes threeSamples(int bits, bool withEnd = true) {
  CodedStream stream({Magic::GW41, 2, bits, 3, 1});
  stream.preamble(3, 0)
      .significance(0, 0, "001 0 1 1")
      .significance(0, 0, "1 0 01")
      .refinement(0, 0, "0")
      .refinement(0, 0, "0 0")
      .significance(0, 0, "")
      .significance(0, 0, "")
      .refinement(0, 0, "1 1");
  return withEnd ? stream.end() : stream.raw("00 0000 0").cut();
}

class EveryFormat : public testing::TestWithParam<std::pair<int, int>> {};
INSTANTIATE_TEST_SUITE_P(Decompress, EveryFormat,
                         testing::Values(std::pair{1, 8}, std::pair{2, 10}, std::pair{2, 11},
                                         std::pair{2, 12}, std::pair{2, 16}, std::pair{3, 8}));

TEST_P(EveryFormat, ComesBackExactly) {
  const auto [bytesPerPixel, bits] = GetParam();
  const Bytes pixels = pattern(45, 38, bytesPerPixel);
  for (const Magic magic : {Magic::GW40, Magic::GW41}) {
    const DecodedPicture picture =
        decodeStream(tools::encode(pixels, 45, 38, format(bytesPerPixel, bits, magic)));
    EXPECT_EQ(picture.status, kComplete);
    EXPECT_EQ(picture.pixels, pixels);
  }
}

TEST_P(EveryFormat, KeepsItsSizeWhenTheStreamIsCut) {
  const auto [bytesPerPixel, bits] = GetParam();
  Bytes stream = tools::encode(pattern(45, 38, bytesPerPixel), 45, 38, format(bytesPerPixel, bits));
  stream.resize(stream.size() / 2);
  const DecodedPicture picture = decodeStream(stream);
  EXPECT_EQ(picture.status, kPartial);
  EXPECT_EQ(picture.width, 45);
  EXPECT_EQ(picture.height, 38);
  EXPECT_NE(picture.pixels, Bytes(picture.pixels.size(), kUntouched));
}

TEST_P(EveryFormat, RefusesABufferThatIsOneByteTooSmallAndLeavesItAlone) {
  const auto [bytesPerPixel, bits] = GetParam();
  const Bytes stream = tools::encode(pattern(45, 38, bytesPerPixel), 45, 38, format(bytesPerPixel, bits));
  Bytes out(static_cast<std::size_t>(45 * 38 * bytesPerPixel - 1), kUntouched);
  EXPECT_EQ(open(stream)->decompress(out.data(), out.size(), 0), kBufferTooSmall);
  EXPECT_THAT(out, Each(kUntouched));
}

TEST_P(EveryFormat, WritesNothingBehindThePicture) {
  const auto [bytesPerPixel, bits] = GetParam();
  const Bytes pixels = pattern(45, 38, bytesPerPixel);
  const Bytes stream = tools::encode(pixels, 45, 38, format(bytesPerPixel, bits));
  for (const int factor : {0, 1, 2}) {
    const auto decompressor = open(stream, factor);
    const int bytes = decompressor->getXSize() * decompressor->getYSize() * bytesPerPixel;
    const auto size = static_cast<std::size_t>(bytes);
    Bytes out(size + 100, kUntouched);
    decompressor->decompress(out.data(), out.size(), 0);
    EXPECT_THAT(Bytes(out.begin() + static_cast<std::ptrdiff_t>(size), out.end()), Each(kUntouched))
        << factor;
  }
}

TEST(Decompress, AnswersASecondCallWithTheFirstResultAndDecodesNothing) {
  const Bytes stream = threeSamples(4);
  const auto decompressor = open(stream);
  Bytes out(6);
  EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kComplete);
  out.assign(6, kUntouched);
  EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kComplete);
  EXPECT_THAT(out, Each(kUntouched));
  EXPECT_EQ(decompressor->decompress(nullptr, 0, 0), kComplete);
}

TEST(Decompress, RemembersTheStatusOfTheReadWhenTheBufferWasTooSmall) {
  // The refusal is not a result: the next call answers as if the picture had been written, and writes
  // nothing.
  const Bytes stream = threeSamples(4);
  const auto decompressor = open(stream);
  Bytes out(6, kUntouched);
  EXPECT_EQ(decompressor->decompress(out.data(), 5, 0), kBufferTooSmall);
  EXPECT_EQ(decompressor->decompress(out.data(), 6, 0), kComplete);
  EXPECT_THAT(out, Each(kUntouched));
}

TEST(Decompress, TellsABadStreamBeforeASmallBuffer) {
  Bytes out;
  EXPECT_EQ(
      open(CodedStream({Magic::GW41, 2, 12, 30, 10}).preamble(3, 9).end())->decompress(out.data(), 0, 0),
      kBadStream);
}

TEST(Decompress, Refuses128ForAForeignMagic) {
  for (const char last : {'2', '\0', '9'}) {
    Bytes stream = threeSamples(4);
    stream[3] = static_cast<unsigned char>(last);
    const DecodedPicture picture = decodeStream(stream);
    EXPECT_EQ(picture.status, kBadStream);
    EXPECT_THAT(picture.pixels, Each(kUntouched));
  }
}

TEST(Decompress, Refuses128ForBytesPerPixelThatNoPictureHas) {
  for (const int bytesPerPixel : {0, 4, 255}) {
    Bytes stream = threeSamples(4);
    stream[4] = static_cast<unsigned char>(bytesPerPixel);
    const auto decompressor = open(stream, 1);
    EXPECT_EQ(decompressor->getBytesPerPixel(), bytesPerPixel);
    EXPECT_EQ(decompressor->getXSize(), 2);
    decompressor->stop();
    decompressor->kill();
    Bytes out(2000, kUntouched);
    EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kBadStream);
    EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kBadStream);
    EXPECT_THAT(out, Each(kUntouched));
  }
}

TEST(Decompress, PassesOnARefusalOfTheDirectoryWithoutWriting) {
  const DecodedPicture picture =
      decodeStream(CodedStream({Magic::GW41, 1, 8, 4, 4}).preamble(3, 0).significance(2, 0, "").end());
  EXPECT_EQ(picture.status, kBadStream);
  EXPECT_THAT(picture.pixels, Each(kUntouched));
}

TEST(Decompress, ChoosesTheCoefficientsByTheBitsOfTheHeader) {
  // Bit position 16 exists in 32-bit coefficients only.
  const auto status = [](int bytesPerPixel, int bits) {
    return decodeStream(CodedStream({Magic::GW41, bytesPerPixel, bits, 4, 4}).preamble(16, 1).end()).status;
  };
  EXPECT_EQ(status(2, 10), kBadStream);
  EXPECT_EQ(status(2, 11), kBadStream);
  EXPECT_EQ(status(2, 12), kComplete);
  EXPECT_EQ(status(2, 16), kComplete);
  EXPECT_EQ(status(2, 255), kComplete);
  EXPECT_EQ(status(1, 8), kBadStream);
  EXPECT_EQ(status(1, 12), kBadStream);
  EXPECT_EQ(status(3, 8), kBadStream);
  EXPECT_EQ(status(3, 24), kBadStream);
}

TEST(Decompress, DoesNotClampACompletePicture) {
  const DecodedPicture picture = decodeStream(threeSamples(2));
  EXPECT_EQ(picture.status, kComplete);
  EXPECT_EQ(picture.pixel16(0), 5);
  EXPECT_EQ(picture.pixel16(1), 0);
  EXPECT_EQ(picture.pixel16(2), 65536 - 9);
}

TEST(Decompress, ClampsAnIncompletePictureToItsBits) {
  const DecodedPicture picture = decodeStream(threeSamples(2, false));
  EXPECT_EQ(picture.status, kPartial);
  EXPECT_EQ(picture.pixel16(0), 3);
  EXPECT_EQ(picture.pixel16(1), 0);
  EXPECT_EQ(picture.pixel16(2), 0);
  EXPECT_EQ(decodeStream(threeSamples(12, false)).pixel16(0), 5);
  EXPECT_EQ(decodeStream(threeSamples(0, false)).pixel16(2), 65536 - 9);  // no bits: nothing to clamp to
}

TEST(Decompress, AveragesWithoutClampingWhenNoLevelWasLeftOut) {
  // Too small to leave a level out: both halvings are means over the picture, and the status stays 0.
  const DecodedPicture half = decodeStream(threeSamples(2), 1);
  EXPECT_EQ(half.status, kComplete);
  EXPECT_EQ(half.width, 2);
  EXPECT_EQ(half.height, 1);
  EXPECT_EQ(half.pixel16(0), 2);  // (5 + 0) / 2
  EXPECT_EQ(half.pixel16(1), 65536 - 9);
  const DecodedPicture quarter = decodeStream(threeSamples(2), 2);
  EXPECT_EQ(quarter.width, 1);
  EXPECT_EQ(quarter.pixel16(0), 65535);  // -4 / 3 is -1 toward zero
}

TEST(Decompress, ReportsLevelsLeftOutAsPartial) {
  const Bytes stream = tools::encode(pattern(45, 38, 1), 45, 38, format(1, 8));
  for (int factor = 1; factor <= 8; ++factor) {
    const DecodedPicture picture = decodeStream(stream, factor);
    EXPECT_EQ(picture.status, kPartial) << factor;
    EXPECT_EQ(picture.width, (45 + (1 << factor) - 1) >> factor);
    EXPECT_EQ(picture.height, (38 + (1 << factor) - 1) >> factor);
  }
}

TEST(Decompress, ShowsZerosWhenTheStreamHasFewerLevelsThanAreLeftOut) {
  tools::EncodeOptions options = format(3, 8);
  options.levels = 0;
  const DecodedPicture picture = decodeStream(tools::encode(pattern(45, 38, 3), 45, 38, options), 1);
  EXPECT_EQ(picture.status, kPartial);
  EXPECT_THAT(picture.pixels, Each(0));
}

TEST(Decompress, WritesThePictureOfAStreamThatIsCutInsideItsPreamble) {
  for (const std::size_t kept : {0U, 1U}) {
    Bytes stream = threeSamples(12);
    stream.resize(kHeaderBytes + kept);
    const DecodedPicture picture = decodeStream(stream);
    EXPECT_EQ(picture.status, kPartial);
    EXPECT_THAT(picture.pixels, Each(0));
  }
}

TEST(Decompress, TakesTheColourPathEvenWithoutReduction) {
  // One pixel: planes 3, 1, -1. green = 3 - ((1 - 1) >> 2) = 3.
  const Bytes stream = CodedStream({Magic::GW40, 3, 8, 1, 1})
                           .preamble(1, 0)
                           .significance(0, 0, "1 0")
                           .refinement(0, 0, "1")
                           .significance(1, 0, "")
                           .significance(1, 0, "1 0")
                           .significance(2, 0, "")
                           .significance(2, 0, "1 1")
                           .end();
  const DecodedPicture picture = decodeStream(stream);
  EXPECT_EQ(picture.status, kComplete);
  EXPECT_THAT(picture.pixels, ElementsAre(4, 3, 2));
}

TEST(Decompress, AcceptsPicturesWithoutPixels) {
  for (const auto& [width, height] : {std::pair{0, 0}, {0, 20}, {20, 0}}) {
    for (const int factor : {0, 1, 6}) {
      const Bytes stream = CodedStream({Magic::GW41, 1, 8, width, height}).preamble(3, 0).raw("11").cut();
      const auto decompressor = open(stream, factor);
      EXPECT_EQ(decompressor->getXSize() * decompressor->getYSize(), 0);
      EXPECT_EQ(decompressor->decompress(nullptr, 0, 0), kComplete);
    }
  }
}

TEST(Decompress, TakesItsLevelAsALimitOfTheWork) {
  const Bytes stream = threeSamples(12);
  const DecodedPicture one = decodeStream(stream, 0, /*level=*/1);
  EXPECT_EQ(one.status, kPartial);
  EXPECT_EQ(one.pixel16(0), 0);  // only the third one's highest bit was read
  const DecodedPicture two = decodeStream(stream, 0, /*level=*/2);
  EXPECT_EQ(two.status, kPartial);
  EXPECT_EQ(two.pixel16(0), 5);
  EXPECT_EQ(decodeStream(stream, 0, /*level=*/-5).status, kComplete);
}

TEST(Decompress, TakesAnyFactor) {
  const Bytes stream = threeSamples(12);
  EXPECT_EQ(decodeStream(stream, -3).pixels, decodeStream(stream, 0).pixels);
  for (const int factor : {16, 17, 31, 32, 1000, std::numeric_limits<int>::max()}) {
    const DecodedPicture picture = decodeStream(stream, factor);
    EXPECT_EQ(picture.status, kComplete) << factor;
    EXPECT_EQ(picture.width, 1);
    EXPECT_EQ(picture.height, 1);
  }
}

TEST(Decompressor, AnswersWithTheOutputSizeAndTheFormatOfTheHeader) {
  const Bytes stream = CodedStream({Magic::GW41, 2, 12, 2047, 1025}).cut();
  const auto decompressor = open(stream, 6);
  const IGWavDecompressor& face = *decompressor;
  EXPECT_EQ(face.getBytesPerPixel(), 2);
  EXPECT_EQ(face.getBitsPerPixel(), 12);
  EXPECT_EQ(face.getXSize(), 32);
  EXPECT_EQ(face.getYSize(), 17);
  EXPECT_EQ(decompressor->headerWidth(),
            128);  // the header copy holds the decoded size: four levels left out
  EXPECT_EQ(decompressor->headerHeight(), 65);
}

TEST(Decompressor, StopsBehindARowOfTheScan) {
  const Bytes stream =
      CodedStream({Magic::GW41, 1, 8, 1, 3}).preamble(0, 0).significance(0, 0, "1 0 1 0 1 0 1").end();
  const auto decompressor = open(stream);
  decompressor->stop();
  Bytes out(3);
  EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kComplete);
  EXPECT_THAT(out, ElementsAre(1, 0, 0));
}

TEST(Decompressor, MakesNoPictureOnceKilled) {
  const Bytes stream = threeSamples(12);
  const auto decompressor = open(stream);
  decompressor->kill();
  Bytes out(6, kUntouched);
  EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kKilled);
  EXPECT_THAT(out, Each(kUntouched));
}

TEST(Decompressor, WritesNothingOnceKilledHoweverTheStatusReads) {
  // Without a refinement chunk the directory does not notice the kill. The grey picture, the reduced one and the
  // colour one take different ways to the output.
  const Bytes grey =
      CodedStream({Magic::GW41, 1, 8, 4, 4}).preamble(3, 0).significance(0, 0, "1 0 1 0 01").end();
  const Bytes colour =
      CodedStream({Magic::GW41, 3, 8, 4, 4}).preamble(3, 0).significance(0, 0, "1 0 1 0 01").end();
  for (const auto& [stream, factor] : {std::pair{grey, 0}, std::pair{grey, 1}, std::pair{colour, 0}}) {
    const auto decompressor = open(stream, factor);
    decompressor->kill();
    Bytes out(48, kUntouched);
    EXPECT_EQ(decompressor->decompress(out.data(), out.size(), 0), kComplete);
    EXPECT_THAT(out, Each(kUntouched));
  }
}

TEST(Decompressor, DoesNotDependOnItsLastArgument) {
  const Bytes stream = threeSamples(12);
  CGWavDecompressor decompressor(stream.data(), stream.size() - kHeaderBytes, 0, 12345);
  Bytes out(6);
  EXPECT_EQ(decompressor.decompress(out.data(), out.size(), 0), kComplete);
  EXPECT_EQ(out, decodeStream(stream).pixels);
}

TEST(Decompressor, IsItsInterfaceAndItsHeader) {
  static_assert(std::is_base_of_v<IGWavDecompressor, CGWavDecompressor>);
  static_assert(std::is_base_of_v<CGWavHeader, CGWavDecompressor>);
  static_assert(std::has_virtual_destructor_v<IGWavDecompressor>);
}

}  // namespace
}  // namespace ei4::test
