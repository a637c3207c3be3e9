// The entries of a container that was parsed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
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
using testing::ElementsAre;

std::unique_ptr<BlobEntry> entryOf(const std::string& name, int size) {
  return std::make_unique<BlobEntry>(name, static_cast<std::int32_t>(name.size()), 0, size);
}

// "a" has the bytes 0..9, "b" the bytes 10..14, and 32 chunk bytes of "q#c" follow.
class BlobEntries : public testing::Test {
 protected:
  TempFolder folder;
  std::string path = folder.write(
      "x.erblb",
      BlobBuilder().entry("a", 10, 0).entry("b", 5, 10).bytes(ramp(15)).chunk("q#c", ramp(32, 100)).build());
  FileBlob blob{path};
  std::array<unsigned char, 16> buffer{};

  int read(const char* name, int position, int count, int bufferOffset = 0) {
    return blob.readEntryIntoBuffer(blob.findBlobEntry(name), position, buffer.data(), bufferOffset, count);
  }
};

TEST_F(BlobEntries, AreParsedAtTheFirstLookUp) {
  EXPECT_TRUE(blob.entries().empty());
  EXPECT_NE(blob.findBlobEntry("a"), nullptr);
  EXPECT_EQ(blob.findBlobEntry("nobody"), nullptr);
}

TEST_F(BlobEntries, AreNotFoundInABadContainer) {
  FileBlob missing(folder.path("missing"));
  EXPECT_EQ(missing.findBlobEntry("a"), nullptr);
  FileBlob bad(folder.write("bad", BlobBuilder().entry("a", 1, 0).build()));
  EXPECT_EQ(bad.findBlobEntry("a"), nullptr);
}

TEST_F(BlobEntries, AreNotParsedWhenOnlyTheSizeWasAskedFor) {  // Quirk open-counts-as-parsed
  EXPECT_GT(blob.getFileSize(), 0);
  EXPECT_EQ(blob.findBlobEntry("a"), nullptr);
}

TEST_F(BlobEntries, AreParsedAgainAfterClosing) {
  ASSERT_TRUE(blob.parseBlob());
  const BlobEntry* before = blob.findBlobEntry("a");
  blob.closeBlobFileChannel();
  EXPECT_EQ(blob.readEntryIntoBuffer(before, 0, buffer.data(), 0, 1), -1);
  blob.closeBlobFileChannel();
  EXPECT_EQ(read("a", 1, 1), 1);
  EXPECT_EQ(buffer[0], 1);
}

TEST_F(BlobEntries, TellTheirSize) {
  EXPECT_EQ(FileBlob::getEntrySize(blob.findBlobEntry("b")), 5);
  EXPECT_EQ(FileBlob::getEntrySize(nullptr), -1);
}

TEST_F(BlobEntries, AreReadFromAPositionToAnOffset) {
  EXPECT_EQ(read("b", 1, 2, 3), 2);
  EXPECT_THAT(std::vector(buffer.begin(), buffer.begin() + 6), ElementsAre(0, 0, 0, 11, 12, 0));
  EXPECT_EQ(read("c", 31, 1), 1);
  EXPECT_EQ(buffer[0], 131);
}

TEST_F(BlobEntries, GiveOnlyTheRestNearTheirEnd) {
  EXPECT_EQ(read("b", 3, 10), 2);
  EXPECT_THAT(std::vector(buffer.begin(), buffer.begin() + 3), ElementsAre(13, 14, 0));
  EXPECT_EQ(read("b", 4, INT_MAX), 1);  // the sum passes 31 bits
}

TEST_F(BlobEntries, GiveNothingFromTheirEndOn) {
  EXPECT_EQ(read("b", 5, 1), 0);
  EXPECT_EQ(read("b", 6, 1), 0);
  EXPECT_EQ(read("b", INT_MAX, INT_MAX), 0);
}

TEST_F(BlobEntries, GiveNothingForACountBelowOne) {
  EXPECT_EQ(read("b", 0, 0), 0);
  EXPECT_EQ(read("b", 0, -1), 0);
  EXPECT_EQ(read("b", 0, INT_MIN), 0);
}

TEST_F(BlobEntries, RefuseToReadWhatIsNotTheirs) {
  EXPECT_EQ(blob.readEntryIntoBuffer(nullptr, 0, buffer.data(), 0, 1), -1);
  EXPECT_EQ(read("b", -1, 1), -1);
  EXPECT_EQ(read("b", INT_MIN, 1), -1);
  const BlobEntry before("z", 1, -100, 10);
  EXPECT_EQ(blob.readEntryIntoBuffer(&before, 0, buffer.data(), 0, 1), -1);
  const BlobEntry negative("z", 1, 0, -10);
  EXPECT_EQ(blob.readEntryIntoBuffer(&negative, 0, buffer.data(), 0, 1), 0);
  const BlobEntry far("z", 1, INT64_MAX, 10);
  EXPECT_LE(blob.readEntryIntoBuffer(&far, 0, buffer.data(), 0, 1), 0);
  EXPECT_EQ(buffer[0], 0);
}

