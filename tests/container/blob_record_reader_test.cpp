#include "container/blob_record_reader.h"

#include <gtest/gtest.h>

#include "container/file.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::ramp;
using ei4::test::TempFolder;

class BlobRecordReaderTest : public testing::Test {
 protected:
  BlobRecordReader over(const std::vector<unsigned char>& bytes) {
    file.reset(std::fopen(folder.write("records", bytes).c_str(), "rb"));
    return BlobRecordReader(file.get());
  }
  TempFolder folder;
  File file;
};

TEST_F(BlobRecordReaderTest, ReadsLittleEndianIntegersOfEveryWidth) {
  auto records = over({0x34, 0x12, 0x78, 0x56, 0x34, 0xF2, 0xFE, 0xFF, 0xFF, 0xFF,  //
                       0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F});
  EXPECT_EQ(records.readU16(), 0x1234);
  EXPECT_EQ(records.readU32(), 0xF2345678U);
  EXPECT_EQ(records.readI32(), -2);
  EXPECT_EQ(records.readI64(), INT64_MAX - 1);
  EXPECT_EQ(records.position(), 18);
}

TEST_F(BlobRecordReaderTest, AnswersNothingWhenTheFileEndsWithinAField) {
  EXPECT_FALSE(over(ramp(1)).readU16());
  EXPECT_FALSE(over(ramp(3)).readU32());
  EXPECT_FALSE(over(ramp(3)).readI32());
  EXPECT_FALSE(over(ramp(7)).readI64());
  EXPECT_FALSE(over(ramp(4)).readName(5));
}

TEST_F(BlobRecordReaderTest, CutsANameAtItsFirstZeroByteButReadsAllOfIt) {
  auto records = over({'a', 'b', 0, 'c', 'd', 'e'});
  EXPECT_EQ(records.readName(5), "ab");
  EXPECT_EQ(records.position(), 5);
}

TEST_F(BlobRecordReaderTest, ReadsNoNameLongerThanTheLongest) {
  EXPECT_TRUE(over(std::vector<unsigned char>(300, 'x')).readName(BlobRecordReader::kLongestName));
  EXPECT_FALSE(over(std::vector<unsigned char>(300, 'x')).readName(BlobRecordReader::kLongestName + 1));
}

TEST_F(BlobRecordReaderTest, LandsInTheSamePlaceByShortAndByLongSkips) {
  for (const int distance : {0, 1, 1023, 1024, 1025, 5000}) {
    auto records = over(ramp(6000));
    ASSERT_TRUE(records.skip(distance));
    EXPECT_EQ(records.position(), distance);
    EXPECT_EQ(records.readU16(), ((distance + 1) % 256) << 8 | (distance % 256)) << distance;
  }
}

TEST_F(BlobRecordReaderTest, SkipsPastTheEndWhereNothingIs) {
  for (const int distance : {20, 4000}) {
    auto records = over(ramp(10));
    ASSERT_TRUE(records.skip(distance));
    EXPECT_EQ(records.position(), distance);
    EXPECT_FALSE(records.readU16());
  }
}

TEST_F(BlobRecordReaderTest, RefusesASkipThatNoPositionCanExpress) {
  auto records = over(ramp(10));
  ASSERT_TRUE(records.readU16());
  EXPECT_FALSE(records.skip(INT64_MAX));
}

}  // namespace
