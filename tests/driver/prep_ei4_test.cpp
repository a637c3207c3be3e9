#include "driver/prep_ei4.h"

#include <gtest/gtest.h>
#include <magick/MagickCore.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

#include "encoder/ei4_writer.h"
#include "encoder/gw_encoder.h"
#include "gwav4/decompressor.h"
#include "gwav4/header.h"
#include "settings_fixture.h"
#include "support/cli_jpg.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Bytes;
using ei4::tools::Ei4Preamble;

constexpr std::size_t kPreamble = 24;
constexpr std::size_t kHeader = zel::gwav4::kHeaderBytes;

Bytes noise(std::size_t count, int mask) {
  std::mt19937 random(1);
  Bytes bytes(count);
  for (auto& byte : bytes) byte = static_cast<unsigned char>(random() & static_cast<unsigned>(mask));
  return bytes;
}

Bytes streamOf(const Bytes& pixels, int width, int height, int bytesPerPixel, int bits) {
  ei4::tools::EncodeOptions options;
  options.bytesPerPixel = bytesPerPixel;
  options.bitsPerPixel = bits;
  return ei4::tools::encode(pixels, width, height, options);
}

// Little-endian fields for the preamble and the container.
void append(Bytes& bytes, std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

// A container that holds one entry.
Bytes blobOf(const std::string& name, const Bytes& payload) {
  Bytes blob = {'E', 'R', 'B', 'L', 1, 0, 0, 0};
  blob.resize(124);
  append(blob, 1, 4);
  append(blob, name.size(), 2);
  blob.insert(blob.end(), name.begin(), name.end());
  append(blob, payload.size(), 4);
  append(blob, 0, 8);
  blob.insert(blob.end(), payload.begin(), payload.end());
  return blob;
}

class PrepEI4Test : public ei4::test::SettingsTest {
 protected:
  bool prepare(const Bytes& file, const CSize* target = nullptr) {
    return PrepEI4(folder.write("in.ei4", file).c_str(), false, target);
  }

  bool prepareEntry(const Bytes& entry) {
    folder.write("full.erblb", blobOf("in.ei4", entry));
    return PrepEI4(folder.path("in.ei4").c_str(), true, nullptr);
  }

  static Bytes decoded() {
    if (!pImageFromEI4) return {};
    return Bytes(pImageFromEI4->m_pBuffer, pImageFromEI4->m_pBuffer + pImageFromEI4->m_nBufferSize);
  }

  ei4::test::TempFolder folder;
  const Bytes grey = noise(48UL * 40, 0xFF);
  const Bytes greyStream = streamOf(grey, 48, 40, 1, 8);
};

// What decoding `stream` gives when no more than `size` of its bytes are there.
Bytes decodePrefix(const Bytes& stream, std::size_t size, int factor) {
  const Bytes prefix(stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size));
  zel::gwav4::CGWavDecompressor decompressor(prefix.data(), size - kHeader, factor, 0);
  Bytes out(static_cast<std::size_t>(decompressor.getXSize()) *
            static_cast<std::size_t>(decompressor.getYSize()) *
            static_cast<std::size_t>(decompressor.getBytesPerPixel()));
  const int status = decompressor.decompress(out.data(), out.size(), 0);
  EXPECT_TRUE(status == 0 || status == 4) << status;
  return out;
}

}  // namespace

TEST_F(PrepEI4Test, DecodesAFileCompletely) {
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, greyStream)));
  ASSERT_NE(pImageFromEI4, nullptr);
  EXPECT_EQ(pImageFromEI4->m_Size, CSize(48, 40));
  EXPECT_EQ(csSrc, CSize(48, 40));
  EXPECT_EQ(decoded(), grey);
}

TEST_F(PrepEI4Test, TakesThePixelFormatFromTheStream) {
  nInputColorType = COLOR_TYPE_C08;
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, greyStream)));
  EXPECT_EQ(nInputColorType, COLOR_TYPE_M08);
  EXPECT_EQ(pImageFromEI4->GetColorType(), COLOR_TYPE_M08);

  Bytes wide = noise(2UL * 32 * 32, 0x0F);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, streamOf(wide, 32, 32, 2, 12))));
  EXPECT_EQ(nInputColorType, COLOR_TYPE_M16);
  EXPECT_EQ(decoded(), wide);

  const Bytes colour = noise(3UL * 32 * 32, 0xFF);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, streamOf(colour, 32, 32, 3, 8))));
  EXPECT_EQ(nInputColorType, COLOR_TYPE_C08);
  EXPECT_EQ(decoded(), colour);
}

