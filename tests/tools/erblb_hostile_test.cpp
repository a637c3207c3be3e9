// erblb on containers that mean harm: what stands in the folder already, what the container claims.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/blob_erblb_run.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::BlobBuilder;
using ei4::test::ErblbTest;
using ei4::test::ramp;
using ei4::test::TempFolder;

class ErblbHostile : public ErblbTest {
 protected:
  void container(const BlobBuilder& builder) { folder.write("x", builder.build()); }

  std::ptrdiff_t filesHere() const {
    return std::distance(fs::recursive_directory_iterator(folder.path("")), {});
  }

  void expectOutsideUnchanged() const {
    EXPECT_EQ(outside.read("kept"), ramp(3));
    EXPECT_EQ(std::distance(fs::directory_iterator(outside.path("")), {}), 1);
  }

  TempFolder outside;
  std::string kept = outside.write("kept", ramp(3));
};

TEST_F(ErblbHostile, ExtractLeavesAloneWhatLinksAndOtherNamesLeadTo) {
  fs::create_symlink(kept, folder.path("link"));
  fs::create_symlink(outside.path("made"), folder.path("dangling"));
  fs::create_hard_link(kept, folder.path("other"));
  container(BlobBuilder().chunk("link", ramp(5)).chunk("dangling", ramp(6)).chunk("other", ramp(7)));
  runFailing({"extract", "x"}, "3 entries not extracted");
  expectOutsideUnchanged();
  runQuietly({"extract", "x", "-f"});
  EXPECT_EQ(folder.read("link"), ramp(5));
  EXPECT_EQ(folder.read("dangling"), ramp(6));
  EXPECT_EQ(folder.read("other"), ramp(7));
  expectOutsideUnchanged();
}

TEST_F(ErblbHostile, ExtractGoesThroughNoLinkInTheMiddleOfAName) {
  fs::create_directory(folder.path("s"));
  fs::create_directory_symlink(outside.path(""), folder.path("s/link"));
  fs::create_directory_symlink(outside.path("made"), folder.path("dangling"));
  container(
      BlobBuilder().chunk("s/link/kept", ramp(5)).chunk("dangling/a", ramp(6)).chunk("s/link", ramp(7)));
  runFailing({"extract", "x", "-f", "s/link/kept", "dangling/a"}, "2 entries not extracted");
  expectOutsideUnchanged();
  EXPECT_FALSE(outside.has("made"));
}

TEST_F(ErblbHostile, ExtractNeitherWaitsForAPipeNorWritesToIt) {
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  container(BlobBuilder().chunk("pipe", ramp(5)));
  runFailing({"extract", "x"}, "pipe: exists already");
  runQuietly({"extract", "x", "-f"});
  EXPECT_EQ(folder.read("pipe"), ramp(5));
}

TEST_F(ErblbHostile, ExtractSaysWhichNamesAreTooLong) {
  const std::string longest(255, 'n');
  container(
      BlobBuilder().chunk(longest, ramp(5)).chunk(longest + "o", ramp(5)).chunk(longest + "o/a", ramp(5)));
  runFailing({"extract", "x"}, longest + "o: File name too long");
  EXPECT_EQ(folder.read(longest), ramp(5));
  EXPECT_EQ(filesHere(), 2);
}

TEST_F(ErblbHostile, ExtractTakesNamesAsTheyAreCutAtZeroBytes) {
  using namespace std::string_literals;
  container(BlobBuilder().chunk("a\0/../../b"s, ramp(5)).chunk("..\0a"s, ramp(6)).chunk("\0a"s, ramp(7)));
  runFailing({"extract", "x"}, "2 entries not extracted");
  EXPECT_EQ(folder.read("a"), ramp(5));
  EXPECT_EQ(filesHere(), 2);
}

TEST_F(ErblbHostile, ExtractKeepsNamesThatDifferInLetterCaseApart) {
  container(BlobBuilder().chunk("Name", ramp(5)).chunk("name", ramp(6)));
  runQuietly({"extract", "x"});
  EXPECT_EQ(folder.read("Name"), ramp(5));
  EXPECT_EQ(folder.read("name"), ramp(6));
}

