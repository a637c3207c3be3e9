#include "ei4make/dicom_picture.h"

#include <gmock/gmock.h>

#include <dcmtk/dcmdata/dcrleerg.h>
#include <dcmtk/dcmimage/diregist.h>  // lets the encoders take colour
#include <dcmtk/dcmjpeg/djencode.h>
#include <dcmtk/dcmjpls/djencode.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "tools/ei4make_dicom_builder.h"

namespace {

using namespace ei4::tools;
using ei4::test::Bytes;
using ei4::test::DicomBuilder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Words = std::vector<std::uint16_t>;

/// The library's encoders, for as long as the program runs.
class Encoders : public testing::Environment {
 public:
  void SetUp() override {
    DcmRLEEncoderRegistration::registerCodecs();
    DJEncoderRegistration::registerCodecs();
    // Not the "cooked" way: in version 3.6.7 that one writes beyond its buffer.
    DJLSEncoderRegistration::registerCodecs(0, 0, 0, 0, OFFalse);
  }
  void TearDown() override {
    DJLSEncoderRegistration::cleanup();
    DJEncoderRegistration::cleanup();
    DcmRLEEncoderRegistration::cleanup();
  }
};
[[maybe_unused]] const auto* const encoders = testing::AddGlobalTestEnvironment(new Encoders);

Words wordsOf(const Picture& picture) {
  Words result(picture.pixels.size() / 2);
  std::memcpy(result.data(), picture.pixels.data(), 2 * result.size());
  return result;
}

std::string refusalOf(const Bytes& file, std::optional<int> frame = {}) {
  try {
    readDicom(file, {frame, false});
  } catch (const PictureError& error) {
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
    return error.what();
  }
  return "accepted";
}

Words someWords(std::size_t count, unsigned bits) {
  Words words(count);
  std::uint32_t state = 1;
  for (std::uint16_t& word : words) {
    state = state * 1664525 + 1013904223;
    word = static_cast<std::uint16_t>(state >> (32 - bits));
  }
  words.front() = static_cast<std::uint16_t>((1U << bits) - 1);
  return words;
}

Bytes someBytes(std::size_t count) {
  const Words words = someWords(count, 8);
  return {words.begin(), words.end()};
}

class DicomSyntax : public testing::TestWithParam<E_TransferSyntax> {};

// All of these keep every bit.
INSTANTIATE_TEST_SUITE_P(Each, DicomSyntax,
                         testing::Values(EXS_LittleEndianImplicit, EXS_LittleEndianExplicit,
                                         EXS_BigEndianExplicit, EXS_DeflatedLittleEndianExplicit,
                                         EXS_RLELossless, EXS_JPEGProcess14, EXS_JPEGProcess14SV1,
                                         EXS_JPEGLSLossless));

TEST_P(DicomSyntax, GivesTwelveBitsBack) {
  const Words pixels = someWords(35, 12);
  const Source source = readDicom(DicomBuilder(7, 5, 16, 12).words(pixels).file(GetParam()), {});
  EXPECT_EQ(source.picture.width, 7);
  EXPECT_EQ(source.picture.height, 5);
  EXPECT_EQ(source.picture.bytesPerPixel, 2);
  EXPECT_EQ(source.picture.bitsPerPixel, 12);
  EXPECT_EQ(wordsOf(source.picture), pixels);
  ASSERT_TRUE(source.stored);
  EXPECT_EQ(source.stored->atZero, 0);
  EXPECT_FALSE(source.stored->lowIsWhite);
  EXPECT_EQ(source.stored->slope, 1);
  EXPECT_FALSE(source.stored->window);
  EXPECT_THAT(source.notes, IsEmpty());
}

TEST_P(DicomSyntax, GivesEightBitsOfAnOddNumberOfPixelsBack) {
  const Bytes pixels = someBytes(35);
  const Source source = readDicom(DicomBuilder(7, 5, 8, 8).bytes(pixels).file(GetParam()), {});
  EXPECT_EQ(source.picture.bytesPerPixel, 1);
  EXPECT_EQ(source.picture.bitsPerPixel, 8);
  EXPECT_EQ(source.picture.pixels, pixels);
}

TEST_P(DicomSyntax, GivesAllSixteenSignedBitsBackShiftedToBeginAtZero) {
  const Words pixels = {0, 1, 0x7FFF, 0x8000, 0xFFFF, 1000};
  const Bytes file =
      DicomBuilder(3, 2, 16, 16).number(DCM_PixelRepresentation, 1).words(pixels).file(GetParam());
  const Source source = readDicom(file, {});
  EXPECT_THAT(wordsOf(source.picture), ElementsAre(0x8000, 0x8001, 0xFFFF, 0, 0x7FFF, 0x8000 + 1000));
  EXPECT_EQ(source.stored->atZero, -0x8000);
}

TEST_P(DicomSyntax, GivesColourBackWhateverThePlanes) {
  const Bytes pixels = someBytes(std::size_t{3} * 7 * 5);
  Bytes planes;
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t i = 0; i < 35; ++i) planes.push_back(pixels[3 * i + c]);
  }
  const Source source = readDicom(DicomBuilder(7, 5, 8, 8).colour("RGB").bytes(pixels).file(GetParam()), {});
  EXPECT_EQ(source.picture.bytesPerPixel, 3);
  EXPECT_EQ(source.picture.pixels, pixels);
  EXPECT_FALSE(source.stored);
  EXPECT_EQ(
      readDicom(DicomBuilder(7, 5, 8, 8).colour("RGB", 1).bytes(planes).file(GetParam()), {}).picture.pixels,
      pixels);
}

