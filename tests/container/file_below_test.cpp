#include "container/file_below.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::ramp;
using ei4::test::TempFolder;
using testing::ElementsAre;
using testing::Optional;

TEST(ComponentsBelow, AreFoldersAndAFile) {
  EXPECT_THAT(componentsBelow("a"), Optional(ElementsAre("a")));
  EXPECT_THAT(componentsBelow("a/b/c.ei4"), Optional(ElementsAre("a", "b", "c.ei4")));
  EXPECT_THAT(componentsBelow(".../..a/b../ "), Optional(ElementsAre("...", "..a", "b..", " ")));
}

TEST(ComponentsBelow, AreNotInNamesThatLeadElsewhereOrNowhere) {
  using namespace std::string_view_literals;
  for (const auto name : {""sv, "."sv, ".."sv, "/"sv, "/a"sv, "a/"sv, "a//b"sv, "./a"sv, "../a"sv, "a/.."sv,
                          "a/./b"sv, "a/../b"sv, "a\0b"sv, "\0"sv, "..\0"sv}) {
    EXPECT_EQ(componentsBelow(name), std::nullopt) << name;
  }
}

class FileBelowTest : public testing::Test {
 protected:
  FileBelowTest() : m_before(fs::current_path()) { fs::current_path(inside); }
  ~FileBelowTest() override { fs::current_path(m_before); }

  // What a file of that name, made and kept, comes to.
  static bool makes(const std::string& name) {
    FileBelow file(name);
    return file && file.write(ramp(5)) && file.keep();
  }
  void expectOutsideUnchanged() const {
    EXPECT_EQ(outside.read("kept"), ramp(3));
    EXPECT_EQ(std::distance(fs::directory_iterator(outside.path("")), {}), 1);
  }

  TempFolder outside;
  TempFolder folder;
  std::string kept = outside.write("kept", ramp(3));
  std::string inside = folder.path("");

 private:
  fs::path m_before;
};

TEST_F(FileBelowTest, IsMadeInTheCurrentFolderAndInThoseThatExist) {
  fs::create_directory("s");
  EXPECT_TRUE(makes("a"));
  EXPECT_TRUE(makes("s/b"));
  EXPECT_FALSE(makes("t/c"));
  EXPECT_EQ(folder.read("a"), ramp(5));
  EXPECT_EQ(folder.read("s/b"), ramp(5));
}

TEST_F(FileBelowTest, ReplacesAFile) {
  folder.write("a", ramp(100));
  EXPECT_TRUE(makes("a"));
  EXPECT_EQ(folder.read("a"), ramp(5));
}

TEST_F(FileBelowTest, IsNotMadeUnderNamesThatLeadElsewhere) {
  for (const std::string& name : {outside.path("x"), "../" + fs::path(outside.path("x")).string(),
                                  std::string("../x"), std::string(".."), std::string("s/../../x")}) {
    EXPECT_FALSE(makes(name)) << name;
  }
  EXPECT_TRUE(folder.empty());
  expectOutsideUnchanged();
}

TEST_F(FileBelowTest, TakesThePlaceOfLinksAndLeavesWhatTheyLeadTo) {
  fs::create_symlink(kept, "link");
  fs::create_symlink(outside.path("made"), "dangling");
  fs::create_hard_link(kept, "other");
  for (const char* name : {"link", "dangling", "other"}) {
    EXPECT_TRUE(makes(name)) << name;
    EXPECT_EQ(folder.read(name), ramp(5));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(name)));
  }
  expectOutsideUnchanged();
}

TEST_F(FileBelowTest, GoesThroughNoLinkToAFolder) {
  fs::create_directory_symlink(outside.path(""), "link");
  fs::create_directory("s");
  fs::create_directory_symlink(outside.path(""), "s/link");
  EXPECT_FALSE(makes("link/x"));
  EXPECT_FALSE(makes("link/kept"));
  EXPECT_FALSE(makes("s/link/x"));
  expectOutsideUnchanged();
}

TEST_F(FileBelowTest, TakesThePlaceOfAPipeWithoutWaiting) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  EXPECT_TRUE(makes("pipe"));
  EXPECT_EQ(folder.read("pipe"), ramp(5));
}

TEST_F(FileBelowTest, NeverReplacesAFolder) {
  fs::create_directory("s");
  EXPECT_FALSE(makes("s"));
  EXPECT_TRUE(fs::is_directory("s"));
}

TEST_F(FileBelowTest, IsNotMadeUnderANameThatIsTooLong) {
  EXPECT_TRUE(makes(std::string(255, 'n')));
  EXPECT_FALSE(makes(std::string(256, 'n')));
}

TEST_F(FileBelowTest, GoesAwayUnlessKept) {
  {
    FileBelow file("a");
    ASSERT_TRUE(file);
    EXPECT_TRUE(file.write(ramp(5)));
    EXPECT_TRUE(folder.has("a"));
  }
  EXPECT_TRUE(folder.empty());
}

TEST_F(FileBelowTest, GoesAwayWhenItCannotBeWrittenToItsEnd) {
  auto* const before = std::signal(SIGXFSZ, SIG_IGN);
  rlimit whole{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &whole), 0);
  rlimit small = whole;
  small.rlim_cur = 1000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  bool atOnce = false;
  bool atTheEnd = true;
  {
    FileBelow file("a");
    atOnce = file.write(ramp(100000));
  }
  {
    FileBelow file("b");
    atTheEnd = file.write(ramp(1001)) && file.keep();  // the buffer takes it
  }
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &whole), 0);
  std::signal(SIGXFSZ, before);
  EXPECT_FALSE(atOnce);
  EXPECT_FALSE(atTheEnd);
  EXPECT_TRUE(folder.empty());
}

}  // namespace