TEST_F(PrepEI4Test, TakesTheWindowFromThePreamble) {
  nWindow = 1;
  nLevel = 2;
  const Ei4Preamble preamble{.intercept = -1024.5F, .slope = 0.1F, .window = 400.7F, .level = -50.9F};
  ASSERT_TRUE(prepare(ei4::tools::writeEi4(preamble, greyStream)));
  EXPECT_EQ(bWL, 1);
  EXPECT_EQ(dIntercept, -1024.5);
  EXPECT_EQ(dSlope, static_cast<double>(0.1F));
  EXPECT_EQ(nWindow, 400);
  EXPECT_EQ(nLevel, -50);
}

TEST_F(PrepEI4Test, TakesFloatsThatAreNoIntForIntMin) {
  const float infinity = std::numeric_limits<float>::infinity();
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({.window = infinity, .level = std::nanf("")}, greyStream)));
  EXPECT_EQ(nWindow, INT_MIN);
  EXPECT_EQ(nLevel, INT_MIN);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({.window = 2147483648.0F, .level = -3e9F}, greyStream)));
  EXPECT_EQ(nWindow, INT_MIN);
  EXPECT_EQ(nLevel, INT_MIN);
}

TEST_F(PrepEI4Test, RefusesWhatIsMissing) {
  EXPECT_FALSE(PrepEI4(folder.path("none.ei4").c_str(), false, nullptr));
  EXPECT_FALSE(PrepEI4(folder.path("none.ei4").c_str(), true, nullptr));
  EXPECT_FALSE(PrepEI4("none.ei4", true, nullptr));  // a blob entry's path names a folder
  EXPECT_FALSE(PrepEI4(folder.path(".").c_str(), false, nullptr));
}

TEST_F(PrepEI4Test, RefusesFortyBytesOrLess) {
  Bytes file = ei4::tools::writeEi4({}, greyStream);
  file.resize(40);
  EXPECT_FALSE(prepare(file));
  EXPECT_EQ(bWL, 0);
  EXPECT_FALSE(prepare({}));
  file.push_back(0);
  EXPECT_TRUE(prepare(file));  // one byte of coded data
}

TEST_F(PrepEI4Test, RefusesAPreambleThatIsTooShort) {
  Bytes file = ei4::tools::writeEi4({}, greyStream);
  file[6] = 23;
  EXPECT_FALSE(prepare(file));
  EXPECT_EQ(bWL, 0);
}

TEST_F(PrepEI4Test, RefusesAPreambleThatLeavesNoHeader) {
  Bytes entry(100);
  entry[6] = 85;  // 15 bytes behind it
  EXPECT_FALSE(prepareEntry(entry));
  EXPECT_EQ(bWL, 0);
  entry[6] = 84;  // 16 bytes, which are no header
  EXPECT_FALSE(prepareEntry(entry));
  EXPECT_EQ(bWL, 1);
}

TEST_F(PrepEI4Test, RefusesALongPreambleInAPlainFile) {
  const Bytes bytes = ei4::tools::writeEi4({.window = 400, .length = 32}, greyStream);
  EXPECT_FALSE(prepare(bytes));
  EXPECT_EQ(nWindow, 400);  // taken over all the same
  EXPECT_EQ(bWL, 1);
}

TEST_F(PrepEI4Test, AcceptsALongPreambleInABlobEntry) {
  ASSERT_TRUE(prepareEntry(ei4::tools::writeEi4({.length = 32}, greyStream)));
  EXPECT_EQ(decoded(), grey);
}

TEST_F(PrepEI4Test, ReadsAnEntryInTwoParts) {
  const Bytes entry = ei4::tools::writeEi4({}, greyStream);
  const auto cut = entry.begin() + 200;
  folder.write("initial.erblb", blobOf("in.t.ei4", Bytes(entry.begin(), cut)));
  folder.write("full.erblb", blobOf("in.f.ei4", Bytes(cut, entry.end())));
  ASSERT_TRUE(PrepEI4(folder.path("in.ei4").c_str(), true, nullptr));
  EXPECT_EQ(decoded(), grey);
}

