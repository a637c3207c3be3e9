#include "driver/magick_image.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/cli_jpg.h"

namespace {

class MagickImage : public testing::Test {
 protected:
  static void SetUpTestSuite() { ei4::test::startMagickCore(); }
};

}  // namespace

TEST_F(MagickImage, DescribesThePictureToBeWritten) {
  const auto info = ei4::makeImageInfo(CSize(640, 480), 8);
  EXPECT_STREQ(info->size, "640x480");
  EXPECT_EQ(info->interlace, NoInterlace);
  EXPECT_EQ(info->depth, 8U);
}

TEST_F(MagickImage, TakesSamplesAsTheyAre) {
  const std::vector<unsigned char> samples = {1, 2, 3, 250, 251, 252};
  ExceptionInfo* exception = AcquireExceptionInfo();
  for (const auto& [map, size] : {std::pair{"I", CSize(3, 2)}, std::pair{"RGB", CSize(2, 1)}}) {
    const auto image = ei4::constitute(size, map, samples.data());
    ASSERT_NE(image, nullptr);
    std::vector<unsigned char> back(samples.size());
    ExportImagePixels(image.get(), 0, 0, image->columns, image->rows, map, CharPixel, back.data(), exception);
    EXPECT_EQ(back, samples);
  }
  DestroyExceptionInfo(exception);
}

TEST_F(MagickImage, IsNotMadeWithoutPixels) {
  const unsigned char sample = 0;
  for (const CSize size : {CSize(0, 1), CSize(1, 0), CSize(-1, 1), CSize(1, -1)}) {
    EXPECT_EQ(ei4::constitute(size, "I", &sample), nullptr) << size.cx << 'x' << size.cy;
  }
}

TEST_F(MagickImage, NamesAreNoCommands) {
  ei4::NameField field;
  EXPECT_TRUE(ei4::setName(field, "", "|touch x.png"));
  EXPECT_STREQ(field, "./|touch x.png");
  EXPECT_TRUE(ei4::setName(field, "GRAY:", "|touch x"));
  EXPECT_STREQ(field, "GRAY:./|touch x");
  EXPECT_TRUE(ei4::setName(field, "", "a|b.png"));
  EXPECT_STREQ(field, "a|b.png");
}

TEST_F(MagickImage, NamesAreTakenWholeOrNotAtAll) {
  ei4::NameField field;
  EXPECT_TRUE(ei4::setName(field, "", "a.png"));
  EXPECT_STREQ(field, "a.png");
  EXPECT_TRUE(ei4::setName(field, "GRAY:", "a%d.raw"));
  EXPECT_STREQ(field, "GRAY:a%d.raw");
  EXPECT_FALSE(ei4::setName(field, "GRAY:", nullptr));

  const std::string longest(sizeof field - 1, 'x');
  EXPECT_TRUE(ei4::setName(field, "", longest.c_str()));
  EXPECT_EQ(field, longest);
  EXPECT_FALSE(ei4::setName(field, "", (longest + "x").c_str()));
  EXPECT_FALSE(ei4::setName(field, "y", longest.c_str()));
}