TEST_F(BlobEntries, RefuseToWriteOutsideTheBuffer) {
  EXPECT_EQ(read("b", 0, 1, -1), -1);
  EXPECT_EQ(blob.readEntryIntoBuffer(blob.findBlobEntry("b"), 0, nullptr, 0, 1), -1);
}

TEST_F(BlobEntries, GiveLessWhenTheFileShrinksMeanwhile) {
  ASSERT_TRUE(blob.parseBlob());
  ASSERT_EQ(truncate(path.c_str(), blob.dataBase() + 12), 0);
  EXPECT_EQ(read("b", 0, 5), 2);
  EXPECT_EQ(read("c", 0, 5), 0);
}

TEST_F(BlobEntries, AnswerOneWhenPuttingReplaces) {
  ASSERT_TRUE(blob.parseBlob());
  EXPECT_EQ(blob.putBlobEntry(entryOf("new", 1)), 0);
  EXPECT_EQ(blob.putBlobEntry(entryOf("p#new", 2)), 1);
  EXPECT_EQ(blob.findBlobEntry("new")->size, 2);
  EXPECT_EQ(blob.putBlobEntry(nullptr), 0);
}

TEST_F(BlobEntries, AnswerOneWhenDeletingFinds) {
  ASSERT_TRUE(blob.parseBlob());
  EXPECT_EQ(blob.delBlobEntry("a"), 1);
  EXPECT_EQ(blob.delBlobEntry("a"), 0);
  EXPECT_EQ(blob.findBlobEntry("a"), nullptr);
}

TEST_F(BlobEntries, LeaveTheirNamesWhenCleared) {  // Quirk cleared-nodes-stay
  ASSERT_TRUE(blob.parseBlob());
  blob.clearEntries();
  EXPECT_EQ(blob.entries().size(), 3U);
  EXPECT_EQ(blob.findBlobEntry("a"), nullptr);
  EXPECT_TRUE(blob.validatePayloadSizes());
  testing::internal::CaptureStdout();
  blob.printEntries();
  blob.extractAll();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(blob.delBlobEntry("a"), 0);
  EXPECT_EQ(blob.putBlobEntry(entryOf("b", 1)), 0);
}

TEST_F(BlobEntries, AreValidWithinTheFileOnly) {
  ASSERT_TRUE(blob.parseBlob());
  const auto room = static_cast<int>(blob.getFileSize() - blob.dataBase());
  blob.putBlobEntry(entryOf("z", room));
  EXPECT_TRUE(blob.validatePayloadSizes());
  blob.putBlobEntry(entryOf("z", room + 1));
  EXPECT_FALSE(blob.validatePayloadSizes());
}

TEST_F(BlobEntries, HaveAFileWhoseSizeIsMeasured) {
  EXPECT_EQ(blob.getFileSize(), static_cast<long>(std::filesystem::file_size(path)));
  EXPECT_EQ(FileBlob(folder.path("missing")).getFileSize(), -1);
  EXPECT_EQ(FileBlob(folder.path("")).getFileSize(), -1);
}

TEST_F(BlobEntries, ArePrintedInTheOrderOfTheirNames) {
  ASSERT_TRUE(blob.parseBlob());
  // The table is 128 + 2 * 15 = 0x9e bytes; the chunk's payload starts 15 + 9 bytes behind it.
  testing::internal::CaptureStdout();
  blob.printEntries();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "#a 0xa @ 0x9e\n"
            "#b 0x5 @ 0xa8\n"
            "q#c 0x20 @ 0xb6\n");
}

TEST_F(BlobEntries, AreOrderedByBytesNotByLetters) {
  FileBlob mixed(folder.write("m", BlobBuilder().chunk("a").chunk("B").chunk("\xC3\xA4").build()));
  ASSERT_TRUE(mixed.parseBlob());
  std::vector<std::string> names;
  for (const auto& named : mixed.entries()) names.push_back(named.first);
  EXPECT_THAT(names, ElementsAre("B", "a", "\xC3\xA4"));
}

TEST_F(BlobEntries, AreExtractedToFilesOfTheirNames) {
  const TempFolder target;
  FileBlob two(folder.write("t", BlobBuilder()
                                     .chunk("p#" + target.path("b"), ramp(100000))
                                     .chunk(target.path("a"), ramp(3))
                                     .chunk(target.path("no/such/folder"), ramp(3))
                                     .build()));
  ASSERT_TRUE(two.parseBlob());
  testing::internal::CaptureStdout();
  two.extractAll();
  EXPECT_EQ(
      testing::internal::GetCapturedStdout(),
      "3 bytes extracted as " + target.path("a") + "\n100000 bytes extracted as " + target.path("b") + "\n");
  EXPECT_EQ(target.read("a"), ramp(3));
  EXPECT_EQ(target.read("b"), ramp(100000));
}

}  // namespace
