#include "driver/jpg_writer.h"

#include <gtest/gtest.h>
#include <magick/MagickCore.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "support/cli_jpg.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Bytes;
using ei4::test::decodeJpg;

// A slanted ramp: smooth, so that a JPEG stays close to it, and different in each corner.
Bytes ramp(int width, int height, int components) {
  Bytes pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < components; ++c) {
        pixels.push_back(static_cast<unsigned char>(c == 1 ? 255 - 2 * x : x + y + 20 * c));
      }
    }
  }
  return pixels;
}

// Makes a folder the current one for a while.
class InFolder {
 public:
  explicit InFolder(const std::string& path) : m_before(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~InFolder() { std::filesystem::current_path(m_before); }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;

 private:
  std::filesystem::path m_before;
};

class JpgWriter : public testing::Test {
 protected:
  static void SetUpTestSuite() { ei4::test::startMagickCore(); }

  static std::unique_ptr<CDicomImage> imageOf(COLOR_TYPE type, int width, int height, const Bytes& pixels) {
    auto image = CreateDicomImage(type);
    EXPECT_EQ(image->Create(width, height), 1);
    if (!pixels.empty()) std::memcpy(image->m_pBuffer, pixels.data(), image->m_nBufferSize);
    return image;
  }

  int compress(const CDicomImage& image, unsigned int quality) const {
    return jpgCompress(&image, folder.path("out.jpg").c_str(), quality);
  }

  // The path of a file, made longer without becoming another one.
  std::string behindSlashes(std::size_t slashes, const std::string& name) const {
    return folder.path("").append(slashes, '/').append(name);
  }

  static void expectClose(const Bytes& decoded, const Bytes& pixels, std::size_t components) {
    ASSERT_EQ(decoded.size(), pixels.size() / components * 3);
    for (std::size_t i = 0; i < decoded.size(); ++i) {
      const int wanted = components == 3 ? pixels[i] : pixels[i / 3];
      ASSERT_NEAR(decoded[i], wanted, 4) << i;
    }
  }

  ei4::test::TempFolder folder;
};

}  // namespace

TEST_F(JpgWriter, WritesGreyAsOneComponent) {
  const Bytes pixels = ramp(64, 48, 1);
  ASSERT_EQ(compress(*imageOf(COLOR_TYPE_M08, 64, 48, pixels), 95), 1);
  const auto jpg = decodeJpg(folder.path("out.jpg"));
  EXPECT_EQ(jpg.width, 64U);
  EXPECT_EQ(jpg.height, 48U);
  EXPECT_EQ(jpg.components, 1);
  expectClose(jpg.pixels, pixels, 1);
}

TEST_F(JpgWriter, WritesColourAsThreeComponents) {
  const Bytes pixels = ramp(64, 48, 3);
  ASSERT_EQ(compress(*imageOf(COLOR_TYPE_C08, 64, 48, pixels), 98), 1);
  const auto jpg = decodeJpg(folder.path("out.jpg"));
  EXPECT_EQ(jpg.components, 3);
  expectClose(jpg.pixels, pixels, 3);
}

TEST_F(JpgWriter, WritesWhatTheLibraryWouldFromConstitutedPixels) {
  const Bytes pixels = ramp(70, 30, 1);
  ASSERT_EQ(compress(*imageOf(COLOR_TYPE_M08, 70, 30, pixels), 80), 1);

  ExceptionInfo* exception = AcquireExceptionInfo();
  ImageInfo* info = AcquireImageInfo();
  CloneString(&info->size, "70x30");
  info->interlace = NoInterlace;
  info->depth = 8;
  Image* image = ConstituteImage(70, 30, "I", CharPixel, pixels.data(), exception);
  ASSERT_NE(image, nullptr);
  std::strcpy(image->filename, folder.path("library.jpg").c_str());
  info->quality = image->quality = 80;
  WriteImage(info, image);
  DestroyImage(image);
  DestroyImageInfo(info);
  DestroyExceptionInfo(exception);
  EXPECT_EQ(folder.read("out.jpg"), folder.read("library.jpg"));
}