TEST_P(DicomSyntax, GivesEachFrameOnRequest) {
  // An odd number of bytes each, where the encoder takes that.
  const int width = GetParam() == EXS_JPEGLSLossless ? 6 : 5;
  const std::ptrdiff_t frameSize = std::ptrdiff_t{3} * width;
  const Bytes pixels = someBytes(static_cast<std::size_t>(3 * frameSize));
  const Bytes file =
      DicomBuilder(width, 3, 8, 8).text(DCM_NumberOfFrames, "3").bytes(pixels).file(GetParam());
  for (int frame = 1; frame <= 3; ++frame) {
    const auto begin = pixels.begin() + (frame - 1) * frameSize;
    EXPECT_EQ(readDicom(file, {frame, false}).picture.pixels, Bytes(begin, begin + frameSize)) << frame;
  }
  EXPECT_EQ(refusalOf(file), "the DICOM file has 3 frames: say which one with --frame");
  EXPECT_EQ(refusalOf(file, 4), "the DICOM file has 3 frames, and no frame 4");
}

TEST(ReadDicom, TakesLossyJpegAsItsColours) {
  Bytes pixels;
  for (int y = 0; y < 32; ++y) {
    for (int x = 0; x < 32; ++x) {
      pixels.insert(pixels.end(),
                    {static_cast<unsigned char>(8 * x), static_cast<unsigned char>(8 * y), 100});
    }
  }
  const Bytes file = DicomBuilder(32, 32, 8, 8).colour("RGB").bytes(pixels).file(EXS_JPEGProcess1);
  const Picture picture = readDicom(file, {}).picture;
  ASSERT_EQ(picture.pixels.size(), pixels.size());
  for (std::size_t i = 0; i < pixels.size(); ++i) ASSERT_NEAR(picture.pixels[i], pixels[i], 12) << i;
}

