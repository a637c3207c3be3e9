#include "driver/report_image.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "draw/drawing_globals.h"
#include "report_fixture.h"

namespace {

using ei4::test::Bytes;
using ei4::test::PaintRequest;
using ei4::test::PictureFile;
using ei4::test::pictureOf;
using ei4::test::pixelAt;
using ei4::test::requestFor;
using ei4::test::windowTable;
using ReportImage = ei4::test::ReportImageTest;

// `text` with other words for each A and B.
std::string filledIn(const std::string& text, const std::string& a, const std::string& b) {
  std::string filled;
  for (const char c : text) {
    filled += c == 'A' ? a : c == 'B' ? b : std::string(1, c);
  }
  return filled;
}

}  // namespace

TEST_F(ReportImage, RefusesAJpgWithoutAQuality) {
  out = output.path("out.jpg");
  pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
  EXPECT_EQ(make(), 0);
  EXPECT_TRUE(output.empty());
  EXPECT_NE(pImageFromEI4, nullptr);
}

TEST_F(ReportImage, NeedsAQualityForNoOtherName) {
  for (const std::string name : {"out.jpeg", "out.JPG", "out.jpg.png"}) {
    out = output.path(name);
    EXPECT_EQ(make(), 1);
    EXPECT_TRUE(output.has(name));
  }
}

TEST_F(ReportImage, WritesAJpgWithAQuality) {
  out = output.path("out.jpg");
  hasQuality = 1;
  const PictureFile picture = made();
  EXPECT_EQ(picture.format, "JPEG");
  EXPECT_EQ(picture.width, 40U);
  EXPECT_EQ(picture.height, 30U);
}

TEST_F(ReportImage, SucceedsWithoutAnImage) {
  in = input.path("none.raw");
  expectNothingWritten();
  EXPECT_EQ(CreateReportImageFile(nullptr, COLOR_TYPE_M08, CSize(40, 30), out.c_str(), box, 0, 0,
                                  report.c_str(), 0, 1),
            1);
  EXPECT_EQ(CreateReportImageFile(in.c_str(), COLOR_TYPE_M08, CSize(-1, 30), out.c_str(), box, 0, 0,
                                  report.c_str(), 0, 1),
            1);
  EXPECT_TRUE(output.empty());
}

TEST_F(ReportImage, SucceedsWithoutAReport) {
  for (const std::string& path :
       {input.path("none.txt"), input.path("."), input.write("empty.txt", Bytes{})}) {
    report = path;
    expectNothingWritten();
  }
  EXPECT_EQ(
      CreateReportImageFile(in.c_str(), COLOR_TYPE_M08, CSize(40, 30), out.c_str(), box, 0, 0, nullptr, 0, 1),
      1);
  EXPECT_TRUE(output.empty());
}

TEST_F(ReportImage, SucceedsWithoutAnOutput) {
  out = output.path("none/out.png");
  expectNothingWritten();
  out = output.path("").append(5000, '/').append("out.png");
  expectNothingWritten();
  EXPECT_EQ(CreateReportImageFile(in.c_str(), COLOR_TYPE_M08, CSize(40, 30), nullptr, box, 0, 0,
                                  report.c_str(), 0, 1),
            1);
}

TEST_F(ReportImage, SucceedsWithoutAViewThatShowsAnything) {
  for (const std::string view : {
           "sized 40 30 0 0\n",                                      // no "light" line
           "light 256 128 0 0\n",                                    // no "sized" line
           "sized 0 30 0 0\nlight 256 128 0 0\n",                    // displays without pixels
           "sized 40 -30 0 0\nlight 256 128 0 0\n",                  //
           "sized 0 30 0 0\nlight 256 128 0 0\nclip 1 0 0 9 9\n",    //
           "sized 40 30 0 8\nlight 256 128 0 0\n",                   // orientations that there are not
           "sized 40 30 0 -1\nlight 256 128 0 0\n",                  //
           "sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 0 9\n",   // clips without pixels
           "sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 9 -9\n",  //
           "sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 2147483647 9\n",  // clips beyond the library
           "sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 9 2147483647\n",  //
       }) {
    useReport(view);
    expectNothingWritten();
  }
}

