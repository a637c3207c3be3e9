#include "ei4make/picture.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using namespace ei4::tools;
using testing::ElementsAre;
using namespace std::string_view_literals;
using Bytes = std::vector<unsigned char>;

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }
Picture pnm(std::string_view text) { return readPnm(bytesOf(text)); }

std::string refusalOf(std::string_view text) {
  try {
    pnm(text);
  } catch (const PictureError& error) {
    return error.what();
  }
  return "accepted";
}

std::vector<std::uint16_t> words(const Picture& picture) {
  std::vector<std::uint16_t> result(picture.pixels.size() / 2);
  std::memcpy(result.data(), picture.pixels.data(), picture.pixels.size());
  return result;
}

TEST(ReadPnm, TakesEightBitGrey) {
  const Picture picture = pnm("P5\n3 2\n255\nabcdef");
  EXPECT_EQ(picture.width, 3);
  EXPECT_EQ(picture.height, 2);
  EXPECT_EQ(picture.bytesPerPixel, 1);
  EXPECT_EQ(picture.bitsPerPixel, 8);
  EXPECT_EQ(picture.pixels, bytesOf("abcdef"));
}

TEST(ReadPnm, TakesSixteenBitGreyHighByteFirst) {
  const Picture picture = pnm("P5 2 1 4095\n\x01\x02\x0F\xFF"sv);
  EXPECT_EQ(picture.bytesPerPixel, 2);
  EXPECT_EQ(picture.bitsPerPixel, 12);
  EXPECT_THAT(words(picture), ElementsAre(0x0102, 0x0FFF));
}

TEST(ReadPnm, TakesColour) {
  const Picture picture = pnm("P6 1 2 255 rgbRGB");
  EXPECT_EQ(picture.bytesPerPixel, 3);
  EXPECT_EQ(picture.pixels, bytesOf("rgbRGB"));
}

TEST(ReadPnm, StatesTheBitsOfTheLargestValue) {
  EXPECT_EQ(pnm("P5 1 1 1\n\x01"sv).bitsPerPixel, 1);
  EXPECT_EQ(pnm("P5 1 1 100\n\x01"sv).bitsPerPixel, 7);
  EXPECT_EQ(pnm("P5 1 1 256\n\x01\x00"sv).bitsPerPixel, 9);
  EXPECT_EQ(pnm("P5 1 1 65535\n\xFF\xFF"sv).bitsPerPixel, 16);
}

TEST(ReadPnm, SkipsComments) {
  EXPECT_EQ(pnm("P5# made by 4 hands\n# 9 9\n3#wide\r 1 # high\n255\nabc").pixels, bytesOf("abc"));
}

TEST(ReadPnm, LeavesSamplesThatLookLikeBlanksOrCommentsAlone) {
  EXPECT_EQ(pnm("P5 2 1 255\n\n#").pixels, bytesOf("\n#"));
}

TEST(ReadPnm, TakesTheFirstOfSeveralPictures) {
  EXPECT_EQ(pnm("P5 1 1 255\naP5 1 1 255\nb").pixels, bytesOf("a"));
}

TEST(ReadPnm, RefusesEveryCutFile) {
  const std::string whole = "P5 # c\n2 2\n255\nabcd";
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(refusalOf(whole.substr(0, length)), "accepted") << length;
  }
}

TEST(ReadPnm, RefusesOtherKinds) {
  EXPECT_EQ(refusalOf("P2 1 1 255 7"), "neither a binary PGM (P5) nor a binary PPM (P6)");
  EXPECT_EQ(refusalOf("P55 1 255 7"), "neither a binary PGM (P5) nor a binary PPM (P6)");
  EXPECT_EQ(refusalOf("P6 1 1 65535\nabcdef"), "colour has 8 bits a component: this PPM has more");
}

TEST(ReadPnm, RefusesHostileNumbers) {
  EXPECT_EQ(refusalOf("P5 0 1 255\na"), "the width is not 1 to 65535");
  EXPECT_EQ(refusalOf("P5 1 65536 255\na"), "the height is not 1 to 65535");
  EXPECT_EQ(refusalOf("P5 99999999999999999999999999 1 255\na"), "the width is not 1 to 65535");
  EXPECT_EQ(refusalOf("P5 -1 1 255\na"), "the header has no width");
  EXPECT_EQ(refusalOf("P5 1 1 0\na"), "the largest value is not 1 to 65535");
  EXPECT_EQ(refusalOf("P5 1 1 65536\na"), "the largest value is not 1 to 65535");
  EXPECT_EQ(refusalOf("P5 65535 65535 65535\na"), "the file ends before its last pixel");
  EXPECT_EQ(refusalOf("P5 1 1 255"), "the header does not end");
  EXPECT_EQ(refusalOf("P5 1 1 255a"), "the header does not end");
}

TEST(ReadPnm, RefusesSamplesAboveTheLargestValue) {
  EXPECT_EQ(refusalOf("P5 2 1 100\n\x64\x64"), "accepted");
  EXPECT_EQ(refusalOf("P5 2 1 100\n\x64\x65"), "a sample is above the largest value of the header");
}

TEST(ReadRaw, NeedsExactlyThePixels) {
  EXPECT_EQ(readRaw(Bytes(12), 2, 3, 2).bitsPerPixel, 16);
  EXPECT_EQ(readRaw(Bytes(6), 2, 3, 1).bitsPerPixel, 8);
  EXPECT_THROW(readRaw(Bytes(11), 2, 3, 2), PictureError);
  EXPECT_THROW(readRaw(Bytes(13), 2, 3, 2), PictureError);
}

TEST(StateBits, RefusesSamplesThatNeedMore) {
  Picture picture{1, 1, 2, 16, Bytes(2)};
  const std::uint16_t value = 1024;
  std::memcpy(picture.pixels.data(), &value, 2);
  EXPECT_NO_THROW(stateBits(picture, 11));
  EXPECT_EQ(picture.bitsPerPixel, 11);
  EXPECT_THROW(stateBits(picture, 10), PictureError);
  EXPECT_THROW(stateBits(picture, 17), PictureError);
  Picture grey{1, 1, 1, 8, Bytes(1)};
  EXPECT_THROW(stateBits(grey, 9), PictureError);
  EXPECT_NO_THROW(stateBits(grey, 1));
}

}  // namespace