TEST(ReadDicom, LeavesOutBitsThatAreNotStored) {
  const Bytes low = DicomBuilder(2, 1, 16, 12).words({0xF123, 0x0FFF}).file();
  EXPECT_THAT(wordsOf(readDicom(low, {}).picture), ElementsAre(0x123, 0xFFF));
  const Bytes high = DicomBuilder(2, 1, 16, 12).number(DCM_HighBit, 15).words({0x123F, 0xFFF0}).file();
  EXPECT_THAT(wordsOf(readDicom(high, {}).picture), ElementsAre(0x123, 0xFFF));
  const Bytes isSigned =
      DicomBuilder(2, 1, 16, 12).number(DCM_PixelRepresentation, 1).words({0x7800, 0x87FF}).file();
  EXPECT_THAT(wordsOf(readDicom(isSigned, {}).picture), ElementsAre(0, 0xFFF));
  const Bytes narrow = DicomBuilder(2, 1, 16, 7).words({0xFF81, 0x007F}).file();
  EXPECT_THAT(readDicom(narrow, {}).picture.pixels, ElementsAre(1, 0x7F));
  EXPECT_EQ(readDicom(narrow, {}).picture.bitsPerPixel, 7);
}

TEST(ReadDicom, TakesEightBitsInWordsOfEitherOrder) {
  for (const E_TransferSyntax syntax :
       {EXS_LittleEndianImplicit, EXS_LittleEndianExplicit, EXS_BigEndianExplicit}) {
    const Bytes file = DicomBuilder(3, 1, 8, 8).words({0x0201, 0x0003}).file(syntax);
    EXPECT_THAT(readDicom(file, {}).picture.pixels, ElementsAre(1, 2, 3)) << syntax;
  }
}

TEST(ReadDicom, TakesRescalingAndTheFirstWindow) {
  const Bytes file = DicomBuilder(1, 1, 16, 12)
                         .text(DCM_RescaleSlope, "0.5")
                         .text(DCM_RescaleIntercept, "-1024")
                         .text(DCM_WindowWidth, "400\\1500")
                         .text(DCM_WindowCenter, "40.5\\-600")
                         .text(DCM_PhotometricInterpretation, "MONOCHROME1")
                         .words({7})
                         .file();
  const Source source = readDicom(file, {});
  EXPECT_EQ(source.stored->slope, 0.5);
  EXPECT_EQ(source.stored->intercept, -1024);
  EXPECT_EQ(source.stored->window, 400);
  EXPECT_EQ(source.stored->level, 40.5);
  EXPECT_TRUE(source.stored->lowIsWhite);
  EXPECT_THAT(source.notes, IsEmpty());
}

TEST(ReadDicom, TakesRescalingAndWindowOfEachFrame) {
  DicomBuilder builder(1, 1, 16, 12);
  builder.text(DCM_NumberOfFrames, "2").words({7, 8});
  DcmItem* group = nullptr;
  DcmItem* item = nullptr;
  builder.items().findOrCreateSequenceItem(DCM_SharedFunctionalGroupsSequence, group, -2);
  group->findOrCreateSequenceItem(DCM_PixelValueTransformationSequence, item, -2);
  item->putAndInsertString(DCM_RescaleIntercept, "-5");
  for (const char* width : {"100", "200"}) {
    builder.items().findOrCreateSequenceItem(DCM_PerFrameFunctionalGroupsSequence, group, -2);
    group->findOrCreateSequenceItem(DCM_FrameVOILUTSequence, item, -2);
    item->putAndInsertString(DCM_WindowWidth, width);
    item->putAndInsertString(DCM_WindowCenter, "50");
  }
  const Bytes file = builder.file();
  EXPECT_EQ(readDicom(file, {1, false}).stored->window, 100);
  EXPECT_EQ(readDicom(file, {2, false}).stored->window, 200);
  EXPECT_EQ(readDicom(file, {2, false}).stored->intercept, -5);
}

