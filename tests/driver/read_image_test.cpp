#include "driver/read_image.h"

#include <gtest/gtest.h>

#include <climits>

#include "support/cli_temp_folder.h"

namespace {

using ei4::test::Bytes;

class ReadImage : public testing::Test {
 protected:
  static std::unique_ptr<CDicomImage> readAs(const std::string& path, CSize size, COLOR_TYPE type) {
    return ReadDicomImage(path.c_str(), size, type, nullptr);
  }
  static Bytes pixelsOf(const CDicomImage& image) {
    return Bytes(image.m_pBuffer, image.m_pBuffer + image.m_nBufferSize);
  }

  ei4::test::TempFolder folder;
};

}  // namespace

TEST_F(ReadImage, TakesTheBytesAsTheyAre) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  const auto path = folder.write("a.raw", bytes);
  for (const auto& [type, size] :
       {std::pair{COLOR_TYPE_M08, CSize(4, 3)}, std::pair{COLOR_TYPE_M16, CSize(3, 2)},
        std::pair{COLOR_TYPE_C08, CSize(2, 2)}}) {
    const auto image = readAs(path, size, type);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->GetColorType(), type);
    EXPECT_EQ(image->m_Size, size);
    EXPECT_EQ(pixelsOf(*image), bytes);
  }
}

TEST_F(ReadImage, TakesAnyOtherFormatForColour) {
  const auto path = folder.write("a.raw", Bytes{1, 2, 3});
  const auto image = readAs(path, CSize(1, 1), static_cast<COLOR_TYPE>(7));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->GetColorType(), COLOR_TYPE_C08);
}

TEST_F(ReadImage, LeavesTheRestOfAShortFileBlack) {
  const auto image = readAs(folder.write("a.raw", Bytes{9, 8, 7}), CSize(3, 3), COLOR_TYPE_M08);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(pixelsOf(*image), (Bytes{9, 8, 7, 0, 0, 0, 0, 0, 0}));
}

TEST_F(ReadImage, RefusesAShortFileOfMoreThan64Megapixels) {
  const auto path = folder.write("a.raw", Bytes{9, 8, 7});
  EXPECT_EQ(readAs(path, CSize(8192, 8193), COLOR_TYPE_M08), nullptr);
  const auto image = readAs(path, CSize(8192, 8192), COLOR_TYPE_M08);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->m_pBuffer[3], 0);
  EXPECT_EQ(image->m_pBuffer[image->m_nBufferSize - 1], 0);
}

TEST_F(ReadImage, ReadsALongerFileInPart) {
  const auto image = readAs(folder.write("a.raw", Bytes{9, 8, 7}), CSize(2, 1), COLOR_TYPE_M08);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(pixelsOf(*image), (Bytes{9, 8}));
}

TEST_F(ReadImage, GivesAnEmptyImageForAZeroSide) {
  const auto image = readAs(folder.write("a.raw", Bytes{9}), CSize(0, 5), COLOR_TYPE_M08);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->m_nBufferSize, 0U);
}

TEST_F(ReadImage, RefusesAFileThatDoesNotOpen) {
  EXPECT_EQ(readAs(folder.path("none.raw"), CSize(1, 1), COLOR_TYPE_M08), nullptr);
  CSize size(1, 1);
  COLOR_TYPE type = COLOR_TYPE_M08;
  EXPECT_EQ(ReadDicomImage(nullptr, size, type, nullptr), nullptr);
}

TEST_F(ReadImage, RefusesWhatOpensButCannotBeRead) {
  EXPECT_EQ(readAs(folder.path("."), CSize(1, 1), COLOR_TYPE_M08), nullptr);
}

TEST_F(ReadImage, RefusesASizeThatNoImageHas) {
  const auto path = folder.write("a.raw", Bytes{9});
  CSize beyond(1, 1);
  beyond.cx = (1L << 32) + 1;  // 1 in the low 32 bits
  EXPECT_EQ(readAs(path, beyond, COLOR_TYPE_M08), nullptr);
  EXPECT_EQ(readAs(path, CSize(-1, 1), COLOR_TYPE_M08), nullptr);
  EXPECT_EQ(readAs(path, CSize(1, -1), COLOR_TYPE_M08), nullptr);
  EXPECT_EQ(readAs(path, CSize(65536, 65536), COLOR_TYPE_M08), nullptr);
}