TEST_F(JpgWriter, FollowsTheQuality) {
  const auto image = imageOf(COLOR_TYPE_C08, 64, 64, ramp(64, 64, 3));
  ASSERT_EQ(compress(*image, 10), 1);
  const std::size_t coarse = folder.read("out.jpg").size();
  EXPECT_TRUE(decodeJpg(folder.path("out.jpg")).subsampled);
  ASSERT_EQ(compress(*image, 100), 1);
  EXPECT_GT(folder.read("out.jpg").size(), coarse);
  EXPECT_FALSE(decodeJpg(folder.path("out.jpg")).subsampled);
}

TEST_F(JpgWriter, RefusesOtherNames) {
  const auto image = imageOf(COLOR_TYPE_M08, 8, 8, ramp(8, 8, 1));
  EXPECT_EQ(jpgCompress(image.get(), folder.path("out.jpeg").c_str(), 90), 0);
  EXPECT_EQ(jpgCompress(image.get(), nullptr, 90), 0);
  const auto raw = folder.write("in.raw", ramp(8, 8, 1));
  EXPECT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(8, 8), folder.path("out.jpeg").c_str(), 90),
            0);
  EXPECT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(8, 8), nullptr, 90), 0);
  EXPECT_FALSE(folder.has("out.jpeg"));
}

TEST_F(JpgWriter, RefusesNamesThatTheLibraryWouldCut) {
  const auto image = imageOf(COLOR_TYPE_M08, 8, 8, ramp(8, 8, 1));
  const auto raw = folder.write("in.raw", ramp(8, 8, 1));
  const std::string out = behindSlashes(5000, "out.jpg");
  EXPECT_EQ(jpgCompress(image.get(), out.c_str(), 90), 0);
  EXPECT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(8, 8), out.c_str(), 90), 0);
  const std::string in = behindSlashes(4096 - 5, "in.raw");
  EXPECT_EQ(jpgCompressFile(in.c_str(), COLOR_TYPE_M08, CSize(8, 8), folder.path("out.jpg").c_str(), 90), 0);
  EXPECT_EQ(jpgCompressFile(nullptr, COLOR_TYPE_M08, CSize(8, 8), folder.path("out.jpg").c_str(), 90), 0);
}

TEST_F(JpgWriter, WritesAJpgOfExactlyTheAskedName) {
  const auto image = imageOf(COLOR_TYPE_M08, 64, 48, ramp(64, 48, 1));
  ASSERT_EQ(compress(*image, 90), 1);
  const Bytes ordinary = folder.read("out.jpg");
  std::filesystem::remove(folder.path("out.jpg"));
  const ei4::test::TempFolder input;
  const auto raw = input.write("in.raw", ramp(64, 48, 1));

  const InFolder inside(folder.path(""));
  for (const std::string name :
       {".jpg",      "C:x.jpg",       "png:z.jpg",     "jpg:.jpg",    "a:b:c.jpg",
        "-.jpg",     "fd:1.jpg",      "|cat>pipe.jpg", "@x.jpg",      "%d.jpg",
        "%03d.jpg",  "%.jpg",         "%%.jpg",        "%%%.jpg",     "100%_%s%d%u%[x]%n.jpg",
        "x[0].jpg",  "x[0]%.jpg",     "~.jpg",         "a b*?.jpg",   "x.png.jpg",
        "x.jpg.jpg", "x.gz.jpg",      "jpg.jpg",       "..jpg",       "-x.jpg",
        "0.jpg",     "A-1_b.PNG.jpg", "print.jpg",     "\xc3\xa4.jpg"}) {
    for (const std::string& path : {name, "./" + name, folder.path(name)}) {
      ASSERT_EQ(jpgCompress(image.get(), path.c_str(), 90), 1) << path;
      EXPECT_EQ(folder.read(name), ordinary) << path;
      std::filesystem::remove(folder.path(name));
      ASSERT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(64, 48), path.c_str(), 90), 1) << path;
      EXPECT_EQ(folder.read(name), ordinary) << path;
      std::filesystem::remove(folder.path(name));
      EXPECT_TRUE(folder.empty()) << path;
    }
  }
}

