#include "container/file_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <vector>

#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::ramp;
using ei4::test::TempFolder;
using testing::ElementsAre;

class FileReaderOfTenBytes : public testing::Test {
 protected:
  TempFolder folder;
  std::string path = folder.write("a.ei4", ramp(10));
  FileReader reader{path.c_str()};
  std::array<unsigned char, 16> buffer{};
};

TEST_F(FileReaderOfTenBytes, KnowsItsLength) { EXPECT_EQ(reader.getLength(), 10); }

TEST_F(FileReaderOfTenBytes, ReadsInSequenceToAnOffsetOfTheBuffer) {
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 2), 2);
  EXPECT_EQ(reader.readBytes(buffer.data(), 4, 2), 2);
  EXPECT_THAT(std::vector(buffer.begin(), buffer.begin() + 7), ElementsAre(0, 1, 0, 0, 2, 3, 0));
}

TEST_F(FileReaderOfTenBytes, GivesWhatIsLeftAndThenNothing) {
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 16), 10);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 16), 0);
}

TEST_F(FileReaderOfTenBytes, AnswersZeroToASkipAndNotTheCount) {  // Quirk file-skip-answers-zero
  EXPECT_EQ(reader.skipBytes(8), 0);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 1);
  EXPECT_EQ(buffer[0], 8);
}

TEST_F(FileReaderOfTenBytes, SkipsPastTheEndAsASeekDoes) {
  EXPECT_EQ(reader.skipBytes(100), 0);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 0);
}

TEST_F(FileReaderOfTenBytes, RefusesToSkipInFrontOfTheStart) {
  EXPECT_EQ(reader.skipBytes(-1), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 1);
  EXPECT_EQ(buffer[0], 0);
}

TEST_F(FileReaderOfTenBytes, RefusesToReadOutsideTheBuffer) {
  EXPECT_EQ(reader.readBytes(nullptr, 0, 1), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), -1, 1), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, -1), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, INT_MIN), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 1), 1);
  EXPECT_EQ(buffer[0], 0);
}

TEST(FileReader, ReadsLessWhenTheFileShrinksMeanwhile) {
  const TempFolder folder;
  const std::string path = folder.write("a.ei4", ramp(100000));
  FileReader reader(path.c_str());
  ASSERT_EQ(truncate(path.c_str(), 50000), 0);
  std::vector<unsigned char> buffer(100000);
  EXPECT_EQ(reader.getLength(), 100000);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 100000), 50000);
}

void expectClosed(const char* path) {
  FileReader reader(path);
  std::array<unsigned char, 4> buffer{};
  EXPECT_EQ(reader.getLength(), -1);
  EXPECT_EQ(reader.readBytes(buffer.data(), 0, 4), -1);
  EXPECT_EQ(reader.skipBytes(0), -1);
}

TEST(FileReader, IsClosedWithoutAFile) {
  const TempFolder folder;
  expectClosed(nullptr);
  expectClosed("");
  expectClosed(folder.path("missing").c_str());
}

TEST(FileReader, IsClosedOnAFolder) {
  const TempFolder folder;
  expectClosed(folder.path("").c_str());
}

TEST(FileReader, IsClosedOnAPipeThatNobodyWritesTo) {
  const TempFolder folder;
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  expectClosed(folder.path("pipe").c_str());
}

TEST(FileReader, IsClosedOnADevice) { expectClosed("/dev/zero"); }

TEST(FileReader, IsClosedOnMoreBytesThanItsLengthCanCount) {
  const TempFolder folder;
  const std::string path = folder.write("sparse", ramp(1));
  ASSERT_EQ(truncate(path.c_str(), 0x80000000), 0);
  expectClosed(path.c_str());
}

TEST(FileReader, HasLengthZeroOnAnEmptyFile) {
  const TempFolder folder;
  EXPECT_EQ(FileReader(folder.write("empty", {}).c_str()).getLength(), 0);
}

}  // namespace