TEST_F(ReportImage, SucceedsWithABoxThatHasNoPixels) {
  for (const CSize none : {CSize(0, 9), CSize(9, 0), CSize(-9, 9), CSize(9, -9), CSize(2147483647, 1),
                           CSize(tagSIZE{1L << 40, 1L << 40})}) {
    box = none;
    expectNothingWritten();
  }
}

TEST_F(ReportImage, SucceedsWhenTheBoxShrinksTheImageToNothing) {
  useReport("sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 9000 9000\n");
  box = CSize(100, 100);
  expectNothingWritten();  // 40 * 100 / 9000 pixels wide
}

TEST_F(ReportImage, SucceedsWithoutAPictureOfMoreThan60Megapixels) {
  useReport("sized 7500 8001 0 0\nlight 256 128 0 0\nclip 1 0 0 7500 8001\n");
  expectNothingWritten();
  box = CSize(40, 30);
  EXPECT_EQ(made().width, 40U);
}

TEST_F(ReportImage, SucceedsWithoutAPictureThatTakesTooMuchDrawing) {
  const std::string view = "sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 40 30\n";
  const std::string oval = "oval_x 1 ff 1 1 0 0 9 9 9 9 0 | 16000 3 x\n";  // an outline of 64,000 pixels
  useReport(view + oval);
  EXPECT_EQ(made().width, 40U);
  std::filesystem::remove(out);

  std::string ovals;
  for (int i = 0; i < 500; ++i) ovals += oval;
  useReport(view + ovals);
  expectNothingWritten();
}

TEST_F(ReportImage, DestroysTheDecodedImageWhateverTheReportIs) {
  for (const std::string view :
       {"sized 40 30 0 0\n", "sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 0 9\n"}) {
    useReport(view);
    pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
    expectNothingWritten();
    EXPECT_EQ(pImageFromEI4, nullptr);
  }
}

TEST_F(ReportImage, SucceedsForAnImageWithoutPixels) {
  source.cx = 0;
  expectNothingWritten();
}

TEST_F(ReportImage, ConsumesTheDecodedInput) {
  pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
  ASSERT_EQ(pImageFromEI4->Create(40, 30), 1);
  std::memset(pImageFromEI4->m_pBuffer, 77, pImageFromEI4->m_nBufferSize);
  const PictureFile picture = made();
  EXPECT_EQ(pImageFromEI4, nullptr);
  // 77 * 255 / 256 = 76; the raw file is not looked at.
  EXPECT_EQ(picture.pixels, Bytes(3UL * 40 * 30, 76));
}

TEST_F(ReportImage, ConsumesTheDecodedInputWithoutAReportToo) {
  pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
  report = input.path("none.txt");
  expectNothingWritten();
  EXPECT_EQ(pImageFromEI4, nullptr);
}

class ReportImageOf : public ReportImage, public testing::WithParamInterface<std::tuple<COLOR_TYPE, int>> {};

TEST_P(ReportImageOf, IsPaintedInTheReportedView) {
  const auto [format, orientation] = GetParam();
  useRaw(pictureOf(format, 40, 30));
  const bool upright = orientation % 2 != 0;
  const int entries = format == COLOR_TYPE_M16 ? 65536 : 256;
  // Shown at three halves of its size, moved and clipped on all sides.
  useReport(std::string(upright ? "sized 45 60 0 " : "sized 60 45 0 ") + std::to_string(orientation) +
            "\nlight " + std::to_string(entries / 2) + " " + std::to_string(entries / 2) +
            " 0 0\nclip 1.5 -3 -5 37 33\n");
  PaintRequest request =
      requestFor(source, CSize(37, 33), windowTable(entries, entries / 4, entries * 3 / 4));
  request.offsetX = -3;
  request.offsetY = -5;
  request.shownX = upright ? 45 : 60;
  request.shownY = upright ? 60 : 45;
  request.orientation = static_cast<ORIENTATION>(orientation);
  expectPainted(request);
}

INSTANTIATE_TEST_SUITE_P(EveryFormatAndOrientation, ReportImageOf,
                         testing::Combine(testing::Values(COLOR_TYPE_C08, COLOR_TYPE_M08, COLOR_TYPE_M16),
                                          testing::Range(0, 8)));