TEST(ReadDicom, SaysWhatItLeavesOut) {
  const auto notesOf = [](DicomBuilder& builder) { return readDicom(builder.file(), {}).notes; };
  DicomBuilder table(1, 1, 16, 12);
  DcmItem* item = nullptr;
  table.words({7}).items().findOrCreateSequenceItem(DCM_VOILUTSequence, item, -2);
  EXPECT_THAT(notesOf(table), ElementsAre(HasSubstr("lookup table for its window")));
  table.text(DCM_WindowWidth, "9").text(DCM_WindowCenter, "9");
  EXPECT_THAT(notesOf(table), IsEmpty());
  table.text(DCM_VOILUTFunction, "SIGMOID");
  EXPECT_THAT(notesOf(table), ElementsAre(HasSubstr("sigmoid")));
  EXPECT_THAT(
      notesOf(DicomBuilder(1, 1, 16, 12).words({7}).text(DCM_WindowWidth, "0").text(DCM_WindowCenter, "9")),
      ElementsAre(HasSubstr("window cannot be used")));
  DicomBuilder slope(1, 1, 16, 12);
  slope.words({7}).text(DCM_RescaleSlope, "0").text(DCM_RescaleIntercept, "x");
  EXPECT_THAT(notesOf(slope), ElementsAre(HasSubstr("rescale slope"), HasSubstr("rescale intercept")));
  EXPECT_EQ(readDicom(slope.file(), {}).stored->slope, 1);
}

TEST(ReadDicom, RefusesAModalityTableUnlessItsPlaceIsTaken) {
  DicomBuilder builder(1, 1, 16, 12);
  DcmItem* item = nullptr;
  builder.words({7}).items().findOrCreateSequenceItem(DCM_ModalityLUTSequence, item, -2);
  const Bytes file = builder.file();
  EXPECT_THAT(refusalOf(file), HasSubstr("modality lookup table"));
  EXPECT_NO_THROW(readDicom(file, {{}, true}));
}

// The standard's own equations, solved for red, green and blue.
TEST(ReadDicom, TakesLuminanceAndChrominance) {
  const Bytes ybr = {76, 85, 255, 150, 44, 21, 29, 255, 107, 128, 128, 128};  // red, green, blue, grey
  const auto expected = [&](std::size_t i, std::size_t c) {
    const double y = ybr[3 * i];
    const double blue = ybr[3 * i + 1] - 128.0;
    const double red = ybr[3 * i + 2] - 128.0;
    const double value = c == 0   ? y + 1.402 * red
                         : c == 1 ? y - 0.344136 * blue - 0.714136 * red
                                  : y + 1.772 * blue;
    return std::min(255.0, std::max(0.0, value));
  };
  Bytes planes;
  for (std::size_t c = 0; c < 3; ++c) {
    for (std::size_t i = 0; i < 4; ++i) planes.push_back(ybr[3 * i + c]);
  }
  for (const E_TransferSyntax syntax : {EXS_LittleEndianExplicit, EXS_BigEndianExplicit, EXS_RLELossless}) {
    for (const int planar : {0, 1}) {
      const Bytes file =
          DicomBuilder(4, 1, 8, 8).colour("YBR_FULL", planar).bytes(planar == 0 ? ybr : planes).file(syntax);
      const Picture picture = readDicom(file, {}).picture;
      ASSERT_EQ(picture.pixels.size(), 12U);
      for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_NEAR(picture.pixels[i], expected(i / 3, i % 3), 0.51) << syntax << ' ' << planar << ' ' << i;
      }
    }
  }
}

TEST(ReadDicom, TakesHalvedChrominance) {
  const Bytes file = DicomBuilder(2, 2, 8, 8)
                         .colour("YBR_FULL_422")
                         .bytes({10, 20, 128, 128, 76, 76, 85, 255})  // two greys, then two reds
                         .file();
  EXPECT_THAT(readDicom(file, {}).picture.pixels, ElementsAre(10, 10, 10, 20, 20, 20, 254, 0, 0, 254, 0, 0));
  EXPECT_THAT(refusalOf(DicomBuilder(1, 2, 8, 8).colour("YBR_FULL_422").bytes(Bytes(8)).file()),
              HasSubstr("even number of columns"));
}

