// erblb run as a program: its manners, list, and the commands that write containers.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/blob_erblb_run.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ErblbTest;
using ei4::test::ramp;
using Bytes = std::vector<unsigned char>;

const Bytes kNone = {255};

TEST_F(ErblbTest, ExplainsItselfOnRequest) {
  for (const char* option : {"--help", "-h"}) {
    const auto help = run({option});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("erblb: lists, checks, unpacks and writes", 0), 0U);
    EXPECT_EQ(help.err, "");
  }
}

TEST_F(ErblbTest, TellsItsVersion) {
  const auto version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "erblb " EI4_VERSION "\n");
}

TEST_F(ErblbTest, ExitsWithTwoOnWrongUsage) {
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"frobnicate"},
      {"frobnicate", "x.erblb"},
      {"list"},
      {"list", "x", "y"},
      {"extract"},
      {"append", "x"},
      {"delete", "x"},
      {"list", "x", "--frob"},
      {"list", "x", "-f"},
      {"list", "x", "-C", "."},
      {"append", "x", "y", "-f"},
      {"extract", "x", "-a"},
      {"extract", "x", "-C"},
      {"verify"},
      {"list", "x", "--images"},
      {"verify", "x", "-f"},
      {"delete", "x", "y", "--no-progress"},
  };
  for (const auto& words : wrong) {
    const auto done = run(words);
    EXPECT_EQ(done.status, 2) << testing::PrintToString(words);
    EXPECT_EQ(done.out, "");
    EXPECT_EQ(done.err.rfind("erblb: ", 0), 0U) << done.err;
  }
  EXPECT_TRUE(folder.empty());
}

TEST_F(ErblbTest, ListsEffectiveEntries) {
  folder.write("x", BlobBuilder()
                        .entry("p#a", 3, 0)
                        .entry("gone", 2, 3)
                        .bytes(ramp(5))
                        .chunk("b\n", ramp(4))
                        .chunk("ERDELETEgone")
                        .build());
  // Table: 128 + (2 + 3 + 12) + (2 + 4 + 12) = 163; the chunk's payload stands behind 5 bytes and a head of
  // 8.
  const auto list = run({"list", "x"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.err, "");
  EXPECT_EQ(list.out,
            "      size      offset  name [prefix]\n"
            "         3         163  a [p]\n"
            "         4         176  b\\x0a\n");
  const auto all = run({"list", "-a", "x"});
  EXPECT_EQ(all.out.find("ERDELETEgone\n"), list.out.find("a [p]"));
}

TEST_F(ErblbTest, RefusesToListWhatIsNoContainer) {
  runFailing({"list", "missing"}, "missing: ");
  folder.write("bad", BlobBuilder().entry("a", -1, 0).build());
  runFailing({"list", "bad"}, "negative value in size or offset\n");
  runFailing({"list", "bad"}, "bad: cannot be read as a blob container");
}

TEST_F(ErblbTest, BuildsAContainerOfFiles) {
  folder.write("a.ei4", ramp(100));
  folder.write("k=v", ramp(100000, 5));
  runQuietly({"build", "x", folder.path("a.ei4"), "p#b.ei4=a.ei4", "c=k=v"});
  EXPECT_EQ(payload("x", "a.ei4"), ramp(100));
  EXPECT_EQ(payload("x", "b.ei4"), ramp(100));
  EXPECT_EQ(payload("x", "c"), ramp(100000, 5));
  FileBlob blob(folder.path("x"));
  ASSERT_TRUE(blob.parseBlob());
  EXPECT_FALSE(blob.isModified());
  EXPECT_EQ(blob.findBlobEntry("b.ei4")->prefix, "p");
}

TEST_F(ErblbTest, BuildsAnEmptyContainer) {
  runQuietly({"build", "x"});
  EXPECT_EQ(folder.read("x").size(), 128U);
  EXPECT_TRUE(FileBlob(folder.path("x")).parseBlob());
}

TEST_F(ErblbTest, ReplacesAFileOnlyWhenForced) {
  folder.write("x", ramp(3));
  folder.write("a", ramp(5));
  runFailing({"build", "x", "a"}, "exists already");
  EXPECT_EQ(folder.read("x"), ramp(3));
  runQuietly({"build", "x", "a", "-f"});
  EXPECT_EQ(payload("x", "a"), ramp(5));
}

TEST_F(ErblbTest, LeavesNothingBehindWhenItCannotBuild) {
  folder.write("a", ramp(5));
  runFailing({"build", "x", "a", "missing"}, "missing: ");
  runFailing({"build", "x", "sub=" + folder.path("")}, "is no regular file");
  runFailing({"build", "x", "a", "a"}, "two files for one entry name");
  runFailing({"build", "x", "p#a=a", "q#a=a"}, "two files for one entry name");
  runFailing({"build", "x", "=a"}, "is empty");
  runFailing({"build", "x", "ERDELETEb=a"}, "marks deletions");
  runFailing({"build", "x", std::string(256, 'n') + "=a"}, "longer than 255");
  runFailing({"build", "no/such/x", "a"}, "no/such");
  EXPECT_FALSE(folder.has("x"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("")), {}), 1);
}

