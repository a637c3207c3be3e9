// The way into the painter: the destination images that PaintImage and ResampleImage make.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "image/dicom_image.h"

namespace {

using testing::ElementsAre;

template <class Pixel, class Accumulator>
class Lent : public CDicomImageTemplate<Pixel, Accumulator> {
 public:
  Lent(int cx, int cy, std::vector<Pixel> pixels) : m_pixels(std::move(pixels)) {
    EXPECT_EQ(this->Create(cx, cy, m_pixels.data()), 1);
  }

 private:
  std::vector<Pixel> m_pixels;
};
using LentM08 = Lent<CPixelM08, CPixelDDD>;
using LentM16 = Lent<CPixelM16, CPixelDDD>;
using LentC08 = Lent<CPixelC08, CPixelCCC>;

struct Result {
  int code;
  std::unique_ptr<CDicomImage> image;
  std::vector<int> bytes;
};

Result painted(const CDicomImage& source, CSize size, int colorType, void* table = nullptr, int mode = 1) {
  CDicomImage* destination = nullptr;
  CRect clip(CPoint(0, 0), size);
  Result result{};
  result.code = source.PaintImage(size, CPoint(0, 0), size, clip, ORIENTATION_AS_STORED, 0, table, 0, mode,
                                  static_cast<COLOR_TYPE>(colorType), &destination);
  result.image.reset(destination);
  if (destination != nullptr) {
    result.bytes.assign(destination->m_pBuffer, destination->m_pBuffer + destination->m_nBufferSize);
  }
  return result;
}

TEST(PaintImageEntry, MakesADestinationOfTheAskedFormatAndSize) {
  const LentM08 source(2, 1, {{10}, {20}});
  std::vector<std::uint16_t> table(256, 0x0303);
  for (int type = 0; type < 3; ++type) {
    const Result r = painted(source, CSize(4, 3), type, table.data());
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.image->GetColorType(), type);
    EXPECT_EQ(r.image->m_Size, CSize(4, 3));
    EXPECT_TRUE(r.image->m_bOwnBuffer);
    EXPECT_THAT(r.bytes, testing::Each(3));
  }
}

TEST(PaintImageEntry, ConvertsThroughTables) {
  std::vector<unsigned char> byBytes(65536);
  byBytes[1] = 101, byBytes[65535] = 102, byBytes[4] = 104;
  std::vector<std::uint16_t> byWords(65536);
  byWords[1] = 0x1111, byWords[65535] = 0x2222, byWords[4] = 0x4444;

  const LentM16 words(2, 1, {{1}, {65535}});
  EXPECT_THAT(painted(words, CSize(2, 1), COLOR_TYPE_M08, byBytes.data()).bytes, ElementsAre(101, 102));
  EXPECT_THAT(painted(words, CSize(2, 1), COLOR_TYPE_M16, byWords.data()).bytes,
              ElementsAre(0x11, 0x11, 0x22, 0x22));
  EXPECT_THAT(painted(words, CSize(2, 1), COLOR_TYPE_C08, byBytes.data()).bytes,
              ElementsAre(101, 101, 101, 102, 102, 102));

  const LentM08 grey(2, 1, {{1}, {4}});
  EXPECT_THAT(painted(grey, CSize(2, 1), COLOR_TYPE_M08, byBytes.data()).bytes, ElementsAre(101, 104));
  EXPECT_THAT(painted(grey, CSize(2, 1), COLOR_TYPE_M16, byWords.data()).bytes,
              ElementsAre(0x11, 0x11, 0x44, 0x44));
  EXPECT_THAT(painted(grey, CSize(2, 1), COLOR_TYPE_C08, byBytes.data()).bytes,
              ElementsAre(101, 101, 101, 104, 104, 104));

  const LentC08 colour(1, 1, {{4, 4, 7}});  // (4 + 2 * 4 + 7) >> 2 = 4
  byBytes[7] = 107;
  EXPECT_THAT(painted(colour, CSize(1, 1), COLOR_TYPE_M08, byBytes.data()).bytes, ElementsAre(104));
  EXPECT_THAT(painted(colour, CSize(1, 1), COLOR_TYPE_M16, byWords.data()).bytes, ElementsAre(0x44, 0x44));
  EXPECT_THAT(painted(colour, CSize(1, 1), COLOR_TYPE_C08, byBytes.data()).bytes, ElementsAre(104, 104, 107));
}

TEST(PaintImageEntry, KeepsValuesWithoutATable) {
  const LentM08 grey(1, 1, {{200}});
  EXPECT_THAT(painted(grey, CSize(1, 1), COLOR_TYPE_M16).bytes, ElementsAre(200, 0));
  EXPECT_THAT(painted(grey, CSize(1, 1), COLOR_TYPE_C08).bytes, ElementsAre(200, 200, 200));
  const LentM16 words(1, 1, {{0x1234}});
  EXPECT_THAT(painted(words, CSize(1, 1), COLOR_TYPE_C08).bytes, ElementsAre(0x34, 0x34, 0x34))
      << "the low 8 bits";
  const LentC08 colour(1, 1, {{10, 20, 31}});
  EXPECT_THAT(painted(colour, CSize(1, 1), COLOR_TYPE_M16).bytes, ElementsAre(20, 0));
}

