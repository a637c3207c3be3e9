#include "ei4make/png_picture.h"

#include <gmock/gmock.h>
#include <png.h>
#include <sys/resource.h>
#include <zlib.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace {

using namespace ei4::tools;
using testing::ElementsAre;
using testing::HasSubstr;
using Bytes = std::vector<unsigned char>;
using Words = std::vector<std::uint16_t>;

struct PngSpec {
  int width = 1;
  int height = 1;
  int bits = 8;
  int type = PNG_COLOR_TYPE_GRAY;
  int significant = 0;  ///< of grey; 0: not stated
  bool isInterlaced = false;
  std::vector<png_color> palette = {};
  Bytes alpha = {};          ///< of the palette's entries
  int transparentGrey = -1;  ///< a value; -1: none
};

// The library calls back with C linkage only; a failure ends the test program.
extern "C" {
static void append(png_structp png, png_bytep bytes, size_t count) {
  auto* out = static_cast<Bytes*>(png_get_io_ptr(png));
  out->insert(out->end(), bytes, bytes + count);
}
static void flush(png_structp) {}
}

/// `rows`: as they are in the file, packed, 16-bit samples high byte first.
Bytes pngOf(const PngSpec& spec, Bytes rows) {
  Bytes file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &file, append, flush);
  png_set_IHDR(png, info, static_cast<png_uint_32>(spec.width), static_cast<png_uint_32>(spec.height),
               spec.bits, spec.type, spec.isInterlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (spec.significant != 0) {
    png_color_8 significant{};
    significant.gray = static_cast<png_byte>(spec.significant);
    significant.alpha = significant.gray;
    png_set_sBIT(png, info, &significant);
  }
  if (!spec.palette.empty())
    png_set_PLTE(png, info, spec.palette.data(), static_cast<int>(spec.palette.size()));
  if (!spec.alpha.empty())
    png_set_tRNS(png, info, spec.alpha.data(), static_cast<int>(spec.alpha.size()), nullptr);
  if (spec.transparentGrey >= 0) {
    png_color_16 value{};
    value.gray = static_cast<png_uint_16>(spec.transparentGrey);
    png_set_tRNS(png, info, nullptr, 0, &value);
  }
  png_write_info(png, info);
  const std::size_t rowBytes = png_get_rowbytes(png, info);
  EXPECT_EQ(rows.size(), rowBytes * static_cast<std::size_t>(spec.height));
  std::vector<png_bytep> pointers;
  for (std::size_t y = 0; y < static_cast<std::size_t>(spec.height); ++y)
    pointers.push_back(&rows[y * rowBytes]);
  png_write_image(png, pointers.data());
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return file;
}

std::string refusalOf(const Bytes& file) {
  try {
    readPng(file);
  } catch (const PictureError& error) {
    return error.what();
  }
  return "accepted";
}

Words wordsOf(const Picture& picture) {
  Words result(picture.pixels.size() / 2);
  std::memcpy(result.data(), picture.pixels.data(), 2 * result.size());
  return result;
}

Bytes highByteFirst(const Words& words) {
  Bytes bytes;
  for (const std::uint16_t word : words) {
    bytes.push_back(static_cast<unsigned char>(word >> 8));
    bytes.push_back(static_cast<unsigned char>(word & 0xFFU));
  }
  return bytes;
}

Bytes someBytes(std::size_t count) {
  std::mt19937 random(7);
  Bytes bytes(count);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
  return bytes;
}

TEST(ReadPng, TakesEightBitGreyAndColourInterlacedOrNot) {
  for (const bool isInterlaced : {false, true}) {
    const Bytes grey = someBytes(247);
    const Picture picture = readPng(pngOf({19, 13, 8, PNG_COLOR_TYPE_GRAY, 0, isInterlaced}, grey));
    EXPECT_EQ(picture.width, 19);
    EXPECT_EQ(picture.height, 13);
    EXPECT_EQ(picture.bytesPerPixel, 1);
    EXPECT_EQ(picture.bitsPerPixel, 8);
    EXPECT_EQ(picture.pixels, grey);
    const Bytes colour = someBytes(741);
    const Picture coloured = readPng(pngOf({19, 13, 8, PNG_COLOR_TYPE_RGB, 0, isInterlaced}, colour));
    EXPECT_EQ(coloured.bytesPerPixel, 3);
    EXPECT_EQ(coloured.pixels, colour);
    const Bytes wide = someBytes(494);
    const Picture deep = readPng(pngOf({19, 13, 16, PNG_COLOR_TYPE_GRAY, 0, isInterlaced}, wide));
    EXPECT_EQ(deep.bytesPerPixel, 2);
    EXPECT_EQ(deep.bitsPerPixel, 16);
    EXPECT_EQ(highByteFirst(wordsOf(deep)), wide);
  }
}

