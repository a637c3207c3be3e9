#include "driver/process.h"

#include <gtest/gtest.h>
#include <magick/MagickCore.h>

#include <cstring>
#include <memory>
#include <string>

#include "driver/convertab.h"
#include "settings_fixture.h"
#include "support/cli_jpg.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Bytes;
using ei4::test::decodeJpg;

// A request with the values that a plain grey copy has; each test changes what it is about.
struct Request {
  std::string in;
  std::string out;
  CSize source = CSize(40, 36);
  bool hasGeom = false;
  CSize geom = CSize(0, 0);
  COLOR_TYPE inType = COLOR_TYPE_M08;
  bool hasOutType = false;
  COLOR_TYPE outType = COLOR_TYPE_C08;
  bool table = false;
  int window = 256;
  int level = 128;
  double slope = 1.0;
  double intercept = 0.0;
  bool invert = false;
  bool hasQuality = false;
  unsigned int quality = 90;
};

class Process : public ei4::test::SettingsTest {
 protected:
  static void SetUpTestSuite() { ei4::test::startMagickCore(); }

  void SetUp() override {
    SettingsTest::SetUp();
    for (int i = 0; i < 40 * 36 * 3; ++i) pixels.push_back(static_cast<unsigned char>(i * 7));
    request.in = folder.write("in.bin", pixels);
    request.out = folder.path("out.raw");
  }

  int run() {
    written = CSize(-1, -1);
    return ProcessImage(request.in.c_str(), request.out.c_str(), request.source, request.hasGeom,
                        request.geom, request.inType, request.hasOutType, request.outType, request.table,
                        request.window, request.level, request.slope, request.intercept, request.invert,
                        written, 1, request.hasQuality, request.quality);
  }

  void askForJpg() {
    request.out = folder.path("out.jpg");
    request.hasQuality = true;
  }

  Bytes first(std::size_t count) const {
    return Bytes(pixels.begin(), pixels.begin() + static_cast<std::ptrdiff_t>(count));
  }

  static std::unique_ptr<CDicomImage> filled(COLOR_TYPE type, int width, int height, unsigned char value) {
    auto image = CreateDicomImage(type);
    EXPECT_EQ(image->Create(width, height), 1);
    std::memset(image->m_pBuffer, value, image->m_nBufferSize);
    return image;
  }

  ei4::test::TempFolder folder;
  Bytes pixels;
  Request request;
  CSize written = CSize(-1, -1);
};

}  // namespace

// Refusals, in their order.

TEST_F(Process, RefusesAJpgWithoutAQuality) {
  askForJpg();
  request.hasQuality = false;
  EXPECT_EQ(run(), 0);
  request.table = request.hasGeom = true;
  request.geom = CSize(40, 36);
  EXPECT_EQ(run(), 0);
  EXPECT_FALSE(folder.has("out.jpg"));
}

TEST_F(Process, RefusesM16IntoAJpg) {
  askForJpg();
  request.hasOutType = true;
  request.outType = COLOR_TYPE_M16;
  for (const COLOR_TYPE in : {COLOR_TYPE_M08, COLOR_TYPE_M16}) {
    for (const bool table : {false, true}) {
      request.inType = in;
      request.table = table;
      EXPECT_EQ(run(), 0) << in << table;
    }
  }
}

TEST_F(Process, RefusesSixteenBitsIntoAJpgWithoutTheTable) {
  askForJpg();
  request.inType = COLOR_TYPE_M16;
  EXPECT_EQ(run(), 0);
  request.hasGeom = true;
  request.geom = CSize(40, 36);
  EXPECT_EQ(run(), 0);
}

TEST_F(Process, RefusesAnotherFormatWithoutTheTable) {
  request.hasOutType = true;
  request.outType = COLOR_TYPE_C08;
  EXPECT_EQ(run(), 0);
  request.hasGeom = true;
  request.geom = CSize(40, 36);
  EXPECT_EQ(run(), 0);
  askForJpg();
  EXPECT_EQ(run(), 0);
}

