#include "image/dicom_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace {

using testing::ElementsAre;
using ImageM08 = CDicomImageTemplate<CPixelM08, CPixelDDD>;
using ImageM16 = CDicomImageTemplate<CPixelM16, CPixelDDD>;
using ImageC08 = CDicomImageTemplate<CPixelC08, CPixelCCC>;

static_assert(std::is_abstract_v<CDicomImage> && !std::is_copy_constructible_v<CDicomImage>);
static_assert(std::is_same_v<decltype(CDicomImage::m_nBufferSize), unsigned int> &&
              sizeof(CDicomImage::m_bOwnBuffer) == 1);

/// Only what must be overridden.
class BareImage final : public CDicomImage {
 public:
  int PaintImage(CSize, CPoint, CSize, CRect, ORIENTATION, int, void*, unsigned long, int, COLOR_TYPE,
                 CDicomImage**) const override {
    return 0;
  }
  int ResampleImage(CDicomImage**, int&, int&) const override { return 0; }
  COLOR_TYPE GetColorType() const override { return COLOR_TYPE_C08; }
};

TEST(DicomImage, StartsWithoutABufferButAsItsOwner) {
  for (int type = 0; type < 3; ++type) {
    const auto image = CreateDicomImage(static_cast<COLOR_TYPE>(type));
    EXPECT_EQ(image->m_pBuffer, nullptr);
    EXPECT_EQ(image->m_Size, CSize(0, 0));
    EXPECT_EQ(image->m_nBufferSize, 0u);
    EXPECT_TRUE(image->m_bOwnBuffer);
    unsigned char scratch[6] = {9, 9, 9, 9, 9, 9};
    EXPECT_EQ(image->GetImageLine(0, 0), nullptr);
    EXPECT_EQ(image->GetImageLine(0, 0, 1, scratch), scratch);
    EXPECT_EQ(scratch[0], 0);
  }
}

TEST(DicomImage, BaseRefusesAndFindsNothing) {
  BareImage image;
  unsigned char byte = 0;
  EXPECT_EQ(image.Create(1, 1), 0);
  EXPECT_EQ(image.Create(1, 1, &byte), 0);
  EXPECT_EQ(image.GetImageLine(0, 0), nullptr);
  EXPECT_EQ(image.GetImageLine(0, 0, 1, &byte), nullptr);
}

TEST(DicomImage, FactoryFollowsTheColorType) {
  const auto made = [](int type) { return CreateDicomImage(static_cast<COLOR_TYPE>(type)); };
  EXPECT_NE(dynamic_cast<ImageC08*>(made(0).get()), nullptr);
  EXPECT_NE(dynamic_cast<ImageM08*>(made(1).get()), nullptr);
  EXPECT_NE(dynamic_cast<ImageM16*>(made(2).get()), nullptr);
  EXPECT_NE(dynamic_cast<ImageC08*>(made(3).get()), nullptr) << "any other is colour";
  EXPECT_NE(dynamic_cast<ImageC08*>(made(-1).get()), nullptr);
  for (int type = 0; type < 3; ++type) EXPECT_EQ(made(type)->GetColorType(), type);
}

TEST(DicomImage, CreateCountsBytes) {
  for (const auto& [type, bytes] :
       {std::pair{COLOR_TYPE_C08, 105u}, {COLOR_TYPE_M08, 35u}, {COLOR_TYPE_M16, 70u}}) {
    const auto image = CreateDicomImage(type);
    ASSERT_EQ(image->Create(7, 5), 1);
    EXPECT_EQ(image->m_nBufferSize, bytes);
    EXPECT_EQ(image->m_Size, CSize(7, 5));
    EXPECT_TRUE(image->m_bOwnBuffer);
    std::memset(image->m_pBuffer, 1, bytes);
  }
}

TEST(DicomImage, CreatePassesSidesOfZero) {
  ImageM16 image;
  EXPECT_EQ(image.Create(0, 5), 1);
  EXPECT_EQ(image.m_nBufferSize, 0u);
  EXPECT_EQ(image.m_Size, CSize(0, 5));
  EXPECT_EQ(image.GetImageLine(0, 0), nullptr);
}

