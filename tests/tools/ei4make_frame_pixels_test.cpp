#include "ei4make/frame_pixels.h"

#include <gmock/gmock.h>

namespace {

using namespace ei4::tools;
using testing::ElementsAre;

FrameLayout grey(int width, int height, int allocated, int stored, int highBit) {
  return {width, height, ColourModel::Grey, allocated, stored, highBit, false, false};
}

TEST(CheckLayout, TakesWhatFitsOnly) {
  EXPECT_NO_THROW(checkLayout(grey(65535, 65535, 16, 16, 15)));
  EXPECT_NO_THROW(checkLayout(grey(1, 1, 8, 1, 7)));
  for (const FrameLayout& layout :
       {grey(0, 1, 8, 8, 7), grey(1, 65536, 8, 8, 7), grey(1, 1, 12, 12, 11), grey(1, 1, 32, 16, 15),
        grey(1, 1, 8, 9, 8), grey(1, 1, 16, 0, 0), grey(1, 1, 16, 12, 10), grey(1, 1, 16, 12, 16)}) {
    EXPECT_THROW(checkLayout(layout), PictureError);
  }
  FrameLayout colour = grey(3, 1, 8, 8, 7);
  colour.model = ColourModel::Rgb;
  EXPECT_NO_THROW(checkLayout(colour));
  colour.model = ColourModel::YbrFull422;
  EXPECT_THROW(checkLayout(colour), PictureError);
  colour = grey(2, 1, 16, 16, 15);
  colour.model = ColourModel::Rgb;
  EXPECT_THROW(checkLayout(colour), PictureError);
}

TEST(FrameBytes, CountsWide) {
  EXPECT_EQ(frameBytes(grey(65535, 65535, 16, 12, 11)), 2ULL * 65535 * 65535);
  FrameLayout colour = grey(65535, 65535, 8, 8, 7);
  colour.model = ColourModel::Rgb;
  EXPECT_EQ(frameBytes(colour), 3ULL * 65535 * 65535);
  colour.model = ColourModel::YbrFull422;
  EXPECT_EQ(frameBytes(colour), 2ULL * 65535 * 65535);
}

// A sample's sign is its highest stored bit, whatever stands above it.
TEST(PictureOf, ShiftsSignedSamplesToBeginAtZero) {
  FrameLayout layout = grey(3, 1, 8, 4, 5);
  layout.isSigned = true;
  int atZero = 0;
  const Picture picture = pictureOf(std::vector<unsigned char>{0xE0, 0xC3 | 0x1C, 0x04}, layout, atZero);
  EXPECT_EQ(atZero, -8);
  EXPECT_THAT(picture.pixels, ElementsAre(0, 15, 9));  // -8, 7, 1
  EXPECT_EQ(picture.bitsPerPixel, 4);
}

TEST(PictureOf, LooksSignedIndicesUp) {
  FrameLayout layout = grey(4, 1, 8, 8, 7);
  layout.model = ColourModel::Palette;
  layout.isSigned = true;
  const Palette palette{-2, {{{1, 2}, {3}, {5, 6, 7}}}};
  EXPECT_THAT(pictureOf(std::vector<unsigned char>{0x80, 0xFE, 0xFF, 0x7F}, layout, palette).pixels,
              ElementsAre(1, 3, 5, 1, 3, 5, 2, 3, 6, 2, 3, 7));
}

}  // namespace
