#include "driver/report_picture.h"

#include <gtest/gtest.h>
#include <magick/MagickCore.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "annotation/annotation_set.h"
#include "driver/read_annotation.h"
#include "picture_file.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Bytes;
using ei4::test::pixelAt;
using ei4::test::readPicture;

constexpr int kWidth = 60;
constexpr int kHeight = 50;
constexpr const char* kRuler =
    "sized 60 50 0 0\nlight 256 128 0 0\nruler 1 ff 10 20 0 0 0 0 0 0 | 40 20 5mm\n";

class ReportPicture : public testing::Test {
 protected:
  static void SetUpTestSuite() { ei4::test::startMagickCore(); }

  ReportPicture() {
    grey = imageOf(COLOR_TYPE_M08);
    set.m_sizeClip = CSize(kWidth, kHeight);
  }

  static std::unique_ptr<CDicomImage> imageOf(COLOR_TYPE type) {
    auto image = CreateDicomImage(type);
    EXPECT_EQ(image->Create(kWidth, kHeight), 1);
    for (unsigned int i = 0; i < image->m_nBufferSize; ++i) {
      image->m_pBuffer[i] = static_cast<unsigned char>(40 + i % 83);
    }
    return image;
  }

  void addRuler() {
    const auto report =
        input.write("report.txt", {reinterpret_cast<const unsigned char*>(kRuler), std::strlen(kRuler)});
    ASSERT_EQ(ReadAnnotation(set, report.c_str(), CSize(kWidth, kHeight)), 1);
  }

  void write(const CDicomImage& image, const std::string& name,
             std::optional<unsigned int> quality = std::nullopt) {
    WriteReportPicture(image, set, folder.path(name).c_str(), quality);
  }

  static Bytes pixelsOf(const CDicomImage& image) {
    return Bytes(image.m_pBuffer, image.m_pBuffer + image.m_nBufferSize);
  }

  ei4::test::TempFolder folder;
  ei4::test::TempFolder input;
  CAnnotationSet set;
  std::unique_ptr<CDicomImage> grey;
};

}  // namespace

TEST_F(ReportPicture, WithoutAnnotationsIsThePaintedImage) {
  write(*grey, "grey.png");
  const auto picture = readPicture(folder.path("grey.png"));
  EXPECT_EQ(picture.format, "PNG");
  EXPECT_EQ(picture.width, static_cast<unsigned long>(kWidth));
  EXPECT_EQ(picture.height, static_cast<unsigned long>(kHeight));
  EXPECT_EQ(picture.pixels, ei4::test::inColour(pixelsOf(*grey)));

  const auto colour = imageOf(COLOR_TYPE_C08);
  write(*colour, "colour.png");
  EXPECT_EQ(readPicture(folder.path("colour.png")).pixels, pixelsOf(*colour));
}

TEST_F(ReportPicture, ShowsTheAnnotations) {
  addRuler();
  write(*grey, "out.png");
  const auto picture = readPicture(folder.path("out.png"));
  ASSERT_EQ(picture.pixels.size(), 3 * pixelsOf(*grey).size());
  const unsigned char* red = pixelAt(picture, 25, 20);  // the ruler's, from (10, 20) to (40, 20)
  EXPECT_GT(red[0], 200);
  EXPECT_LT(red[1], 60);
  EXPECT_LT(red[2], 60);
  for (const auto& [x, y] : {std::pair{0UL, 0UL}, std::pair{59UL, 49UL}, std::pair{25UL, 45UL}}) {
    EXPECT_EQ(*pixelAt(picture, x, y), grey->m_pBuffer[y * kWidth + x]) << x << ' ' << y;
  }
}

TEST_F(ReportPicture, HasNoAlphaChannel) {
  addRuler();
  for (const std::string name : {"out.png", "out.bmp", "out.tif", "out.miff"}) {
    write(*grey, name);
    EXPECT_EQ(readPicture(folder.path(name)).width, static_cast<unsigned long>(kWidth)) << name;
    EXPECT_FALSE(readPicture(folder.path(name)).alpha) << name;
  }
}

