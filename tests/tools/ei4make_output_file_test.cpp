#include "ei4make/output_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::Bytes;
using ei4::test::TempFolder;
using ei4::tools::FileError;
using ei4::tools::refuseSameFile;
using ei4::tools::writeOutput;

std::ptrdiff_t filesIn(const TempFolder& folder) {
  return std::distance(fs::directory_iterator(folder.path("")), {});
}

TEST(WriteOutput, LeavesTheFileAndNothingElse) {
  const TempFolder folder;
  writeOutput(folder.path("a"), Bytes{1, 2});
  EXPECT_EQ(folder.read("a"), (Bytes{1, 2}));
  writeOutput(folder.path("a"), Bytes{3});
  EXPECT_EQ(folder.read("a"), Bytes{3});
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(WriteOutput, KeepsPermissions) {
  const TempFolder folder;
  const std::string path = folder.write("a", Bytes{1});
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  writeOutput(path, Bytes{2});
  EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0640));
}

TEST(WriteOutput, LeavesTheFileFromBeforeWhenItFails) {
  const TempFolder folder;
  folder.write("a", Bytes{1, 2});
  rlimit whole{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &whole), 0);
  rlimit small = whole;
  small.rlim_cur = 1000;
  auto* const before = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  EXPECT_THROW(writeOutput(folder.path("a"), Bytes(100000)), FileError);
  EXPECT_THROW(writeOutput(folder.path("b"), Bytes(100000)), FileError);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &whole), 0);
  std::signal(SIGXFSZ, before);
  EXPECT_EQ(folder.read("a"), (Bytes{1, 2}));
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(WriteOutput, WritesInPlaceToWhatIsNoRegularFile) {
  writeOutput("/dev/null", Bytes{1});
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_THROW(writeOutput("/dev/full", Bytes{1}), FileError);
  const TempFolder folder;
  EXPECT_THROW(writeOutput(folder.path(""), Bytes{1}), FileError);
  folder.write("a", Bytes{1});
  fs::create_symlink("a", folder.path("link"));
  writeOutput(folder.path("link"), Bytes{2});
  EXPECT_TRUE(fs::is_symlink(folder.path("link")));
  EXPECT_EQ(folder.read("a"), Bytes{2});
}

TEST(RefuseSameFile, ComparesFilesAndNotNames) {
  const TempFolder folder;
  const std::string a = folder.write("a", Bytes{1});
  const std::string b = folder.write("b", Bytes{1});
  EXPECT_NO_THROW(refuseSameFile(a, b));
  EXPECT_NO_THROW(refuseSameFile(a, folder.path("missing")));
  EXPECT_NO_THROW(refuseSameFile("/dev/null", "/dev/null"));
  EXPECT_THROW(refuseSameFile(a, folder.path("./a")), std::invalid_argument);
}

}  // namespace