TEST_F(JpgWriter, TakesNamesUpToTheLibrarysLimit) {
  const auto image = imageOf(COLOR_TYPE_M08, 8, 8, ramp(8, 8, 1));
  constexpr std::size_t kLongest = MaxTextExtent - 1 - 4;  // "jpg:" comes in front
  for (const std::string& name : {std::string("out.jpg"), std::string(200, '%') + ".jpg"}) {
    const std::size_t percents = name.size() > 100 ? 200 : 0;
    const std::size_t slashes = kLongest - folder.path("").size() - name.size() - percents;
    EXPECT_EQ(jpgCompress(image.get(), behindSlashes(slashes + 1, name).c_str(), 90), 0);
    EXPECT_TRUE(folder.empty());
    EXPECT_EQ(jpgCompress(image.get(), behindSlashes(slashes, name).c_str(), 90), 1);
    EXPECT_TRUE(folder.has(name));
    std::filesystem::remove(folder.path(name));
  }
}

TEST_F(JpgWriter, RefusesSixteenBitPixels) {
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M16, 8, 8, ramp(16, 8, 1)), 90), 0);
}

TEST_F(JpgWriter, RefusesSidesThatTheLibraryCannotTake) {
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M08, 0, 8, {}), 90), 0);
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M08, 8, 0, {}), 90), 0);
  const auto tooWide = static_cast<int>(GetMagickResourceLimit(WidthResource)) + 1;
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M08, tooWide, 1, Bytes(static_cast<std::size_t>(tooWide))), 90), 0);
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M08, 1, tooWide, Bytes(static_cast<std::size_t>(tooWide))), 90), 0);
}

TEST_F(JpgWriter, TakesSidesUpToTheLibrarysLimits) {
  const MagickSizeType widest = GetMagickResourceLimit(WidthResource);
  const MagickSizeType highest = GetMagickResourceLimit(HeightResource);
  SetMagickResourceLimit(WidthResource, 30);
  SetMagickResourceLimit(HeightResource, 20);
  EXPECT_TRUE(JpgTakes(CSize(30, 20)));
  EXPECT_TRUE(JpgTakes(CSize(1, 1)));
  for (const CSize size :
       {CSize(31, 1), CSize(1, 21), CSize(0, 1), CSize(1, 0), CSize(-1, 1), CSize(1, -1)}) {
    EXPECT_FALSE(JpgTakes(size)) << size.cx << 'x' << size.cy;
  }
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M08, 30, 20, ramp(30, 20, 1)), 90), 1) << "the library agrees";
  const auto raw = folder.write("in.raw", ramp(30, 20, 1));
  EXPECT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(30, 20), folder.path("out.jpg").c_str(), 90),
            1);
  SetMagickResourceLimit(WidthResource, widest);
  SetMagickResourceLimit(HeightResource, highest);
}

TEST_F(JpgWriter, RefusesMorePixelsThanTheLibraryMayHold) {
  const MagickSizeType disk = GetMagickResourceLimit(DiskResource);
  const MagickSizeType memory = GetMagickResourceLimit(MemoryResource);
  const MagickSizeType map = GetMagickResourceLimit(MapResource);
  SetMagickResourceLimit(MemoryResource, 1000);
  SetMagickResourceLimit(MapResource, 1000);
  SetMagickResourceLimit(DiskResource, 1000);
  EXPECT_EQ(compress(*imageOf(COLOR_TYPE_M08, 100, 100, ramp(100, 100, 1)), 90), 0);
  SetMagickResourceLimit(MemoryResource, memory);
  SetMagickResourceLimit(MapResource, map);
  SetMagickResourceLimit(DiskResource, disk);
  EXPECT_FALSE(folder.has("out.jpg"));
}

TEST_F(JpgWriter, SucceedsEvenWhenTheFileCannotBeWritten) {
  const auto image = imageOf(COLOR_TYPE_M08, 8, 8, ramp(8, 8, 1));
  EXPECT_EQ(jpgCompress(image.get(), folder.path("none/out.jpg").c_str(), 90), 1);
  const auto raw = folder.write("in.raw", ramp(8, 8, 1));
  EXPECT_EQ(
      jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(8, 8), folder.path("none/out.jpg").c_str(), 90), 1);
}

TEST_F(JpgWriter, ConvertsGreyFiles) {
  const Bytes pixels = ramp(40, 20, 1);
  const auto raw = folder.write("in.raw", pixels);
  ASSERT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(40, 20), folder.path("out.jpg").c_str(), 95),
            1);
  const auto jpg = decodeJpg(folder.path("out.jpg"));
  EXPECT_EQ(jpg.width, 40U);
  EXPECT_EQ(jpg.height, 20U);
  EXPECT_EQ(jpg.components, 1);
  expectClose(jpg.pixels, pixels, 1);
}