TEST_F(ReportPicture, IsWrittenInTheFormatOfTheExtension) {
  for (const auto& [name, format] :
       {std::pair{"a.png", "PNG"}, std::pair{"a.PNG", "PNG"}, std::pair{"a.jpeg", "JPEG"},
        std::pair{"a.gif", "GIF"}, std::pair{"a.bmp", "BMP"}, std::pair{"a.tif", "TIFF"}}) {
    write(*grey, name);
    EXPECT_EQ(readPicture(folder.path(name)).format, format) << name;
  }
}

TEST_F(ReportPicture, IsMiffUnderAnyOtherName) {
  for (const std::string name : {"a", "a.raw", "a.unheard-of"}) {
    write(*grey, name);
    EXPECT_EQ(readPicture(folder.path(name)).format, "MIFF") << name;
  }
}

TEST_F(ReportPicture, LeavesTheJpegOfAGreyPictureGrey) {
  write(*grey, "grey.jpg", 95);
  EXPECT_EQ(ei4::test::decodeJpg(folder.path("grey.jpg")).components, 1);

  addRuler();
  write(*grey, "drawn.jpg", 95);
  EXPECT_EQ(ei4::test::decodeJpg(folder.path("drawn.jpg")).components, 3);
}

TEST_F(ReportPicture, FollowsTheQuality) {
  const auto colour = imageOf(COLOR_TYPE_C08);
  write(*colour, "coarse.jpg", 10);
  write(*colour, "fine.jpg", 100);
  EXPECT_LT(folder.read("coarse.jpg").size(), folder.read("fine.jpg").size());
  EXPECT_TRUE(ei4::test::decodeJpg(folder.path("coarse.jpg")).subsampled);
  EXPECT_FALSE(ei4::test::decodeJpg(folder.path("fine.jpg")).subsampled);
}

TEST_F(ReportPicture, HasTheLibrarysQualityWithoutOne) {
  const auto colour = imageOf(COLOR_TYPE_C08);
  write(*colour, "none.jpeg");
  write(*colour, "default.jpeg", 92);
  EXPECT_EQ(folder.read("none.jpeg"), folder.read("default.jpeg"));
}

TEST_F(ReportPicture, LeavesOutWhatCannotBeNamed) {
  WriteReportPicture(*grey, set, nullptr, 90);
  const auto behindSlashes = [this](std::size_t length) {
    const std::string front = folder.path("");
    const std::string name = "out.png";
    return front + std::string(length - front.size() - name.size(), '/') + name;
  };
  WriteReportPicture(*grey, set, behindSlashes(MaxTextExtent).c_str(), 90);
  EXPECT_TRUE(folder.empty());
  WriteReportPicture(*grey, set, behindSlashes(MaxTextExtent - 1).c_str(), 90);
  EXPECT_TRUE(folder.has("out.png"));
}

TEST_F(ReportPicture, LeavesOutWhatCannotBeWritten) {
  write(*grey, "none/out.png");
  std::filesystem::create_directory(folder.path("out.png"));
  write(*grey, "out.png");
  std::filesystem::remove(folder.path("out.png"));
  EXPECT_TRUE(folder.empty());
}

TEST_F(ReportPicture, TakesSidesWithinTheLibrarysLimitsOnly) {
  const MagickSizeType widest = GetMagickResourceLimit(WidthResource);
  const MagickSizeType highest = GetMagickResourceLimit(HeightResource);
  SetMagickResourceLimit(WidthResource, kWidth);
  SetMagickResourceLimit(HeightResource, kHeight);
  EXPECT_TRUE(ReportPictureTakes(CSize(kWidth, kHeight)));
  EXPECT_TRUE(ReportPictureTakes(CSize(1, 1)));
  for (const CSize size : {CSize(kWidth + 1, 1), CSize(1, kHeight + 1), CSize(0, 1), CSize(1, 0),
                           CSize(-1, 1), CSize(1, -1), CSize(tagSIZE{1L << 32 | 1, 1})}) {
    EXPECT_FALSE(ReportPictureTakes(size)) << size.cx << 'x' << size.cy;
  }
  write(*grey, "just.png");
  SetMagickResourceLimit(WidthResource, kWidth - 1);
  write(*grey, "over.png");
  SetMagickResourceLimit(WidthResource, widest);
  SetMagickResourceLimit(HeightResource, highest);
  EXPECT_TRUE(folder.has("just.png"));
  EXPECT_FALSE(folder.has("over.png"));
}