TEST_F(ErblbHostile, ExtractTakesTheLastOfTwoEntriesOfOneName) {
  container(BlobBuilder().chunk("p#a", ramp(5)).chunk("q#a", ramp(6)));
  runQuietly({"extract", "x"});
  EXPECT_EQ(folder.read("a"), ramp(6));
  runFailing({"extract", "x", "-C", ".", "a", "a"}, "2 entries not extracted");
}

TEST_F(ErblbHostile, ExtractMayReplaceItsOwnContainer) {
  container(BlobBuilder().chunk("x", ramp(100000)).chunk("z", ramp(6)));
  runFailing({"extract", "x"}, "x: exists already");
  fs::remove(folder.path("z"));
  runQuietly({"extract", "x", "-f"});
  EXPECT_EQ(folder.read("x"), ramp(100000));
  EXPECT_EQ(folder.read("z"), ramp(6));
}

TEST_F(ErblbHostile, ExtractLeavesNoHalfOfAFileThatCannotBeWrittenToItsEnd) {
  container(BlobBuilder().chunk("big", ramp(300000)).chunk("small", ramp(20)).chunk("wide", ramp(2000)));
  rlimit whole{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &whole), 0);
  rlimit small = whole;
  small.rlim_cur = 1000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const auto done = run({"extract", "x"});
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &whole), 0);
  EXPECT_EQ(done.status, 1);
  EXPECT_EQ(done.err,
            "erblb: big: File too large\nerblb: wide: File too large\nerblb: 2 entries not extracted\n");
  EXPECT_EQ(folder.read("small"), ramp(20));
  EXPECT_EQ(filesHere(), 2);
}

TEST_F(ErblbHostile, RefusesEntriesThatClaimMoreThanThereIs) {
  container(BlobBuilder().entry("a", 0x7FFFFFFF, 0).bytes(ramp(800)));
  for (const char* command : {"list", "extract"}) runFailing({command, "x"}, "cannot be read as a blob");
  container(BlobBuilder().entryCount(0x7FFFFFFF).entry("a", 0, 0).bytes(ramp(800)));
  for (const char* command : {"list", "extract"}) runFailing({command, "x"}, "cannot be read as a blob");
  EXPECT_EQ(filesHere(), 1);
}

// Entries that share all bytes of a container.
BlobBuilder overlapping(int count, int size) {
  BlobBuilder builder;
  for (int i = 0; i < count; ++i) builder.entry("e" + std::to_string(i), size, 0);
  return builder.bytes(ramp(size));
}

TEST_F(ErblbHostile, ExtractRefusesEntriesThatShareBytesManyTimes) {
  container(overlapping(65, 1 << 20));
  runFailing({"extract", "x"}, "the entries overlap and would take 68157440 bytes, nothing extracted");
  EXPECT_EQ(filesHere(), 1);
  runQuietly({"extract", "x", "e1", "e64"});
  EXPECT_EQ(folder.read("e64"), ramp(1 << 20));
  EXPECT_EQ(run({"list", "x"}).status, 0);
}

TEST_F(ErblbHostile, ExtractTakesEntriesThatShareBytesAFewTimes) {
  fs::create_directory(folder.path("out"));
  container(overlapping(30, 1000));  // up to 64 MiB in any case
  runQuietly({"extract", "x", "-C", "out"});
  container(overlapping(16, 5 << 20));  // up to 16 times the container
  runQuietly({"extract", "x", "-C", "out", "-f"});
  EXPECT_EQ(fs::file_size(folder.path("out/e15")), std::uintmax_t{5 << 20});
}

TEST_F(ErblbHostile, NoCommandTakesWhatIsNoRegularFileForAContainer) {
  folder.write("a", ramp(3));
  fs::create_symlink("loop", folder.path("loop"));
  const std::string tooLong(5000, 'n');
  for (const std::string& path :
       {std::string("/dev/zero"), std::string("/dev/full"), std::string("loop"), std::string("."), tooLong}) {
    EXPECT_EQ(run({"list", path}).status, 1) << path;
    EXPECT_EQ(run({"extract", path}).status, 1) << path;
    EXPECT_EQ(run({"append", path, "a"}).status, 1) << path;
    EXPECT_EQ(run({"delete", path, "a"}).status, 1) << path;
  }
  EXPECT_EQ(filesHere(), 2);
}

}  // namespace