TEST(ReadPng, SpreadsFewBitsFromBlackToWhite) {
  EXPECT_THAT(readPng(pngOf({3, 1, 1}, {0x40})).pixels, ElementsAre(0, 255, 0));
  EXPECT_THAT(readPng(pngOf({4, 1, 2}, {0x1B})).pixels, ElementsAre(0, 85, 170, 255));
  EXPECT_THAT(readPng(pngOf({3, 1, 4}, {0x01, 0xF0})).pixels, ElementsAre(0, 17, 255));
  EXPECT_EQ(readPng(pngOf({3, 1, 1}, {0x40})).bitsPerPixel, 8);
}

TEST(ReadPng, TakesPalettesAsColour) {
  PngSpec spec{3, 1, 2, PNG_COLOR_TYPE_PALETTE};
  spec.palette = {{1, 2, 3}, {4, 5, 6}, {255, 0, 9}};
  EXPECT_THAT(readPng(pngOf(spec, {0x18})).pixels, ElementsAre(1, 2, 3, 4, 5, 6, 255, 0, 9));
  spec.alpha = {255, 255, 255};
  EXPECT_THAT(readPng(pngOf(spec, {0x18})).pixels, ElementsAre(1, 2, 3, 4, 5, 6, 255, 0, 9));
  spec.alpha = {255, 254, 255};
  EXPECT_EQ(refusalOf(pngOf(spec, {0x18})), "it has transparent pixels");
  EXPECT_EQ(refusalOf(pngOf(spec, {0x08})), "accepted");  // nobody uses that entry
}

TEST(ReadPng, LeavesAlphaOutWhenAllIsOpaque) {
  const Picture grey = readPng(pngOf({2, 1, 8, PNG_COLOR_TYPE_GRAY_ALPHA}, {7, 255, 8, 255}));
  EXPECT_THAT(grey.pixels, ElementsAre(7, 8));
  EXPECT_EQ(grey.bytesPerPixel, 1);
  const Picture wide =
      readPng(pngOf({2, 1, 16, PNG_COLOR_TYPE_GRAY_ALPHA}, {1, 2, 0xFF, 0xFF, 3, 4, 0xFF, 0xFF}));
  EXPECT_THAT(wordsOf(wide), ElementsAre(0x0102, 0x0304));
  const Picture colour = readPng(pngOf({2, 1, 8, PNG_COLOR_TYPE_RGB_ALPHA}, {1, 2, 3, 255, 4, 5, 6, 255}));
  EXPECT_THAT(colour.pixels, ElementsAre(1, 2, 3, 4, 5, 6));
  EXPECT_EQ(refusalOf(pngOf({2, 1, 8, PNG_COLOR_TYPE_GRAY_ALPHA}, {7, 255, 8, 254})),
            "it has transparent pixels");
  EXPECT_EQ(refusalOf(pngOf({1, 1, 16, PNG_COLOR_TYPE_GRAY_ALPHA}, {1, 2, 0xFF, 0xFE})),
            "it has transparent pixels");
  EXPECT_EQ(refusalOf(pngOf({1, 1, 8, PNG_COLOR_TYPE_RGB_ALPHA}, {1, 2, 3, 0})), "it has transparent pixels");
  PngSpec key{2, 1, 8, PNG_COLOR_TYPE_GRAY};
  key.transparentGrey = 9;
  EXPECT_EQ(refusalOf(pngOf(key, {7, 8})), "accepted");
  EXPECT_EQ(refusalOf(pngOf(key, {7, 9})), "it has transparent pixels");
}

TEST(ReadPng, RefusesDeepColour) {
  EXPECT_EQ(refusalOf(pngOf({1, 1, 16, PNG_COLOR_TYPE_RGB}, Bytes(6))),
            "colour has 8 bits a component: this PNG has 16");
}