TEST_F(Process, RefusesAPlainCopyToAnotherNameThanRaw) {
  request.out = folder.path("out.bin");
  EXPECT_EQ(run(), 0);
  request.out = folder.path("out.RAW");
  EXPECT_EQ(run(), 0);
  EXPECT_FALSE(folder.has("out.bin"));
}

TEST_F(Process, RefusesAnInputThatDoesNotOpen) {
  request.in = folder.path("none");
  EXPECT_EQ(run(), 0);
  request.hasGeom = true;
  request.geom = CSize(40, 36);
  EXPECT_EQ(run(), 0);
  request.table = true;
  EXPECT_EQ(run(), 0);
  askForJpg();
  EXPECT_EQ(run(), 0);
  request.table = request.hasGeom = false;
  EXPECT_EQ(run(), 0);
}

TEST_F(Process, RefusesNullPaths) {
  CSize size(0, 0);
  EXPECT_EQ(ProcessImage(nullptr, "x.raw", CSize(1, 1), 0, CSize(0, 0), COLOR_TYPE_M08, 0, COLOR_TYPE_C08, 0,
                         0, 0, 0, 0, 0, size, 1, 0, 0),
            0);
  EXPECT_EQ(ProcessImage(request.in.c_str(), nullptr, CSize(1, 1), 0, CSize(0, 0), COLOR_TYPE_M08, 0,
                         COLOR_TYPE_C08, 1, 256, 128, 1, 0, 0, size, 1, 0, 0),
            0);
}

TEST_F(Process, RefusesABoxThatNothingFits) {
  request.hasGeom = true;
  request.geom = CSize(-40, -36);
  EXPECT_EQ(run(), 0);
  request.geom = CSize(2000000000, 2000000000);
  EXPECT_EQ(run(), 0);
}

TEST_F(Process, RefusesAnOutputThatDoesNotOpen) {
  request.out = folder.path("none/out.raw");
  EXPECT_EQ(run(), 0);
}

TEST_F(Process, RefusesANegativeSize) {
  request.source = CSize(-40, -36);
  EXPECT_EQ(run(), 0);
}

TEST_F(Process, RefusesAJpgBeyondTheLibraryBeforeAnythingIsRead) {
  askForJpg();
  const MagickSizeType limit = GetMagickResourceLimit(WidthResource);
  SetMagickResourceLimit(WidthResource, 39);
  request.table = true;
  pImageFromEI4 = filled(COLOR_TYPE_M08, 40, 36, 77);
  EXPECT_EQ(run(), 0);
  EXPECT_NE(pImageFromEI4, nullptr);
  request.hasGeom = true;
  request.geom = CSize(80, 80);  // the box decides then: 80 x 72 pixels
  EXPECT_EQ(run(), 0);
  SetMagickResourceLimit(WidthResource, limit);
  EXPECT_FALSE(folder.has("out.jpg"));
}

// Copies.

TEST_F(Process, CopiesARawImage) {
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), first(40UL * 36));
  EXPECT_EQ(written, CSize(40, 36));
}

TEST_F(Process, CopiesEachFormat) {
  request.inType = COLOR_TYPE_C08;
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), pixels);
  request.inType = COLOR_TYPE_M16;
  request.hasOutType = true;
  request.outType = COLOR_TYPE_M16;
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), first(2UL * 40 * 36));
}

TEST_F(Process, CopiesAnEmptyImage) {
  request.source = CSize(0, 0);
  ASSERT_EQ(run(), 1);
  EXPECT_TRUE(folder.has("out.raw"));
  EXPECT_TRUE(folder.read("out.raw").empty());
  EXPECT_EQ(written, CSize(0, 0));
}

TEST_F(Process, ConvertsARawFileToJpgDirectly) {
  askForJpg();
  ASSERT_EQ(run(), 1);
  const auto jpg = decodeJpg(request.out);
  EXPECT_EQ(jpg.width, 40U);
  EXPECT_EQ(jpg.height, 36U);
  EXPECT_EQ(jpg.components, 1);
  EXPECT_EQ(written, CSize(40, 36));
}

