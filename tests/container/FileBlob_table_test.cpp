// The header and the table of a container.
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <filesystem>

#include "container/FileBlob.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::TempFolder;

class BlobTable : public testing::Test {
 protected:
  // Parses these bytes; what went to stderr is kept in `messages`.
  bool parses(const std::vector<unsigned char>& bytes) {
    blob = std::make_unique<FileBlob>(folder.write("a.erblb", bytes));
    testing::internal::CaptureStderr();
    const bool result = blob->parseBlob();
    messages = testing::internal::GetCapturedStderr();
    return result;
  }
  TempFolder folder;
  std::unique_ptr<FileBlob> blob;
  std::string messages;
};

TEST_F(BlobTable, MayBeEmpty) {
  EXPECT_TRUE(parses(BlobBuilder().build()));
  EXPECT_TRUE(blob->entries().empty());
  EXPECT_EQ(blob->dataBase(), 128);
  EXPECT_EQ(blob->dataEnd(), 128);
  EXPECT_FALSE(blob->isModified());
  EXPECT_EQ(messages, "");
}

TEST_F(BlobTable, IsEmptyWithANegativeCount) {
  EXPECT_TRUE(parses(BlobBuilder().entryCount(INT_MIN).build()));
  EXPECT_TRUE(blob->entries().empty());
}

TEST_F(BlobTable, IsNotAwaitedFromAPipeThatNobodyWritesTo) {
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  FileBlob pipe(folder.path("pipe"));
  EXPECT_FALSE(pipe.parseBlob());
  EXPECT_EQ(pipe.getFileSize(), -1);
}

TEST_F(BlobTable, PointsIntoTheData) {
  ASSERT_TRUE(parses(BlobBuilder().entry("a", 3, 4).entry("p#b", 4, 0).bytes(ramp(7)).build()));
  const BlobEntry* b = blob->findBlobEntry("b");
  ASSERT_NE(b, nullptr);
  EXPECT_EQ(b->prefix, "p");
  EXPECT_EQ(b->size, 4);
  EXPECT_EQ(b->offset, 0);
  EXPECT_EQ(b->nameLength, 3);
  EXPECT_EQ(blob->findBlobEntry("a")->offset, 4);
  EXPECT_EQ(blob->findBlobEntry("p#b"), nullptr);
  EXPECT_EQ(blob->dataBase(), 128 + (2 + 1 + 12) + (2 + 3 + 12));
  EXPECT_EQ(blob->dataEnd(), blob->dataBase() + 7);
  EXPECT_FALSE(blob->isModified());
}

TEST_F(BlobTable, NeedsTheMagicAndVersionOne) {
  EXPECT_FALSE(parses(BlobBuilder().magic("ERBM").build()));
  EXPECT_FALSE(parses(BlobBuilder().magic("LBRE").build()));
  EXPECT_FALSE(parses(BlobBuilder().version(0).build()));
  EXPECT_FALSE(parses(BlobBuilder().version(2).build()));
  EXPECT_EQ(messages, "");
}

TEST_F(BlobTable, FailsQuietlyWhereverTheFileEndsInIt) {
  const auto whole = BlobBuilder().entry("ab", 0, 0).build();
  ASSERT_TRUE(parses(whole));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(parses({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)})) << size;
    EXPECT_EQ(messages, "") << size;
  }
}

TEST_F(BlobTable, EndsAtTheFirstMissingEntryHoweverManyAreClaimed) {
  EXPECT_FALSE(parses(BlobBuilder().entryCount(INT_MAX).entry("a", 0, 0).build()));
}

TEST_F(BlobTable, AcceptsEmptyNamesAndNamesOfAHashAlone) {
  ASSERT_TRUE(
      parses(BlobBuilder().entry("", 2, 0).entry("p#", 1, 0).entry("#", 0, 0).bytes(ramp(2)).build()));
  ASSERT_EQ(blob->entries().size(), 1U);  // each is called ""
  EXPECT_EQ(blob->findBlobEntry("")->prefix, "");
  EXPECT_EQ(blob->findBlobEntry("")->size, 0);
  EXPECT_EQ(blob->findBlobEntry("")->nameLength, 1);
}