TEST_F(PrepEI4Test, RefusesAForeignStream) {
  Bytes file = ei4::tools::writeEi4({}, greyStream);
  file[kPreamble + 3] = '2';  // GW42
  EXPECT_FALSE(prepare(file));
  EXPECT_EQ(pImageFromEI4, nullptr);
}

TEST_F(PrepEI4Test, ShowsACutStream) {
  Bytes file = ei4::tools::writeEi4({}, greyStream);
  file.resize(file.size() / 2);
  ASSERT_TRUE(prepare(file));
  EXPECT_EQ(decoded(), decodePrefix(greyStream, file.size() - kPreamble, 0));
}

TEST_F(PrepEI4Test, ReportsALateFailureThroughTheImageAlone) {
  Bytes file = ei4::tools::writeEi4({}, greyStream);
  file[kPreamble + 4] = 4;  // bytes per pixel that no decoder has
  pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
  EXPECT_TRUE(prepare(file));
  EXPECT_EQ(pImageFromEI4, nullptr);
  EXPECT_EQ(nInputColorType, COLOR_TYPE_C08);
  EXPECT_EQ(csSrc, CSize(48, 40));
}

TEST_F(PrepEI4Test, ReportsAnImageThatCannotBeMadeInTheSameWay) {
  Bytes file = ei4::tools::writeEi4({}, streamOf(noise(3UL * 32 * 32, 0xFF), 32, 32, 3, 8));
  for (std::size_t i = 6; i < 10; ++i)
    file[kPreamble + i] = 0xFF;  // 65535 x 65535 in colour: more than 32 bits hold
  EXPECT_TRUE(prepare(file));
  EXPECT_EQ(pImageFromEI4, nullptr);
  EXPECT_EQ(csSrc, CSize(65535, 65535));
}

TEST_F(PrepEI4Test, ReportsASizeThatTheInputMayNotClaimInTheSameWay) {
  Bytes file = ei4::tools::writeEi4({}, greyStream);
  file.resize(300);
  const auto claim = [&file](unsigned width, unsigned height) {
    file[kPreamble + 6] = static_cast<unsigned char>(width);
    file[kPreamble + 7] = static_cast<unsigned char>(width >> 8);
    file[kPreamble + 8] = static_cast<unsigned char>(height);
    file[kPreamble + 9] = static_cast<unsigned char>(height >> 8);
  };
  claim(8192, 8193);
  EXPECT_TRUE(prepare(file));
  EXPECT_EQ(pImageFromEI4, nullptr);
  EXPECT_EQ(csSrc, CSize(8192, 8193));

  claim(8192, 8192);
  EXPECT_TRUE(prepare(file));
  ASSERT_NE(pImageFromEI4, nullptr);
  EXPECT_EQ(pImageFromEI4->m_Size, CSize(8192, 8192));

  const CSize target(64, 64);  // what is wanted of a large picture may be small
  claim(65535, 65535);
  EXPECT_TRUE(prepare(file, &target));
  ASSERT_NE(pImageFromEI4, nullptr);
  EXPECT_EQ(pImageFromEI4->m_Size, CSize(64, 64));
}

TEST_F(PrepEI4Test, ReportsAnEntryWithoutCodedDataInTheSameWay) {
  // The full part's first byte is the first of the coded data. A read that lies wholly in the full part
  // answers one less than it delivered: with one byte there, none.
  const Bytes entry = ei4::tools::writeEi4({}, greyStream);
  folder.write("initial.erblb", blobOf("in.t.ei4", Bytes(entry.begin(), entry.begin() + 40)));
  folder.write("full.erblb", blobOf("in.f.ei4", Bytes{entry[40]}));
  pImageFromEI4 = CreateDicomImage(COLOR_TYPE_M08);
  EXPECT_TRUE(PrepEI4(folder.path("in.ei4").c_str(), true, nullptr));
  EXPECT_EQ(pImageFromEI4, nullptr);
  EXPECT_EQ(csSrc, CSize(48, 40));
}

TEST_F(PrepEI4Test, IgnoresAHeightOfTheTarget) {
  const CSize target(0, 10);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, greyStream), &target));
  EXPECT_EQ(csSrc, CSize(48, 40));
}