DicomBuilder withPalette(int allocated, int first, int bits, const Words& red, const Words& green,
                         const Words& blue, int count) {
  DicomBuilder builder(4, 1, allocated, allocated);
  builder.text(DCM_PhotometricInterpretation, "PALETTE COLOR");
  const Words descriptor = {static_cast<std::uint16_t>(count), static_cast<std::uint16_t>(first),
                            static_cast<std::uint16_t>(bits)};
  for (const auto& [tag, table, data] :
       {std::tuple{DCM_RedPaletteColorLookupTableDescriptor, DCM_RedPaletteColorLookupTableData, red},
        std::tuple{DCM_GreenPaletteColorLookupTableDescriptor, DCM_GreenPaletteColorLookupTableData, green},
        std::tuple{DCM_BluePaletteColorLookupTableDescriptor, DCM_BluePaletteColorLookupTableData, blue}}) {
    builder.words(descriptor, tag).words(data, table);
  }
  return builder;
}

TEST(ReadDicom, TakesPalettes) {
  const Words red = {0x1000, 0x2000, 0x3000}, green = {0x4100, 0x5100, 0x6100}, blue = {0xFFFF, 0, 0x8000};
  // Below the first mapped value and behind the last: the first and the last entry.
  const auto expected = ElementsAre(0x10, 0x41, 0xFF, 0x10, 0x41, 0xFF, 0x20, 0x51, 0x00, 0x30, 0x61, 0x80);
  for (const E_TransferSyntax syntax :
       {EXS_LittleEndianImplicit, EXS_LittleEndianExplicit, EXS_BigEndianExplicit}) {
    auto bytes = withPalette(8, 5, 16, red, green, blue, 3).bytes({0, 5, 6, 200});
    EXPECT_THAT(readDicom(bytes.file(syntax), {}).picture.pixels, expected) << syntax;
    auto words = withPalette(16, 300, 16, red, green, blue, 3).words({0, 300, 301, 65535});
    EXPECT_THAT(readDicom(words.file(syntax), {}).picture.pixels, expected) << syntax;
  }
  auto packed =
      withPalette(8, 0, 8, {0x2010, 0x0030}, {0x5141, 0x0061}, {0x00FF, 0x0080}, 3).bytes({0, 0, 1, 9});
  EXPECT_THAT(readDicom(packed.file(), {}).picture.pixels, expected);
  auto wide =
      withPalette(8, 0, 8, {0x10, 0x20, 0x30}, {0x41, 0x51, 0x61}, {0xFF, 0, 0x80}, 3).bytes({0, 0, 1, 9});
  EXPECT_THAT(readDicom(wide.file(), {}).picture.pixels, expected);
}

TEST(ReadDicom, RefusesPalettesThatAreNotThere) {
  auto cut = withPalette(8, 0, 16, {1, 2}, {1, 2, 3}, {1, 2, 3}, 3).bytes({0, 1, 2, 3});
  EXPECT_THAT(refusalOf(cut.file()), HasSubstr("shorter than it states"));
  auto none = withPalette(8, 0, 16, {1}, {1}, {1}, 1).bytes({0, 1, 2, 3});
  none.without(DCM_GreenPaletteColorLookupTableData);
  EXPECT_THAT(refusalOf(none.file()), HasSubstr("no palette"));
  none.without(DCM_GreenPaletteColorLookupTableDescriptor);
  EXPECT_THAT(refusalOf(none.file()), HasSubstr("no usable description"));
}