// The three ways to make 16 bits of 12, with one value that tells them apart.
TEST(ReadPng, TakesSignificantBitsThatHoldForAllSamples) {
  const PngSpec spec{3, 1, 16, PNG_COLOR_TYPE_GRAY, 12};
  // Zeros behind 0x1A0, its first bits again, and 0x1A0 / 4095 of 65535, which is 6657.5.
  for (const std::uint16_t middle : {std::uint16_t{0x1A00}, std::uint16_t{0x1A01}, std::uint16_t{0x1A02}}) {
    const Picture picture = readPng(pngOf(spec, highByteFirst({0, middle, 0xFFFF})));
    EXPECT_EQ(picture.bitsPerPixel, 12);
    EXPECT_THAT(wordsOf(picture), ElementsAre(0, 0x1A0, 0xFFF));
  }
  const Picture other = readPng(pngOf(spec, highByteFirst({0, 0xABC3, 0xFFFF})));
  EXPECT_EQ(other.bitsPerPixel, 16);
  EXPECT_THAT(wordsOf(other), ElementsAre(0, 0xABC3, 0xFFFF));
  const Picture few = readPng(pngOf({1, 1, 16, PNG_COLOR_TYPE_GRAY, 8}, {0, 0}));
  EXPECT_EQ(few.bitsPerPixel, 16);
}

TEST(ReadPng, IsRefusedWhereverItIsCut) {
  for (const bool isInterlaced : {false, true}) {
    const Bytes whole = pngOf({9, 9, 8, PNG_COLOR_TYPE_RGB, 0, isInterlaced}, someBytes(243));
    for (std::size_t length = 8; length < whole.size(); ++length) {
      EXPECT_THAT(refusalOf({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}),
                  HasSubstr("the PNG is damaged"))
          << length;
    }
  }
}

// Chunks as the format has them, with right checksums: what stands in them may be anything.
void appendChunk(Bytes& file, const std::string& type, const Bytes& data) {
  const auto appendNumber = [&file](std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<unsigned char>(number >> shift));
  };
  appendNumber(static_cast<std::uint32_t>(data.size()));
  const std::size_t begin = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), data.begin(), data.end());
  std::uint32_t sum = 0xFFFFFFFF;
  for (std::size_t i = begin; i < file.size(); ++i) {
    sum ^= file[i];
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  appendNumber(~sum);
}

Bytes claiming(std::uint32_t width, std::uint32_t height, unsigned char bits, unsigned char type,
               bool isInterlaced) {
  Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  Bytes header;
  for (const std::uint32_t side : {width, height}) {
    for (int shift = 24; shift >= 0; shift -= 8) header.push_back(static_cast<unsigned char>(side >> shift));
  }
  header.insert(header.end(), {bits, type, 0, 0, static_cast<unsigned char>(isInterlaced ? 1 : 0)});
  appendChunk(file, "IHDR", header);
  appendChunk(file, "IDAT", {0x78, 0x9C, 0x63, 0x60, 0x60, 0x60, 0x60, 0x60});  // the beginning of some zeros
  appendChunk(file, "IEND", {});
  return file;
}

TEST(ReadPng, TakesNoMemoryForSidesThatItOnlyClaims) {
  const auto peak = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  const long before = peak();
  for (const bool isInterlaced : {false, true}) {
    EXPECT_THAT(refusalOf(claiming(8192, 8192, 16, PNG_COLOR_TYPE_GRAY, isInterlaced)), HasSubstr("damaged"));
    EXPECT_THAT(refusalOf(claiming(65535, 1024, 8, PNG_COLOR_TYPE_RGB, isInterlaced)), HasSubstr("damaged"));
  }
  EXPECT_THAT(refusalOf(claiming(65535, 65535, 8, PNG_COLOR_TYPE_RGB, false)), HasSubstr("so short a file"));
  EXPECT_EQ(refusalOf(claiming(65536, 1, 8, 0, false)), "the width is not 1 to 65535");
  EXPECT_EQ(refusalOf(claiming(1, 0, 8, 0, false)), "the height is not 1 to 65535");
  EXPECT_EQ(refusalOf(claiming(0xFFFFFFFF, 0xFFFFFFFF, 8, 0, false)), "the width is not 1 to 65535");
  EXPECT_LT(peak() - before, 50 * 1024);
}