TEST_F(PrepEI4Test, TakesTheLowWordOfTheTargetsWidth) {
  CSize target(0, 0);
  target.cx = 1L << 32;
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, greyStream), &target));
  EXPECT_EQ(csSrc, CSize(48, 40));
}

TEST_F(PrepEI4Test, SurvivesANegativeTarget) {
  const CSize target(-5, -5);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, greyStream), &target));
  EXPECT_EQ(csSrc, CSize(12, 10));  // halved until both sides are at most 16
}

TEST_F(PrepEI4Test, DecodesNothingForAJpgThatTheLibraryCannotTake) {
  ei4::test::startMagickCore();
  const Bytes file = ei4::tools::writeEi4({.window = 400}, greyStream);
  const MagickSizeType limit = GetMagickResourceLimit(WidthResource);
  const auto decodes = [&] {
    nWindow = 0;
    EXPECT_TRUE(prepare(file));
    EXPECT_EQ(csSrc, CSize(48, 40));
    EXPECT_EQ(nWindow, 400);
    return pImageFromEI4 != nullptr;
  };
  szOutFile = "out.jpg";
  EXPECT_TRUE(decodes());
  SetMagickResourceLimit(WidthResource, 47);
  EXPECT_FALSE(decodes());
  bDstSize = 1;  // the box may make it smaller
  EXPECT_TRUE(decodes());
  bDstSize = 0;
  szReportFile = "report.txt";  // shows a part of it
  EXPECT_TRUE(decodes());
  szReportFile = nullptr;
  szOutFile = "out.raw";
  EXPECT_TRUE(decodes());
  SetMagickResourceLimit(WidthResource, limit);
}

class ReadBudget : public PrepEI4Test {
 protected:
  const Bytes picture = noise(512UL * 512, 0xFF);
  const Bytes stream = streamOf(picture, 512, 512, 1, 8);
};

TEST_F(ReadBudget, IsKeptForALargeRequest) {
  // 256 x 256 at 8 bits are 65 units of 8000 bits: 65 / (6.25 ln 65 - 15) = 5.86, so 5 times 1024 bytes.
  const CSize target(256, 256);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, stream), &target));
  EXPECT_EQ(csSrc, CSize(256, 256));
  ASSERT_GT(stream.size(), 2UL * 5120);
  EXPECT_EQ(decoded(), decodePrefix(stream, 5120, 1));
  EXPECT_NE(decoded(), decodePrefix(stream, 2UL * 5120, 1));
}

TEST_F(ReadBudget, IsDoubledForAThumbnail) {
  for (const auto& [width, factor] : {std::pair{128, 2}, std::pair{64, 3}}) {
    const CSize target(width, width);
    ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, stream), &target));
    EXPECT_EQ(csSrc, CSize(width, width));
    EXPECT_EQ(decoded(), decodePrefix(stream, 2UL * 8192, factor));
    EXPECT_NE(decoded(), decodePrefix(stream, 8192, factor));
  }
}

TEST_F(ReadBudget, IsNotDoubledAbove128) {
  const CSize target(129, 129);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, stream), &target));
  EXPECT_EQ(csSrc, CSize(128, 128));
  EXPECT_EQ(decoded(), decodePrefix(stream, 8192, 2));
}

TEST_F(ReadBudget, IsNotDoubledForANegativeWidth) {
  const CSize target(-1, -1);
  ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, stream), &target));
  EXPECT_EQ(csSrc, CSize(16, 16));
  EXPECT_EQ(decoded(), decodePrefix(stream, 8192, 5));
  EXPECT_NE(decoded(), decodePrefix(stream, 2UL * 8192, 5));
}

TEST_F(ReadBudget, IsTheWholeInputAtFullSize) {
  for (const int width : {0, 512, 1000}) {
    const CSize target(width, width);
    ASSERT_TRUE(prepare(ei4::tools::writeEi4({}, stream), &target));
    EXPECT_EQ(decoded(), picture) << width;
  }
}

TEST_F(ReadBudget, EndsWithTheInput) {
  Bytes file = ei4::tools::writeEi4({}, stream);
  file.resize(3000);
  const CSize target(256, 256);
  ASSERT_TRUE(prepare(file, &target));
  EXPECT_EQ(decoded(), decodePrefix(stream, 3000 - kPreamble, 1));
}