TEST_F(BlobTable, AcceptsEntriesThatShareBytes) {
  ASSERT_TRUE(
      parses(BlobBuilder().entry("a", 5, 0).entry("b", 5, 0).entry("c", 3, 1).bytes(ramp(5)).build()));
  unsigned char byte = 0;
  EXPECT_EQ(blob->readEntryIntoBuffer(blob->findBlobEntry("c"), 2, &byte, 0, 1), 1);
  EXPECT_EQ(byte, 3);
}

TEST_F(BlobTable, AcceptsANameOf255Bytes) {
  const std::string name(255, 'n');
  EXPECT_TRUE(parses(BlobBuilder().entry(name, 0, 0).build()));
  EXPECT_NE(blob->findBlobEntry(name), nullptr);
  EXPECT_EQ(messages, "");
}

TEST_F(BlobTable, RefusesANameOf256Bytes) {
  EXPECT_FALSE(parses(BlobBuilder().entry(std::string(256, 'n'), 0, 0).build()));
  EXPECT_EQ(messages, "nameLength out of bounds\n");
}

TEST_F(BlobTable, ReadsTheNameLengthAsUnsigned) {
  EXPECT_FALSE(parses(BlobBuilder().entry("n", 0, 0, 0xFFFF).build()));
  EXPECT_EQ(messages, "nameLength out of bounds\n");
}

TEST_F(BlobTable, CutsANameAtItsFirstZeroByte) {
  using namespace std::string_literals;
  ASSERT_TRUE(parses(BlobBuilder().entry("ab\0cd"s, 0, 0).entry("x"s, 0, 0).build()));
  ASSERT_NE(blob->findBlobEntry("ab"), nullptr);
  EXPECT_EQ(blob->findBlobEntry("ab")->nameLength, 5);
  EXPECT_NE(blob->findBlobEntry("x"), nullptr);
}

TEST_F(BlobTable, RefusesNegativeSizesAndOffsets) {
  EXPECT_FALSE(parses(BlobBuilder().entry("a", -1, 0).build()));
  EXPECT_EQ(messages, "negative value in size or offset\n");
  EXPECT_FALSE(parses(BlobBuilder().entry("a", 0, -1).build()));
  EXPECT_EQ(messages, "negative value in size or offset\n");
  EXPECT_FALSE(parses(BlobBuilder().entry("a", INT_MIN, INT64_MIN).build()));
  EXPECT_EQ(messages, "negative value in size or offset\n");
}

TEST_F(BlobTable, LetsALaterEntrySupersedeAnEarlierOne) {
  ASSERT_TRUE(parses(BlobBuilder().entry("x#a", 2, 0).entry("y#a", 3, 2).bytes(ramp(5)).build()));
  EXPECT_EQ(blob->entries().size(), 1U);
  EXPECT_EQ(blob->findBlobEntry("a")->prefix, "y");
  EXPECT_EQ(blob->findBlobEntry("a")->size, 3);
  EXPECT_TRUE(blob->isModified());
}

TEST_F(BlobTable, CountsASupersededEntryForTheDataEnd) {  // Quirk superseded-entry-counts
  ASSERT_TRUE(parses(BlobBuilder().entry("a", 6, 0).entry("a", 2, 0).bytes(ramp(6)).chunk("b").build()));
  EXPECT_EQ(blob->dataEnd(), blob->dataBase() + 6);
  EXPECT_NE(blob->findBlobEntry("b"), nullptr);
  // Superseded, it may even reach past the file: then there is no room for chunks, and nothing else is wrong.
  ASSERT_TRUE(parses(BlobBuilder().entry("a", 60, 0).entry("a", 2, 0).bytes(ramp(6)).chunk("b").build()));
  EXPECT_EQ(blob->findBlobEntry("b"), nullptr);
}

TEST_F(BlobTable, RefusesAnEntryThatReachesPastTheFile) {
  EXPECT_TRUE(parses(BlobBuilder().entry("a", 5, 2).bytes(ramp(7)).build()));
  EXPECT_FALSE(parses(BlobBuilder().entry("a", 6, 2).bytes(ramp(7)).build()));
  EXPECT_FALSE(blob->validatePayloadSizes());
  EXPECT_EQ(messages, "");
}