TEST(ReadPng, TakesNoMemoryForChunksThatItOnlyClaims) {
  const auto peak = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  const long before = peak();
  const Bytes plain = pngOf({1, 1, 8, PNG_COLOR_TYPE_GRAY}, {7});
  for (const char* const name :
       {"PLTE", "bKGD", "cHRM", "eXIf", "gAMA", "hIST", "iCCP", "iTXt", "oFFs", "pCAL",
        "pHYs", "sBIT", "sCAL", "sPLT", "sRGB", "tEXt", "tIME", "tRNS", "zTXt", "unKn"}) {
    constexpr std::ptrdiff_t kHeaderEnd = 33;
    Bytes file(plain.begin(), plain.begin() + kHeaderEnd);
    appendChunk(file, name, {'a', 0, 0, 0});
    file[kHeaderEnd] = 0x60;  // of its length
    file.insert(file.end(), plain.begin() + kHeaderEnd, plain.end());
    EXPECT_THAT(refusalOf(file), HasSubstr("damaged")) << name;
  }
  EXPECT_LT(peak() - before, 50 * 1024);
}

TEST(ReadPng, RefusesWhatIsNoPicture) {
  EXPECT_THAT(refusalOf(claiming(1, 1, 3, PNG_COLOR_TYPE_GRAY, false)), HasSubstr("damaged"));
  EXPECT_THAT(refusalOf(claiming(1, 1, 8, 1, false)), HasSubstr("damaged"));
  EXPECT_THAT(refusalOf(claiming(1, 1, 8, PNG_COLOR_TYPE_PALETTE, false)), HasSubstr("damaged"));
  Bytes other = pngOf({1, 1, 8, PNG_COLOR_TYPE_GRAY}, {7});
  other[12] = 'J';
  EXPECT_THAT(refusalOf(other), HasSubstr("damaged"));
}

// The library passes over an unknown chunk in front of the header; its bytes must not count as the sides.
TEST(ReadPng, RefusesSidesThatAreNotTheHeaders) {
  const Bytes plain = pngOf({1, 60, 8, PNG_COLOR_TYPE_GRAY}, Bytes(60, 7));
  Bytes file(plain.begin(), plain.begin() + 8);
  appendChunk(file, "abCd", {0, 0, 0xEA, 0x60, 0, 0, 0, 60});  // 60000 x 60
  file.insert(file.end(), plain.begin() + 8, plain.end());
  EXPECT_EQ(refusalOf(file), "the PNG is damaged: it does not begin with its header");
}

// 40 of them would take 40 MB unpacked.
TEST(ReadPng, PassesOverTextsWhateverTheyUnpackTo) {
  const Bytes plain = pngOf({1, 1, 8, PNG_COLOR_TYPE_GRAY}, {7});
  const Bytes text(1000000, 'x');
  uLongf packedSize = compressBound(text.size());
  Bytes chunk(packedSize);
  ASSERT_EQ(compress2(chunk.data(), &packedSize, text.data(), text.size(), 9), Z_OK);
  chunk.resize(packedSize);
  chunk.insert(chunk.begin(), {'k', 0, 0});
  constexpr std::ptrdiff_t kBehindHeader = 8 + 25;
  Bytes file(plain.begin(), plain.begin() + kBehindHeader);
  for (int i = 0; i < 40; ++i) appendChunk(file, "zTXt", chunk);
  file.insert(file.end(), plain.begin() + kBehindHeader, plain.end());
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_THAT(readPng(file).pixels, ElementsAre(7));
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 10 * 1024);
}

TEST(ReadPng, EndsWellWhateverBytesAreWrong) {
  std::mt19937 random(1);
  for (const bool isInterlaced : {false, true}) {
    PngSpec spec{9, 9, 8, PNG_COLOR_TYPE_PALETTE, 0, isInterlaced};
    spec.palette = {{1, 2, 3}, {4, 5, 6}};
    const Bytes whole = pngOf(spec, Bytes(81, 1));
    for (int round = 0; round < 2000; ++round) {
      Bytes damaged = whole;
      damaged[8 + random() % (damaged.size() - 8)] = static_cast<unsigned char>(random());
      EXPECT_EQ(refusalOf(damaged).find('\n'), std::string::npos);
    }
  }
}

}  // namespace