TEST_F(ReportImage, IsReducedByAveraging) {
  useReport("sized 27 19 0 0\nlight 256 128 0 0\nclip 1 0 0 27 19\n");
  expectPainted(requestFor(source, CSize(27, 19), windowTable(256, 0, 256)));
}

TEST_F(ReportImage, IsBlackBesideTheImage) {
  useReport("sized 40 30 0 0\nlight 256 128 1 0\nclip 1 10 20 100 90\n");
  PaintRequest request = requestFor(source, CSize(100, 90), windowTable(256, 0, 256, true));
  request.offsetX = 10;
  request.offsetY = 20;
  request.shownX = 40;
  request.shownY = 30;
  expectPainted(request);
}

TEST_F(ReportImage, IsBlackWhenTheImageLiesOutsideItsClip) {
  useReport("sized 40 30 0 0\nlight 256 128 0 0\nclip 1 500 -2147483648 20 10\n");
  const PictureFile picture = made();
  EXPECT_EQ(picture.pixels, Bytes(3UL * 20 * 10, 0));
}

TEST_F(ReportImage, TakesTheFittedPlaceInFitMode) {
  // The clip that counts for the place is the one before the line: 256 x 256. (257 - 40) / 2 and (257 - 30) / 2.
  useReport("sized 40 30 1 0\nlight 256 128 0 0\nclip 1 3 4 200 190\n");
  PaintRequest request = requestFor(source, CSize(200, 190), windowTable(256, 0, 256));
  request.offsetX = 108;
  request.offsetY = 113;
  request.shownX = 40;
  request.shownY = 30;
  expectPainted(request);
}

TEST_F(ReportImage, IsFittedInto128PixelsWithoutAClip) {
  useReport("sized 400 200 0 0\nlight 256 128 0 0\n");
  PaintRequest request = requestFor(source, CSize(128, 128), windowTable(256, 0, 256));
  request.offsetY = 32;
  request.shownY = 64;
  expectPainted(request);
}

TEST_F(ReportImage, IsFittedIntoTheBoxWithoutAClip) {
  useReport("sized 400 400 0 0\nlight 256 128 0 0\n");
  box = CSize(200, 100);
  PaintRequest request = requestFor(source, CSize(200, 100), windowTable(256, 0, 256));
  request.offsetX = 50;
  request.shownX = 100;
  expectPainted(request);
}

TEST_F(ReportImage, FitsAReportedClipIntoTheBox) {
  // Shown at 160 x 120 with the middle of the clip 80 x 40 at (60, 50): halved, (30, 25) comes to (20, 30).
  useReport("sized 160 120 0 0\nlight 256 128 0 0\nclip 4 -20 -30 80 40\n");
  box = CSize(40, 60);
  PaintRequest request = requestFor(source, CSize(40, 60), windowTable(256, 0, 256));
  request.offsetX = -10;
  request.offsetY = 5;
  request.shownX = 80;
  request.shownY = 60;
  expectPainted(request);
}

TEST_F(ReportImage, TakesItsWindowFromTheReport) {
  nWindow = 10;  // of the command line
  nLevel = 5;
  bInvert = 1;
  bWL = 1;
  useReport("sized 40 30 0 0\nlight 100 90 0 0\nclip 1 0 0 40 30\n");
  expectPainted(requestFor(source, CSize(40, 30), windowTable(256, 40, 140)));
}

TEST_F(ReportImage, IsInvertedByTheReport) {
  useReport("sized 40 30 0 0\nlight 100 90 1 0\nclip 1 0 0 40 30\n");
  expectPainted(requestFor(source, CSize(40, 30), windowTable(256, 40, 140, true)));
}

TEST_F(ReportImage, TakesInterceptAndSlopeFromItsArguments) {
  useRaw(pictureOf(COLOR_TYPE_M16, 40, 30));
  dIntercept = 7;  // the settings are not looked at
  dSlope = 7;
  intercept = -1024;
  slope = 2;
  // From -160 to 240 in rescaled units, (-160 + 1024) / 2 and (240 + 1024) / 2 stored.
  useReport("sized 40 30 0 0\nlight 400 40 0 0\nclip 1 0 0 40 30\n");
  expectPainted(requestFor(source, CSize(40, 30), windowTable(65536, 432, 632)));
}