TEST_F(JpgWriter, ConvertsColourFiles) {
  const Bytes pixels = ramp(40, 20, 3);
  const auto raw = folder.write("in.raw", pixels);
  ASSERT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_C08, CSize(40, 20), folder.path("out.jpg").c_str(), 98),
            1);
  const auto jpg = decodeJpg(folder.path("out.jpg"));
  EXPECT_EQ(jpg.components, 3);
  expectClose(jpg.pixels, pixels, 3);
}

TEST_F(JpgWriter, ScalesSixteenBitFilesDown) {
  Bytes pixels;
  for (int i = 0; i < 64 * 8; ++i) {
    pixels.push_back(0);  // low byte first
    pixels.push_back(static_cast<unsigned char>(i % 64 * 4));
  }
  const auto raw = folder.write("in.raw", pixels);
  ASSERT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M16, CSize(64, 8), folder.path("out.jpg").c_str(), 98),
            1);
  const auto jpg = decodeJpg(folder.path("out.jpg"));
  ASSERT_EQ(jpg.pixels.size(), 64UL * 8 * 3);
  EXPECT_NEAR(jpg.pixels[0], 0, 4);
  EXPECT_NEAR(jpg.pixels[3UL * 40], 160, 4);
}

TEST_F(JpgWriter, FollowsTheQualityForFiles) {
  const auto raw = folder.write("in.raw", ramp(64, 64, 3));
  ASSERT_EQ(
      jpgCompressFile(raw.c_str(), COLOR_TYPE_C08, CSize(64, 64), folder.path("coarse.jpg").c_str(), 10), 1);
  ASSERT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_C08, CSize(64, 64), folder.path("fine.jpg").c_str(), 100),
            1);
  EXPECT_LT(folder.read("coarse.jpg").size(), folder.read("fine.jpg").size());
}

TEST_F(JpgWriter, ConvertsTheFirstOfSeveralPicturesInAFile) {
  const ei4::test::TempFolder output;
  Bytes pixels = ramp(32, 32, 1);
  pixels.resize(3 * pixels.size() + 10, 0);
  const auto raw = folder.write("in.raw", pixels);
  ASSERT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(32, 32), output.path("out.jpg").c_str(), 95),
            1);
  pixels.resize(32UL * 32);
  expectClose(decodeJpg(output.path("out.jpg")).pixels, pixels, 1);
  std::filesystem::remove(output.path("out.jpg"));
  EXPECT_TRUE(output.empty());  // no out-0.jpg, out-1.jpg
}

TEST_F(JpgWriter, RefusesFilesThatAreShortOrMissing) {
  const auto out = folder.path("out.jpg");
  const auto raw = folder.write("in.raw", ramp(8, 8, 1));
  EXPECT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, CSize(8, 9), out.c_str(), 90), 0);
  EXPECT_EQ(jpgCompressFile(folder.path("none.raw").c_str(), COLOR_TYPE_M08, CSize(8, 8), out.c_str(), 90),
            0);
  EXPECT_EQ(jpgCompressFile(folder.path(".").c_str(), COLOR_TYPE_M08, CSize(8, 8), out.c_str(), 90), 0);
  EXPECT_FALSE(folder.has("out.jpg"));
}

TEST_F(JpgWriter, RefusesSizesThatNoFileHas) {
  const auto out = folder.path("out.jpg");
  const auto raw = folder.write("in.raw", ramp(8, 8, 1));
  constexpr long kWraps = (1L << 32) + 8;  // 8 in the low 32 bits
  for (const CSize size : {CSize(0, 0), CSize(0, 8), CSize(8, 0), CSize(-8, 8), CSize(8, -8),
                           CSize(2000000000, 1), CSize(1, 2000000000), CSize(tagSIZE{kWraps, 8}),
                           CSize(tagSIZE{8, kWraps}), CSize(tagSIZE{-kWraps, 8})}) {
    EXPECT_EQ(jpgCompressFile(raw.c_str(), COLOR_TYPE_M08, size, out.c_str(), 90), 0)
        << size.cx << 'x' << size.cy;
  }
  EXPECT_FALSE(folder.has("out.jpg"));
}