TEST(DicomImage, CreateRefusesWhat32BitsCannotCount) {
  unsigned char byte = 0;
  for (const auto& [cx, cy] :
       {std::pair{-1, 1}, {1, -1}, {INT_MIN, INT_MIN}, {65536, 65536}, {INT_MAX, INT_MAX}}) {
    for (int type = 0; type < 3; ++type) {
      const auto image = CreateDicomImage(static_cast<COLOR_TYPE>(type));
      EXPECT_EQ(image->Create(cx, cy), 0);
      EXPECT_EQ(image->Create(cx, cy, &byte), 0);
      EXPECT_EQ(image->m_pBuffer, nullptr);
      EXPECT_EQ(image->m_Size, CSize(0, 0)) << "as before";
    }
  }
  ImageM16 words;
  EXPECT_EQ(words.Create(1 << 16, 1 << 15, &byte), 0) << "exactly 2^32 bytes";
  ImageC08 colours;
  EXPECT_EQ(colours.Create(37838, 37838, &byte), 0) << "3 * 37838^2 is 2^32 + 175436";
  EXPECT_EQ(colours.Create(37837, 37837, &byte), 1) << "below 2^32";
  EXPECT_EQ(colours.m_nBufferSize, 4294915707u);
}

TEST(DicomImage, CreateKeepsNoEarlierBufferAndNoOwnership) {
  ImageM08 image;
  ASSERT_EQ(image.Create(2, 2), 1);
  const std::unique_ptr<unsigned char[]> earlier(image.m_pBuffer);  // still alive: the caller's to free now
  ASSERT_EQ(image.Create(3, 3), 1);
  EXPECT_NE(image.m_pBuffer, earlier.get());
  earlier[3] = 1;

  unsigned char outside[4];
  ImageM08 lent;
  ASSERT_EQ(lent.Create(2, 2, outside), 1);
  ASSERT_EQ(lent.Create(1, 1), 1);
  EXPECT_FALSE(lent.m_bOwnBuffer) << "creating leaves the ownership alone";
  const std::unique_ptr<unsigned char[]> orphan(lent.m_pBuffer);
}

TEST(DicomImage, LeavesAnAdoptedBufferAlone) {
  unsigned char outside[4] = {1, 2, 3, 4};
  {
    ImageM08 image;
    ASSERT_EQ(image.Create(2, 2, outside), 1);
    EXPECT_EQ(image.m_pBuffer, outside);
    EXPECT_EQ(image.m_nBufferSize, 4u);
    EXPECT_FALSE(image.m_bOwnBuffer);
  }
  EXPECT_THAT(outside, ElementsAre(1, 2, 3, 4));
}

TEST(DicomImage, AdoptsNullOnlyWithoutPixels) {
  ImageM08 image;
  EXPECT_EQ(image.Create(2, 2, nullptr), 0);
  EXPECT_EQ(image.Create(0, 2, nullptr), 1);
}

TEST(DicomImage, FindsPixels) {
  std::uint16_t pixels[6] = {};
  ImageM16 image;
  ASSERT_EQ(image.Create(3, 2, pixels), 1);
  EXPECT_EQ(image.GetImageLine(2, 1), reinterpret_cast<unsigned char*>(&pixels[5]));
  EXPECT_EQ(image.GetImageLine(0, 0), reinterpret_cast<unsigned char*>(&pixels[0]));
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {3, 0}, {0, 2}})
    EXPECT_EQ(image.GetImageLine(x, y), nullptr);
}

TEST(DicomImage, LinesArePaddedInAnyFormat) {
  unsigned char grey[2] = {7, 8};
  unsigned char colour[6] = {1, 2, 3, 4, 5, 6};
  std::uint16_t words[2] = {0x0707, 0x0808};
  ImageM08 m08;
  ImageC08 c08;
  ImageM16 m16;
  ASSERT_EQ(m08.Create(2, 1, grey) + c08.Create(2, 1, colour) + m16.Create(2, 1, words), 3);
  alignas(2) unsigned char scratch[15];

  EXPECT_EQ(m08.GetImageLine(-2, 0, 5, scratch), scratch);
  EXPECT_THAT(std::vector<int>(scratch, scratch + 5), ElementsAre(0, 0, 7, 8, 0));
  EXPECT_EQ(m16.GetImageLine(-2, 0, 5, scratch), scratch);
  EXPECT_THAT(std::vector<int>(scratch, scratch + 10), ElementsAre(0, 0, 0, 0, 7, 7, 8, 8, 0, 0));
  EXPECT_EQ(c08.GetImageLine(-2, 0, 5, scratch), scratch);
  EXPECT_THAT(std::vector<int>(scratch, scratch + 15),
              ElementsAre(0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0, 0));

  EXPECT_EQ(m08.GetImageLine(0, 1, 4, scratch), scratch) << "the row at the height";
  EXPECT_THAT(std::vector<int>(scratch, scratch + 4), ElementsAre(0, 0, 0, 0));
  EXPECT_EQ(m16.GetImageLine(1, 0, 1, scratch), reinterpret_cast<unsigned char*>(&words[1]))
      << "into the image";
}

class SaveToFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "dicom_image_XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    m_folder = name;
  }
  void TearDown() override { std::filesystem::remove_all(m_folder); }

  std::filesystem::path m_folder;
};