TEST(ReadDicom, RefusesWhatItCannotTake) {
  const auto grey = [] { return DicomBuilder(2, 1, 16, 12).words({1, 2}); };
  EXPECT_EQ(refusalOf(grey().without(DCM_PixelData).file()), "the DICOM file has no pixel data");
  EXPECT_EQ(refusalOf(grey().without(DCM_Rows).file()), "the DICOM file states no number of rows");
  EXPECT_EQ(refusalOf(grey().number(DCM_Columns, 0).file()), "the number of columns is not 1 to 65535");
  EXPECT_EQ(refusalOf(grey().number(DCM_BitsAllocated, 32).file()),
            "samples have 32 bits allocated: 8 and 16 are taken");
  EXPECT_EQ(refusalOf(grey().number(DCM_BitsAllocated, 1).file()),
            "samples have 1 bits allocated: 8 and 16 are taken");
  for (const auto& [stored, high] : {std::pair{17, 16}, {0, 0}, {12, 16}, {12, 10}, {8, 65535}}) {
    EXPECT_EQ(refusalOf(grey().number(DCM_BitsStored, stored).number(DCM_HighBit, high).file()),
              "the bits stored do not lie within those allocated")
        << stored << ' ' << high;
  }
  EXPECT_EQ(refusalOf(grey().text(DCM_PhotometricInterpretation, "CMYK").file()),
            "the photometric interpretation \"CMYK\" is not read");
  EXPECT_THAT(refusalOf(grey().without(DCM_PhotometricInterpretation).file()), HasSubstr("photometric"));
  EXPECT_THAT(refusalOf(grey().number(DCM_SamplesPerPixel, 3).file()), HasSubstr("3 samples a pixel"));
  EXPECT_THAT(refusalOf(DicomBuilder(1, 1, 16, 16).colour("RGB").words({1, 2, 3}).file()),
              HasSubstr("8 bits"));
  EXPECT_THAT(refusalOf(grey().text(DCM_NumberOfFrames, "none").file()), HasSubstr("number of frames"));
  EXPECT_THAT(refusalOf(grey().text(DCM_NumberOfFrames, "0").file()), HasSubstr("number of frames"));
  EXPECT_THAT(refusalOf(grey().number(DCM_Rows, 65535).number(DCM_Columns, 65535).file()),
              HasSubstr("end before its last pixel"));
  EXPECT_THAT(refusalOf(grey().text(DCM_NumberOfFrames, "2147483647").file(), 2147483647),
              HasSubstr("end before its last pixel"));
  Bytes floats = grey().file();
  const Bytes pixelTag = {0xE0, 0x7F, 0x10, 0, 'O', 'W'};
  const auto at = std::search(floats.begin(), floats.end(), pixelTag.begin(), pixelTag.end());
  ASSERT_NE(at, floats.end());
  at[2] = 8;
  at[5] = 'F';
  EXPECT_EQ(refusalOf(floats), "the DICOM file has floating point pixels");
}

// Only the meta information says so; the data set that follows is not looked at.
TEST(ReadDicom, NamesATransferSyntaxThatItDoesNotRead) {
  Bytes file = DicomBuilder(2, 1, 16, 12).words({1, 2}).file(EXS_RLELossless);
  const std::string rle = "1.2.840.10008.1.2.5";
  const auto at = std::search(file.begin() + 132, file.end(), rle.begin(), rle.end());
  ASSERT_NE(at, file.end());
  const auto as = [&](const std::string& uid) {
    Bytes other = file;
    std::copy(uid.begin(), uid.end(), other.begin() + (at - file.begin()));
    return refusalOf(other);
  };
  EXPECT_THAT(as("1.2.840.10008.9.9.9"), HasSubstr("is not one that is read: 1.2.840.10008.9.9.9"));
  EXPECT_THAT(as("1.2.840.10008.1.2.?"), HasSubstr("states no transfer syntax"));
  EXPECT_THAT(as(std::string(19, '\0')), HasSubstr("states no transfer syntax"));
  Bytes video = DicomBuilder(2, 1, 16, 12).words({1, 2}).file(EXS_JPEGProcess14SV1);
  const std::string lossless = "1.2.840.10008.1.2.4.70";
  const auto place = std::search(video.begin() + 132, video.end(), lossless.begin(), lossless.end());
  ASSERT_NE(place, video.end());
  const std::string wavelet = "1.2.840.10008.1.2.4.90";
  std::copy(wavelet.begin(), wavelet.end(), place);
  EXPECT_THAT(refusalOf(video),
              testing::MatchesRegex(".*not one that is read: JPEG 2000.*, 1.2.840.10008.1.2.4.90"));
}

}  // namespace