TEST_F(ErblbTest, RefusesToBuildMoreThanAContainerHolds) {
  folder.write("a", {});
  ASSERT_EQ(truncate(folder.path("a").c_str(), 0x7FFFFFFF), 0);
  runFailing({"build", "x", "a"}, "2 GiB");
  ASSERT_EQ(truncate(folder.path("a").c_str(), 0x80000000), 0);
  runFailing({"build", "x", "a"}, "too large");
  EXPECT_FALSE(folder.has("x"));
}

TEST_F(ErblbTest, AppendsBehindWhatIsThereAndSupersedes) {
  folder.write("a", ramp(5));
  folder.write("b", ramp(9, 9));
  runQuietly({"build", "x", "a"});
  const auto before = folder.read("x");
  runQuietly({"append", "x", "b", "a=b"});
  EXPECT_EQ(payload("x", "a"), ramp(9, 9));
  EXPECT_EQ(payload("x", "b"), ramp(9, 9));
  auto after = folder.read("x");
  after.resize(before.size());
  EXPECT_EQ(after, before);
}

TEST_F(ErblbTest, ChangesNothingWhenItCannotAppend) {
  folder.write("a", ramp(5));
  runFailing({"append", "x", "a"}, "x: ");
  EXPECT_FALSE(folder.has("x"));
  const auto damaged =
      BlobBuilder().entry("a", 0, 0).chunkHead("b", 100).build();  // nothing behind it is reached
  folder.write("x", damaged);
  runFailing({"append", "x", "a"}, "its end is damaged");
  EXPECT_EQ(folder.read("x"), damaged);
  const auto past =
      BlobBuilder().entry("a", 900, 0).entry("a", 0, 0).build();  // the data end is past the file
  folder.write("y", past);
  runFailing({"append", "y", "a"}, "its end is damaged");
  EXPECT_EQ(folder.read("y"), past);
}

TEST_F(ErblbTest, AppendsToRegularFilesOnlyAndDoesNotWaitForAPipe) {
  folder.write("a", ramp(5));
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  runFailing({"append", "pipe", "a"}, "pipe: is no regular file");
  runFailing({"list", "pipe"}, "pipe: cannot be read as a blob container");
}

TEST_F(ErblbTest, TakesBackWhatDoesNotFitTheLimitOnFileSizes) {
  folder.write("a", ramp(300000));
  runQuietly({"build", "x"});
  const auto before = folder.read("x");
  rlimit whole{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &whole), 0);
  rlimit small = whole;
  small.rlim_cur = 200000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  runFailing({"append", "x", "a"}, "x: File too large");
  runFailing({"build", "y", "a"}, "y: File too large");
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &whole), 0);
  EXPECT_EQ(folder.read("x"), before);
  EXPECT_FALSE(folder.has("y"));
}

TEST_F(ErblbTest, DeletesEntries) {
  folder.write(
      "x", BlobBuilder().entry("p#a", 3, 0).bytes(ramp(3)).chunk("b", ramp(2)).chunk("c", ramp(1)).build());
  runQuietly({"delete", "x", "a", "b"});
  EXPECT_EQ(payload("x", "a"), kNone);
  EXPECT_EQ(payload("x", "b"), kNone);
  EXPECT_EQ(payload("x", "c"), ramp(1));
  EXPECT_EQ(run({"list", "x"}).out.find("ERDELETE"), std::string::npos);
}

TEST_F(ErblbTest, ChangesNothingWhenItCannotDelete) {
  const auto whole = BlobBuilder().chunk("a").chunk("p#x#y").chunk("y").chunk("ERDELETEz").build();
  folder.write("x", whole);
  runFailing({"delete", "x", "a", "nobody"}, "nobody: no such entry");
  runFailing({"delete", "x", "ERDELETEz"}, "no such entry");
  runFailing({"delete", "x", "x#y"}, "cannot be deleted");
  EXPECT_EQ(folder.read("x"), whole);
  const auto damaged = BlobBuilder().entry("a", 0, 0).chunkHead("b", 100).build();
  folder.write("y", damaged);
  runFailing({"delete", "y", "a"}, "its end is damaged");
  EXPECT_EQ(folder.read("y"), damaged);
}

}  // namespace