TEST_F(BlobTable, SurvivesEndsBeyondSixtyFourBits) {
  EXPECT_FALSE(parses(BlobBuilder().entry("a", INT_MAX, INT64_MAX).build()));
  EXPECT_FALSE(parses(BlobBuilder().entry("a", 0, INT64_MAX).build()));
  EXPECT_FALSE(parses(BlobBuilder().entry("a", 1, INT64_MAX - 128).build()));
  EXPECT_TRUE(parses(BlobBuilder().entry("a", INT_MAX, INT64_MAX).entry("a", 0, 0).build()));
}

TEST_F(BlobTable, FailsWithoutAFileOrOnAFolder) {
  EXPECT_FALSE(FileBlob(folder.path("missing")).parseBlob());
  EXPECT_FALSE(FileBlob(folder.path("")).parseBlob());
}

TEST_F(BlobTable, FailsOnDevicesAndOnLinksThatLeadNowhere) {
  EXPECT_FALSE(FileBlob("/dev/zero").parseBlob());
  EXPECT_FALSE(FileBlob("/dev/null").parseBlob());
  std::filesystem::create_symlink("loop", folder.path("loop"));
  std::filesystem::create_symlink("nowhere", folder.path("dangling"));
  EXPECT_FALSE(FileBlob(folder.path("loop")).parseBlob());
  EXPECT_FALSE(FileBlob(folder.path("dangling")).parseBlob());
  EXPECT_FALSE(FileBlob(std::string(5000, 'n')).parseBlob());
}

TEST_F(BlobTable, IsFoundThroughALink) {
  folder.write("a.erblb", BlobBuilder().entry("a", 0, 0).build());
  std::filesystem::create_symlink("a.erblb", folder.path("link"));
  EXPECT_TRUE(FileBlob(folder.path("link")).parseBlob());
}

TEST_F(BlobTable, FailsOnAFileThatMayNotBeRead) {
  const std::string path = folder.write("a.erblb", BlobBuilder().build());
  ASSERT_TRUE(FileBlob(path).parseBlob());
  namespace fs = std::filesystem;
  fs::permissions(folder.path(""), fs::perms::others_exec, fs::perm_options::add);
  fs::permissions(path, fs::perms::none);
  const auto before =
      static_cast<uid_t>(setfsuid(12345));  // for root permissions count only as somebody else
  EXPECT_FALSE(FileBlob(path).parseBlob());
  setfsuid(before);
}

TEST_F(BlobTable, MayPointToTheLastByteOfTwoGibibytes) {
  constexpr int kBase = 128 + 2 + 1 + 12;
  const std::string path = folder.write("big.erblb", BlobBuilder().entry("a", INT_MAX - kBase, 0).build());
  ASSERT_EQ(truncate(path.c_str(), INT_MAX), 0);
  FileBlob big(path);
  ASSERT_TRUE(big.parseBlob());
  std::array<unsigned char, 2> last = {7, 7};
  EXPECT_EQ(big.readEntryIntoBuffer(big.findBlobEntry("a"), INT_MAX - kBase - 1, last.data(), 0, 2), 1);
  EXPECT_EQ(last[0], 0);
  EXPECT_EQ(last[1], 7);
}

TEST_F(BlobTable, FailsOnMoreThanTwoGibibytes) {
  const std::string path = folder.write("big.erblb", BlobBuilder().entry("a", 1, 0).build());
  ASSERT_EQ(truncate(path.c_str(), 0x80000000), 0);
  FileBlob big(path);
  EXPECT_FALSE(big.parseBlob());
  EXPECT_EQ(big.getFileSize(), -1);
}

TEST_F(BlobTable, IsClosedAfterAFailure) {
  ASSERT_FALSE(parses(BlobBuilder().entry("a", 1, 0).entry("b", -1, 0).bytes(ramp(9)).build()));
  unsigned char byte = 0;
  EXPECT_EQ(blob->readEntryIntoBuffer(blob->entries().at("a").get(), 0, &byte, 0, 1), -1);
}

}  // namespace