TEST_F(ReportImage, IsPaintedWithinTheRegionOfInterestOnly) {
  useReport("sized 40 30 0 0\nlight 256 128 1 0\nclip 1 0 0 40 30\nroi n 10 5 30 25\n");
  expectPainted(requestFor(source, CSize(40, 30), windowTable(256, 0, 256, true)));

  useReport("sized 40 30 0 0\nlight 1 1000 1 0\nclip 1 0 0 40 30\nroi y 10 5 30 25\n");  // all white
  const PictureFile picture = made();
  EXPECT_EQ(*pixelAt(picture, 20, 15), 255);
  EXPECT_EQ(*pixelAt(picture, 5, 15), 0);
  EXPECT_EQ(*pixelAt(picture, 35, 15), 0);
  EXPECT_EQ(*pixelAt(picture, 20, 2), 0);
  EXPECT_EQ(*pixelAt(picture, 20, 28), 0);
}

TEST_F(ReportImage, ShowsTheAnnotationsWhereTheViewPutsThem) {
  // Image points (10, 10) and (30, 10), doubled and moved by (5, 7), in green.
  useReport(
      "sized 80 60 0 0\nlight 1 1000 0 0\nclip 2 5 7 90 70\n"
      "ruler 1 ff00 10 10 0 0 0 0 0 0 | 30 10 x\n");
  const PictureFile picture = made();
  ASSERT_EQ(picture.width, 90U);
  EXPECT_GT(pixelAt(picture, 45, 27)[1], 200);
  EXPECT_LT(pixelAt(picture, 45, 27)[0], 60);
  EXPECT_EQ(pixelAt(picture, 45, 15)[1], 0);
  EXPECT_EQ(pixelAt(picture, 45, 50)[1], 0);
}

TEST_F(ReportImage, ShowsThePatientsOrientationAtTheEdges) {
  // All black but the letters; -geom moves the edges, so they must stand at those of the box.
  useReport("sized 40 30 0 0\nlight 1 1000 0 0\nclip 1 0 0 40 30\npatient_orientation 1 L F\n");
  box = CSize(160, 120);
  const PictureFile picture = made();
  if (FONT_WIDTH == 0) GTEST_SKIP() << "there is no font here";
  ASSERT_EQ(picture.width, 160U);
  const auto anyGreen = [&](unsigned long left, unsigned long top) {  // within 20 x 20 pixels
    for (auto y = top; y < top + 20; ++y) {
      for (auto x = left; x < left + 20; ++x) {
        if (pixelAt(picture, x, y)[1] > 100) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(anyGreen(0, 50));
  EXPECT_TRUE(anyGreen(140, 50));
  EXPECT_TRUE(anyGreen(70, 0));
  EXPECT_TRUE(anyGreen(70, 100));
  EXPECT_FALSE(anyGreen(70, 50));
}

TEST_F(ReportImage, SurvivesReportsOfAnyNumbers) {
  const std::vector<std::string> numbers = {
      "0", "-1", "2147483647", "-2147483648", "4294967297", "99999999999999999999", "nan", "1e308"};
  for (const std::string& a : numbers) {
    for (const std::string& b : numbers) {
      // The clip's size and the orientation are sound, so there is a picture.
      useReport(
          filledIn("sized 40 30 0 3\nlight A B 0 0\nclip A B A 60 50\nroi y A B B A\npixel A B\n"
                   "ruler 1 ff A 10 0 0 0 0 0 0 | 30 B x\n",
                   a, b));
      EXPECT_EQ(made().width, 60U) << a << ' ' << b;

      useReport(filledIn("sized A B 0 1\nlight 256 128 0 0\nclip 1 B A 60 50\n", a, b));
      EXPECT_EQ(make(), 1) << a << ' ' << b;
      box = CSize(70, 80);
      EXPECT_EQ(make(), 1) << a << ' ' << b;
      box = CSize(0, 0);
    }
  }
}