TEST_F(SaveToFile, WritesTheBufferAndNothingElse) {
  unsigned char pixels[12] = {0, 1, 2, 3, 4, 10, 13, 26, 255, 9, 8, 7};
  ImageC08 image;
  ASSERT_EQ(image.Create(2, 2, pixels), 1);
  const std::string path = m_folder / "out.raw";
  std::ofstream(path) << "something longer that was there before";
  EXPECT_EQ(image.SaveToFile(path.c_str()), 1);
  std::ifstream file(path, std::ios::binary);
  const std::string written((std::istreambuf_iterator<char>(file)), {});
  EXPECT_EQ(written, std::string(reinterpret_cast<char*>(pixels), 12));
}

TEST_F(SaveToFile, WritesAnEmptyFileForAnEmptyPicture) {
  const std::string path = m_folder / "empty.raw";
  EXPECT_EQ(ImageM08().SaveToFile(path.c_str()), 1);
  EXPECT_EQ(std::filesystem::file_size(path), 0u);
}

TEST_F(SaveToFile, RefusesPathsThatCannotBeOpened) {
  const std::string path = m_folder / "missing" / "out.raw";
  EXPECT_EQ(ImageM08().SaveToFile(path.c_str()), 0);
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(ImageM08().SaveToFile(nullptr), 0);
}

CSize encapsulated(int cx, int cy, CSize box) {
  static unsigned char pixel[1];
  ImageM08 image;
  image.Create(0, 0, pixel);
  image.m_Size = CSize(cx, cy);  // the pixels do not matter here
  return image.EncapsulatedSize(box);
}

TEST(EncapsulatedSize, FitsTheShapeIntoTheBox) {
  EXPECT_EQ(encapsulated(512, 256, CSize(100, 100)), CSize(100, 50));
  EXPECT_EQ(encapsulated(256, 512, CSize(100, 100)), CSize(50, 100));
  EXPECT_EQ(encapsulated(300, 200, CSize(100, 100)), CSize(100, 66)) << "truncated";
  EXPECT_EQ(encapsulated(100, 100, CSize(400, 300)), CSize(300, 300)) << "enlarged as well";
}

TEST(EncapsulatedSize, ReturnsItsOwnSizeUnchanged) {
  EXPECT_EQ(encapsulated(5, 3, CSize(5, 3)), CSize(5, 3)) << "not even doubled";
  EXPECT_EQ(encapsulated(0, 0, CSize(0, 0)), CSize(0, 0));
}

TEST(EncapsulatedSize, DoublesUntilBothSidesHave32Pixels) {
  EXPECT_EQ(encapsulated(512, 256, CSize(40, 40)), CSize(80, 40));
  EXPECT_EQ(encapsulated(64, 64, CSize(31, 31)), CSize(62, 62));
  EXPECT_EQ(encapsulated(64, 64, CSize(32, 32)), CSize(32, 32));
}

TEST(EncapsulatedSize, TakesItsOwnSizeWhereASideWouldVanish) {
  EXPECT_EQ(encapsulated(1000, 10, CSize(50, 50)), CSize(4000, 40));
  EXPECT_EQ(encapsulated(100, 50, CSize(0, 0)), CSize(100, 50));
}

TEST(EncapsulatedSize, RefusesWhatHasNoSuchSize) {
  const CSize none(0, 0);
  EXPECT_EQ(encapsulated(0, 10, CSize(5, 5)), none) << "division by a side of 0";
  EXPECT_EQ(encapsulated(10, 0, CSize(5, 5)), none);
  EXPECT_EQ(encapsulated(0, 0, CSize(5, 5)), none);
  EXPECT_EQ(encapsulated(10, 10, CSize(-5, -5)), none) << "would double for ever";
  EXPECT_EQ(encapsulated(10, 10, CSize(-100, 100)), none);
  EXPECT_EQ(encapsulated(10, 10, CSize(100, INT_MIN)), none);
  EXPECT_EQ(encapsulated(INT_MAX, 1, CSize(64, 64)), none) << "doubled out of an int";
  EXPECT_EQ(encapsulated(30000, 30000, CSize(100000, 100000)), none) << "a product beyond 32 bits";
  EXPECT_EQ(encapsulated(10, 10, tagSIZE{LONG_MAX, LONG_MIN}), none);
}

TEST(EncapsulatedSize, ReachesTheLargestInt) {
  EXPECT_EQ(encapsulated(1 << 15, 1 << 15, CSize(65535, 65535)), CSize(65535, 65535))
      << "products of 2^31 - 2^15";
  EXPECT_EQ(encapsulated(1 << 15, 1 << 15, CSize(65536, 65536)), CSize(0, 0)) << "products of 2^31";
}

}  // namespace