TEST_F(Process, RefusesToConvertAShortRawFileToJpgDirectly) {
  askForJpg();
  request.source = CSize(4000, 36);
  EXPECT_EQ(run(), 0);
}

// Sizes.

TEST_F(Process, FitsThePictureIntoTheBox) {
  request.hasGeom = true;
  request.geom = CSize(80, 1000);
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(written, CSize(80, 72));
  EXPECT_EQ(folder.read("out.raw").size(), 80UL * 72);
}

TEST_F(Process, CopiesWhenTheBoxIsThePicturesOwnSize) {
  request.hasGeom = true;
  request.geom = CSize(40, 36);
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), first(40UL * 36));
}

TEST_F(Process, WritesRawUnderAnyNameOnceABoxOrTheTableIsGiven) {
  request.out = folder.path("out.png");
  request.hasGeom = true;
  request.geom = CSize(40, 36);
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.png"), first(40UL * 36));

  request.out = folder.path("plain");
  request.hasGeom = false;
  request.table = true;
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("plain").size(), 40UL * 36);
}

TEST_F(Process, AveragesWhenThePictureShrinks) {
  Bytes columns;  // of 0 and 200: single samples would give one of them
  for (int i = 0; i < 64 * 64; ++i) columns.push_back(i % 2 == 0 ? 0 : 200);
  request.in = folder.write("columns.bin", columns);
  request.source = CSize(64, 64);
  request.hasGeom = true;
  request.geom = CSize(32, 32);
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), Bytes(32UL * 32, 100));
}

TEST_F(Process, ScalesIntoAJpg) {
  askForJpg();
  request.hasGeom = true;
  request.geom = CSize(80, 80);
  ASSERT_EQ(run(), 1);
  const auto jpg = decodeJpg(request.out);
  EXPECT_EQ(jpg.width, 80U);
  EXPECT_EQ(jpg.height, 72U);
}

// The table.

TEST_F(Process, MapsPixelsThroughTheTable) {
  request.table = true;
  request.window = 100;
  request.level = 50;  // 0 .. 100
  ASSERT_EQ(run(), 1);
  Bytes expected;
  for (const unsigned char p : first(40UL * 36)) {
    expected.push_back(static_cast<unsigned char>(p >= 100 ? 255 : p * 255 / 100));
  }
  EXPECT_EQ(folder.read("out.raw"), expected);
}

TEST_F(Process, InvertsWithTheTableOnly) {
  request.invert = true;
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), first(40UL * 36));

  request.table = true;
  ASSERT_EQ(run(), 1);
  Bytes expected;
  for (const unsigned char p : first(40UL * 36))
    expected.push_back(static_cast<unsigned char>(255 - p * 255 / 256));
  EXPECT_EQ(folder.read("out.raw"), expected);
}

TEST_F(Process, BringsSixteenBitsDownToEightForAJpg) {
  askForJpg();
  Bytes wide;
  for (int i = 0; i < 64 * 64; ++i) {
    wide.push_back(0x00);
    wide.push_back(0x04);  // 1024
  }
  request.in = folder.write("wide.bin", wide);
  request.source = CSize(64, 64);
  request.inType = COLOR_TYPE_M16;
  request.table = true;
  request.window = 2048;
  request.level = 1024;
  ASSERT_EQ(run(), 1);
  const auto jpg = decodeJpg(request.out);
  EXPECT_EQ(jpg.components, 1);
  ASSERT_FALSE(jpg.pixels.empty());
  EXPECT_NEAR(jpg.pixels[0], 127, 1);
}

