// erblb extract run as a program: what it writes and where it never writes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "support/blob_erblb_run.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::BlobBuilder;
using ei4::test::ErblbTest;
using ei4::test::ramp;
using ei4::test::StartedErblb;
using ei4::test::TempFolder;

class ErblbExtract : public ErblbTest {
 protected:
  // Files and folders below the program's folder, the container "x" not counted.
  std::size_t filesWritten() const {
    std::size_t count = 0;
    for (const auto& item : fs::recursive_directory_iterator(folder.path(""))) {
      if (item.is_regular_file() && item.path().filename() != "x") ++count;
    }
    return count;
  }
  void container(const BlobBuilder& builder) { folder.write("x", builder.build()); }
};

TEST_F(ErblbExtract, WritesEveryEffectiveEntry) {
  container(
      BlobBuilder().chunk("p#a", ramp(3)).chunk("b", ramp(100000)).chunk("c").chunk("d").chunk("ERDELETEd"));
  runQuietly({"extract", "x"});
  EXPECT_EQ(folder.read("a"), ramp(3));
  EXPECT_EQ(folder.read("b"), ramp(100000));
  EXPECT_TRUE(folder.has("c"));
  EXPECT_EQ(filesWritten(), 3U);
}

TEST_F(ErblbExtract, WritesNamedEntriesToANamedFolder) {
  container(BlobBuilder().chunk("a", ramp(3)).chunk("b", ramp(4)).chunk("-c", ramp(5)));
  fs::create_directory(folder.path("out"));
  runQuietly({"extract", "x", "-C", "out", "--", "a", "-c"});
  EXPECT_EQ(folder.read("out/a"), ramp(3));
  EXPECT_EQ(folder.read("out/-c"), ramp(5));
  EXPECT_EQ(filesWritten(), 2U);
  runQuietly({"extract", "x", "--directory=out", "b"});
  EXPECT_EQ(folder.read("out/b"), ramp(4));
  EXPECT_EQ(run({"list", "x", "--directory=out"}).status, 2);
  runFailing({"extract", "x", "-C", "missing"}, "missing: ");
  runFailing({"extract", "x", "--directory=missing"}, "missing: ");
}

TEST_F(ErblbExtract, MakesFoldersThatNamesAskFor) {
  container(BlobBuilder().chunk("s/t/a", ramp(3)).chunk("s/b", ramp(4)));
  runQuietly({"extract", "x"});
  EXPECT_EQ(folder.read("s/t/a"), ramp(3));
  EXPECT_EQ(folder.read("s/b"), ramp(4));
}

TEST_F(ErblbExtract, ReportsWhatIsNotThereAndDoesTheRest) {
  container(BlobBuilder().chunk("a", ramp(3)));
  runFailing({"extract", "x", "nobody", "a"}, "nobody: no such entry");
  EXPECT_EQ(folder.read("a"), ramp(3));
}

TEST_F(ErblbExtract, RefusesNamesThatLeaveTheFolder) {
  const TempFolder elsewhere;
  BlobBuilder builder;
  const std::vector<std::string> names = {
      "../evil", "..",        ".",   "s/../../evil", elsewhere.path("evil"),
      "/evil",   "s//evil",   "s/",  "./evil",       "s/./evil",
      "p#",      "p#../evil", "s/.."};
  for (const std::string& name : names) builder.chunk(name, ramp(3));
  container(builder.chunk("good", ramp(4)));
  fs::create_directory(folder.path("out"));
  runFailing({"extract", "x", "-C", "out"}, "would leave the target folder");
  EXPECT_EQ(folder.read("out/good"), ramp(4));
  EXPECT_EQ(filesWritten(), 1U);
  EXPECT_FALSE(fs::exists(folder.path("out/s")));
  EXPECT_TRUE(elsewhere.empty());
}

TEST_F(ErblbExtract, GoesThroughNoSymbolicLinkBelowTheFolder) {
  const TempFolder elsewhere;
  container(BlobBuilder().chunk("link/evil", ramp(3)).chunk("file", ramp(4)));
  fs::create_directory_symlink(elsewhere.path(""), folder.path("link"));
  fs::create_symlink(elsewhere.path("evil"), folder.path("file"));
  runFailing({"extract", "x"}, "not extracted");
  EXPECT_TRUE(elsewhere.empty());
  runFailing({"extract", "x", "-f"}, "link: ");
  EXPECT_TRUE(elsewhere.empty());
  EXPECT_FALSE(fs::is_symlink(folder.path("file")));  // the link itself is replaced
  EXPECT_EQ(folder.read("file"), ramp(4));
}

TEST_F(ErblbExtract, ReplacesFilesOnlyWhenForced) {
  container(BlobBuilder().chunk("a", ramp(3)));
  folder.write("a", ramp(9));
  runFailing({"extract", "x"}, "a: exists already");
  EXPECT_EQ(folder.read("a"), ramp(9));
  runQuietly({"extract", "x", "-f"});
  EXPECT_EQ(folder.read("a"), ramp(3));
}

TEST_F(ErblbExtract, NeverReplacesAFolder) {
  container(BlobBuilder().chunk("a", ramp(3)));
  fs::create_directory(folder.path("a"));
  runFailing({"extract", "x", "-f"}, "a: ");
  EXPECT_TRUE(fs::is_directory(folder.path("a")));
}

TEST_F(ErblbExtract, ShowsNamesWithoutTerminalCodes) {
  container(BlobBuilder().chunk("../\x1b[2J", ramp(3)));
  const auto done = run({"extract", "x"});
  EXPECT_EQ(done.status, 1);
  EXPECT_NE(done.err.find("../\\x1b[2J: "), std::string::npos) << done.err;
}

TEST_F(ErblbExtract, ShowsLettersOfAnyScriptButNoControlCharacterOrBrokenOne) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"\u00c0\u00df\u4e2d\U0001f480", "\u00c0\u00df\u4e2d\U0001f480"},  // have bytes 0x80..0x9f in them
      {"a\u009b2J", "a\\xc2\\x9b2J"},                                    // C1 controls ...
      {"\u0080\u009f\u00a0", "\\xc2\\x80\\xc2\\x9f\u00a0"},
      {"b\x9b", "b\\x9b"},  // ... and how an 8-bit terminal takes them
      {"c\xc3", "c\\xc3"},
      {"d\xe4x", "d\\xe4x"},
      {"\xe0\x82\x9b", "\\xe0\\x82\\x9b"},           // U+009B in more bytes than it needs
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},           // half a pair
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // behind the last character
  };
  BlobBuilder builder;
  for (const auto& [name, shown] : names) builder.chunk(name);
  container(builder);
  const std::string list = run({"list", "x"}).out;
  for (const auto& [name, shown] : names)
    EXPECT_NE(list.find("  " + shown + "\n"), std::string::npos) << list;
}

TEST_F(ErblbExtract, IsNotMisledByTemporaryFilesOfRunsThatWereKilled) {
  container(BlobBuilder().chunk("a", ramp(3)));
  const StartedErblb waiting = start({"extract", "x", "-C", "out"});  // tells which numbers processes get now
  finish(waiting);
  for (pid_t next = waiting.child + 1; next <= waiting.child + 50; ++next)
    folder.write(".erblb-" + std::to_string(next) + "-0.tmp", ramp(1));
  runQuietly({"extract", "x"});
  EXPECT_EQ(folder.read("a"), ramp(3));
  EXPECT_EQ(filesWritten(), 51U);
}

}  // namespace
