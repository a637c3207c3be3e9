#include "container/file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::ramp;
using ei4::test::TempFolder;

TEST(MeasureFile, FindsTheSizeAndStaysWhereItWas) {
  const TempFolder folder;
  const File file(std::fopen(folder.write("a", ramp(10)).c_str(), "rb"));
  std::fgetc(file.get());
  EXPECT_EQ(measureFile(file.get()), 10);
  EXPECT_EQ(std::fgetc(file.get()), 1);
}

TEST(MeasureFile, RefusesAFolder) {
  const TempFolder folder;
  const File file(std::fopen(folder.path("").c_str(), "rb"));
  ASSERT_TRUE(file);
  EXPECT_EQ(measureFile(file.get()), -1);
}

TEST(MeasureFile, RefusesAPipe) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  close(ends[1]);
  const File file(fdopen(ends[0], "rb"));
  EXPECT_EQ(measureFile(file.get()), -1);
}

TEST(MeasureFile, RefusesWhatThirtyOneBitsCannotCount) {
  const TempFolder folder;
  const std::string path = folder.write("sparse", ramp(1));
  const File file(std::fopen(path.c_str(), "rb"));
  ASSERT_EQ(truncate(path.c_str(), 0x7FFFFFFF), 0);
  EXPECT_EQ(measureFile(file.get()), 0x7FFFFFFF);
  ASSERT_EQ(truncate(path.c_str(), 0x80000000), 0);
  EXPECT_EQ(measureFile(file.get()), -1);
}

}  // namespace
