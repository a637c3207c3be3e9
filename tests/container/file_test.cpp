#include "container/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::ramp;
using ei4::test::TempFolder;

TEST(OpenRegularFile, OpensForReading) {
  const TempFolder folder;
  const std::string path = folder.write("a", ramp(10, 7));
  for (const char* mode : {"r", "rb"}) {
    const File file = openRegularFile(path.c_str(), mode);
    ASSERT_TRUE(file);
    EXPECT_EQ(std::fgetc(file.get()), 7);
  }
}

TEST(OpenRegularFile, SaysWhyNot) {
  const TempFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const auto errorOf = [](const char* path) { return openRegularFile(path, "rb") ? 0 : errno; };
  EXPECT_EQ(errorOf(nullptr), EINVAL);
  EXPECT_EQ(errorOf(folder.path("missing").c_str()), ENOENT);
  EXPECT_EQ(errorOf(folder.path("").c_str()), EISDIR);
  EXPECT_EQ(errorOf(pipe.c_str()), EINVAL);  // nobody writes to it: waiting would not end
  EXPECT_EQ(errorOf("/dev/null"), EINVAL);
}

TEST(OpenRegularFile, LeavesNoDescriptorBehindAndNoneToOtherPrograms) {
  const TempFolder folder;
  const std::string path = folder.write("a", ramp(1));
  const int next = fileno(openRegularFile(path.c_str(), "rb").get());
  openRegularFile("/dev/null", "rb");
  const File file = openRegularFile(path.c_str(), "rb");
  EXPECT_EQ(fileno(file.get()), next);
  EXPECT_NE(fcntl(next, F_GETFD) & FD_CLOEXEC, 0);
}

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