TEST(PaintImageEntry, AllocatesRoomForSourcePixelsWhereATableIsMissing) {
  const LentC08 source(2, 1, {{1, 2, 3}, {4, 5, 6}});
  const Result r = painted(source, CSize(2, 1), COLOR_TYPE_M08);
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.image->m_nBufferSize, 2u) << "the published size stays";
  EXPECT_THAT(std::vector<int>(r.image->m_pBuffer, r.image->m_pBuffer + 6), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(PaintImageEntry, RefusesDestinationsThatDoNotFit) {
  const LentM08 source(1, 1, {{1}});
  for (const tagSIZE size : {tagSIZE{-1, 1}, tagSIZE{1, -1}, tagSIZE{1L << 31, 1}, tagSIZE{(1L << 32) + 1, 1},
                             tagSIZE{65536, 65536}, tagSIZE{LONG_MIN, LONG_MAX}}) {
    const Result r = painted(source, size, COLOR_TYPE_M08);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.image, nullptr);
  }
}

TEST(PaintImageEntry, PassesSidesOfZero) {
  const LentM08 source(1, 1, {{1}});
  const Result r = painted(source, CSize(0, 5), COLOR_TYPE_M08);
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.image->m_Size, CSize(0, 5));
}

TEST(PaintImageEntry, KeepsTheDestinationWhenPaintingIsRefused) {
  std::vector<CPixelM08> pixels(4200UL * 4200);
  const LentM08 source(4200, 4200, std::move(pixels));
  const Result r = painted(source, CSize(1, 1), COLOR_TYPE_M08);
  EXPECT_EQ(r.code, 0);
  EXPECT_THAT(r.bytes, ElementsAre(0));
}

TEST(PaintImageEntry, PaintsAnImageWithoutABufferAsBackground) {
  const CDicomImageTemplate<CPixelM08, CPixelDDD> source;
  const Result r = painted(source, CSize(2, 1), COLOR_TYPE_M08);
  EXPECT_EQ(r.code, 1);
  EXPECT_THAT(r.bytes, ElementsAre(0, 0));
}

TEST(PaintImageEntry, RecreatesWhatAnUnknownColorTypeFinds) {
  const LentM08 source(1, 1, {{1}});
  const auto paintInto = [&source](CDicomImage** destination, CSize size, int type) {
    return source.PaintImage(size, CPoint(0, 0), size, CRect(0, 0, 9, 9), ORIENTATION_AS_STORED, 0, nullptr,
                             0, 1, static_cast<COLOR_TYPE>(type), destination);
  };
  CDicomImage* nothing = nullptr;
  EXPECT_EQ(paintInto(&nothing, CSize(2, 2), 3), 0);
  EXPECT_EQ(nothing, nullptr);

  CDicomImage* owned = CreateDicomImage(COLOR_TYPE_M16).release();
  ASSERT_EQ(owned->Create(1, 1), 1);
  EXPECT_EQ(paintInto(&owned, CSize(5, 4), -1), 0);
  ASSERT_NE(owned, nullptr);
  EXPECT_EQ(owned->m_Size, CSize(5, 4));
  EXPECT_EQ(owned->m_nBufferSize, 40u);
  EXPECT_EQ(paintInto(&owned, CSize(-5, 4), 3), 0);
  EXPECT_EQ(owned, nullptr) << "destroyed and cleared";

  unsigned char outside[1] = {77};
  CDicomImage* lent = CreateDicomImage(COLOR_TYPE_M08).release();
  ASSERT_EQ(lent->Create(1, 1, outside), 1);
  EXPECT_EQ(paintInto(&lent, CSize(2, 2), 3), 0);
  EXPECT_TRUE(lent->m_bOwnBuffer) << "the new buffer is the image's own";
  EXPECT_EQ(outside[0], 77);
  EXPECT_EQ(paintInto(&lent, tagSIZE{1L << 40, 2}, 3), 0);
  EXPECT_EQ(lent, nullptr);
}

TEST(ResampleImage, FitsTheBoxAndKeepsTheFormat) {
  std::vector<CPixelM16> pixels(128UL * 64);
  for (std::size_t i = 1; i < pixels.size(); i += 2) pixels[i].value = 0x0A0A;
  const LentM16 source(128, 64, std::move(pixels));
  CDicomImage* made = nullptr;
  int width = 64;
  int height = 64;
  EXPECT_EQ(source.ResampleImage(&made, width, height), 1);
  const std::unique_ptr<CDicomImage> image(made);
  EXPECT_EQ(width, 64);
  EXPECT_EQ(height, 32) << "the fitted size comes back";
  EXPECT_EQ(image->m_Size, CSize(64, 32));
  EXPECT_EQ(image->GetColorType(), COLOR_TYPE_M16);
  EXPECT_THAT(std::vector<int>(image->m_pBuffer, image->m_pBuffer + image->m_nBufferSize), testing::Each(5))
      << "the mean of 0 and 0x0A0A is 0x0505";
}

TEST(ResampleImage, ChangesNothingWhenItRefuses) {
  const LentM08 source(1, 1, {{1}});
  const auto refuses = [](const CDicomImage& image, CDicomImage* held, int w, int h) {
    CDicomImage* made = held;
    int width = w;
    int height = h;
    EXPECT_EQ(image.ResampleImage(&made, width, height), 0);
    EXPECT_EQ(made, held);
    EXPECT_EQ(width, w);
    EXPECT_EQ(height, h);
  };
  CDicomImageTemplate<CPixelM08, CPixelDDD> other;
  refuses(source, &other, 64, 64);
  refuses(source, nullptr, 0, 64);
  refuses(source, nullptr, 64, 0);
  refuses(source, nullptr, -64, 64);
  refuses(other, nullptr, 64, 64);  // no pixels to fit
}

}  // namespace