TEST_F(Process, WritesSixteenBitsRawThroughWideEntries) {
  const Bytes wide = {0x00, 0x04, 0xFF, 0x0F, 0x00, 0x00, 0x00, 0x08};  // 1024, 4095, 0, 2048
  request.in = folder.write("wide.bin", wide);
  request.source = CSize(4, 1);
  request.inType = COLOR_TYPE_M16;
  request.table = true;
  request.window = 4096;
  request.level = 2048;
  ASSERT_EQ(run(), 1);
  Bytes expected;
  for (const int value : {1024, 4095, 0, 2048}) {
    const int mapped = value * 65535 / 4096;
    expected.push_back(static_cast<unsigned char>(mapped));
    expected.push_back(static_cast<unsigned char>(mapped >> 8));
  }
  EXPECT_EQ(folder.read("out.raw"), expected);
}

TEST_F(Process, MapsEverySixteenBitValueAsThePainterDoes) {
  Bytes values;
  for (int value = 0; value < 65'536; ++value) {
    values.push_back(static_cast<unsigned char>(value & 0xFF));
    values.push_back(static_cast<unsigned char>(value >> 8));
  }
  request.in = folder.write("values.bin", values);
  request.source = CSize(256, 256);
  request.inType = COLOR_TYPE_M16;
  request.table = true;
  request.window = 50'000;
  request.level = 30'000;
  ASSERT_EQ(run(), 1);

  const Convertab table = CreateConvertab(0.0, 1.0, 50'000, 30'000, 0, 16, 0, 16, 16);
  auto image = CreateDicomImage(COLOR_TYPE_M16);
  ASSERT_EQ(image->Create(256, 256), 1);
  std::memcpy(image->m_pBuffer, values.data(), values.size());
  CDicomImage* painted = nullptr;
  ASSERT_NE(image->PaintImage(CSize(256, 256), CPoint(0, 0), CSize(256, 256), CRect(0, 0, 256, 256),
                              ORIENTATION_AS_STORED, 0, table.get(), 0, 1, COLOR_TYPE_M16, &painted),
            0);
  const std::unique_ptr<CDicomImage> owned(painted);
  EXPECT_EQ(folder.read("out.raw"), Bytes(painted->m_pBuffer, painted->m_pBuffer + painted->m_nBufferSize));
}

TEST_F(Process, MakesColourOfGreyThroughTheTable) {
  request.in = folder.write("grey.bin", Bytes{0, 128, 255});
  request.source = CSize(3, 1);
  request.hasOutType = true;
  request.outType = COLOR_TYPE_C08;
  request.table = true;
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), (Bytes{0, 0, 0, 127, 127, 127, 254, 254, 254}));
}

TEST_F(Process, MakesGreyOfColourThroughTheTable) {
  request.in = folder.write("rgb.bin", Bytes{10, 20, 30, 255, 255, 255});
  request.source = CSize(2, 1);
  request.inType = COLOR_TYPE_C08;
  request.hasOutType = true;
  request.outType = COLOR_TYPE_M08;
  request.table = true;
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), (Bytes{20 * 255 / 256, 254}));
}

// The decoded compressed input.

TEST_F(Process, PrefersTheDecodedInputAndConsumesIt) {
  request.in = folder.path("none");
  pImageFromEI4 = filled(COLOR_TYPE_M08, 40, 36, 77);
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw"), Bytes(40UL * 36, 77));
  EXPECT_EQ(pImageFromEI4, nullptr);

  pImageFromEI4 = filled(COLOR_TYPE_M08, 40, 36, 78);
  request.table = request.hasGeom = true;
  request.geom = CSize(80, 80);
  ASSERT_EQ(run(), 1);
  EXPECT_EQ(folder.read("out.raw").size(), 80UL * 72);
  EXPECT_EQ(pImageFromEI4, nullptr);
}

TEST_F(Process, ConsumesTheDecodedInputWhenWritingFails) {
  pImageFromEI4 = filled(COLOR_TYPE_M08, 40, 36, 77);
  request.out = folder.path("none/out.raw");
  EXPECT_EQ(run(), 0);
  EXPECT_EQ(pImageFromEI4, nullptr);
}
