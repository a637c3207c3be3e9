// What is appended behind the data of a container.
#include <gtest/gtest.h>

#include <climits>

#include "container/FileBlob.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::TempFolder;

class BlobChunks : public testing::Test {
 protected:
  // Parses a container, which must succeed whatever its chunks are.
  void parse(const BlobBuilder& builder) {
    blob = std::make_unique<FileBlob>(folder.write("a.erblb", builder.build()));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(blob->parseBlob());
    messages = testing::internal::GetCapturedStderr();
  }
  bool has(const std::string& name) { return blob->findBlobEntry(name) != nullptr; }
  std::vector<unsigned char> payload(const std::string& name) {
    const BlobEntry* entry = blob->findBlobEntry(name);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(FileBlob::getEntrySize(entry)));
    EXPECT_EQ(blob->readEntryIntoBuffer(entry, 0, bytes.data(), 0, entry->size), entry->size);
    return bytes;
  }
  TempFolder folder;
  std::unique_ptr<FileBlob> blob;
  std::string messages;
};

TEST_F(BlobChunks, FollowOneAnother) {
  parse(BlobBuilder()
            .entry("a", 3, 0)
            .bytes(ramp(3))
            .chunk("b", ramp(4, 40))
            .chunk("c")
            .chunk("d", ramp(5000, 9)));
  EXPECT_EQ(payload("a"), ramp(3));
  EXPECT_EQ(payload("b"), ramp(4, 40));
  EXPECT_EQ(blob->findBlobEntry("c")->size, 0);
  EXPECT_EQ(payload("d"), ramp(5000, 9));
  EXPECT_EQ(blob->findBlobEntry("b")->offset, 3 + 2 + 1 + 4);
  EXPECT_TRUE(blob->isModified());
  EXPECT_EQ(messages, "");
}

TEST_F(BlobChunks, SupersedeTableEntriesAndEarlierChunks) {
  parse(BlobBuilder().entry("a", 3, 0).bytes(ramp(3)).chunk("a", ramp(2, 7)).chunk("p#a", ramp(1, 9)));
  EXPECT_EQ(blob->entries().size(), 1U);
  EXPECT_EQ(payload("a"), ramp(1, 9));
}

TEST_F(BlobChunks, AreTheSameEntryUnderTwoPrefixes) {
  parse(BlobBuilder().chunk("x#img", ramp(1)).chunk("y#img", ramp(2)));
  EXPECT_EQ(blob->entries().size(), 1U);
  EXPECT_EQ(blob->findBlobEntry("img")->prefix, "y");
  EXPECT_EQ(blob->findBlobEntry("img")->size, 2);
}

TEST_F(BlobChunks, AcceptANameOf263Bytes) {
  parse(BlobBuilder().chunk(std::string(263, 'n')));
  EXPECT_TRUE(has(std::string(263, 'n')));
  EXPECT_EQ(messages, "");
}

TEST_F(BlobChunks, EndAtANameOf264Bytes) {
  parse(BlobBuilder().chunk("a").chunk(std::string(264, 'n')).chunk("b"));
  EXPECT_TRUE(has("a"));
  EXPECT_EQ(blob->entries().size(), 1U);
  EXPECT_EQ(messages, "nameLength out of bounds\n");
}

TEST_F(BlobChunks, EndAtANegativeSize) {
  parse(BlobBuilder().chunk("a").chunkHead("b", -1).chunk("c"));
  EXPECT_TRUE(has("a"));
  EXPECT_EQ(blob->entries().size(), 1U);
  EXPECT_EQ(messages, "negative value in size\n");
}

TEST_F(BlobChunks, EndAtASizePastTheFile) {
  parse(BlobBuilder().chunk("a", ramp(2)).chunkHead("b", 4).bytes(ramp(3)));
  EXPECT_TRUE(has("a"));
  EXPECT_FALSE(has("b"));
  EXPECT_EQ(messages, "chunk size out of bounds\n");
  parse(BlobBuilder().chunkHead("b", INT_MAX));
  EXPECT_EQ(messages, "chunk size out of bounds\n");
}

TEST_F(BlobChunks, MayEndExactlyWithTheFile) {
  parse(BlobBuilder().chunkHead("b", 3).bytes(ramp(3)));
  EXPECT_EQ(payload("b"), ramp(3));
  EXPECT_EQ(messages, "");
}

TEST_F(BlobChunks, EndQuietlyWhereTheFileEndsInAHead) {
  const auto whole = BlobBuilder().chunk("a").chunk("bc").build();
  const std::size_t second = whole.size() - 8;
  for (std::size_t size = second; size < whole.size(); ++size) {
    folder.write("cut.erblb", std::span(whole).first(size));
    FileBlob cut(folder.path("cut.erblb"));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(cut.parseBlob());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(cut.entries().size(), 1U) << size;
  }
}

TEST_F(BlobChunks, CutTheirNamesAtTheFirstZeroByte) {
  using namespace std::string_literals;
  parse(BlobBuilder().chunk("ab\0cd"s, ramp(1)).chunk("e"));
  EXPECT_TRUE(has("ab"));
  EXPECT_EQ(blob->findBlobEntry("ab")->nameLength, 5);
  EXPECT_TRUE(has("e"));
}

TEST_F(BlobChunks, DeleteByPrefixAndStayAsEntries) {  // Quirk deletion-chunk-stays
  parse(BlobBuilder().entry("a.ei4", 3, 0).bytes(ramp(3)).chunk("ERDELETEa.ei4"));
  EXPECT_EQ(FileBlob::DELPREFIX, "ERDELETE");
  EXPECT_FALSE(has("a.ei4"));
  ASSERT_TRUE(has("ERDELETEa.ei4"));
  EXPECT_EQ(blob->findBlobEntry("ERDELETEa.ei4")->size, 0);
  EXPECT_TRUE(blob->isModified());
}

TEST_F(BlobChunks, LetAnEntryComeBackAfterItsDeletion) {
  parse(BlobBuilder().chunk("a", ramp(1)).chunk("ERDELETEa").chunk("a", ramp(2)));
  EXPECT_EQ(payload("a"), ramp(2));
}

TEST_F(BlobChunks, DeleteNothingUnderANameThatIsNotThere) {
  parse(BlobBuilder().chunk("a").chunk("ERDELETEb").chunk("ERDELETE"));
  EXPECT_TRUE(has("a"));
  EXPECT_TRUE(has("ERDELETEb"));
  EXPECT_TRUE(has("ERDELETE"));
}

TEST_F(BlobChunks, SplitADeletionsOwnNameAtTheHash) {  // Quirk deletion-chunk-stays
  parse(BlobBuilder().chunk("p#x#img", ramp(1)).chunk("img", ramp(2)).chunk("ERDELETEx#img"));
  EXPECT_FALSE(has("x#img"));  // deleted: the rest of the name is the key, unsplit
  ASSERT_TRUE(has("img"));     // superseded by the deletion chunk itself
  EXPECT_EQ(blob->findBlobEntry("img")->prefix, "ERDELETEx");
  EXPECT_EQ(blob->findBlobEntry("img")->size, 0);
}

TEST_F(BlobChunks, DeleteEvenWhenTheChunkProvesBad) {  // Quirk deletion-before-check
  parse(BlobBuilder().entry("a", 0, 0).chunkHead("ERDELETEa", -1));
  EXPECT_TRUE(blob->entries().empty());
  EXPECT_EQ(messages, "negative value in size\n");
  parse(BlobBuilder().entry("a", 0, 0).chunkHead("ERDELETEa", 1));
  EXPECT_TRUE(blob->entries().empty());
  EXPECT_EQ(messages, "chunk size out of bounds\n");
  parse(BlobBuilder().entry("a", 0, 0).name("ERDELETEa"));
  EXPECT_TRUE(blob->entries().empty());
  EXPECT_TRUE(blob->isModified());
  EXPECT_EQ(messages, "");
}

TEST_F(BlobChunks, DoNotDeleteFromTheTable) {
  parse(BlobBuilder().entry("a", 0, 0).entry("ERDELETEa", 0, 0));
  EXPECT_TRUE(has("a"));
  EXPECT_FALSE(blob->isModified());
}

TEST_F(BlobChunks, FailTheParseOnlyThroughATableEntryPastTheFile) {
  // A deletion may remove the very entry that would fail it; but then the data end leaves no room for chunks.
  const std::string path =
      folder.write("b.erblb", BlobBuilder().entry("a", 90, 0).chunk("ERDELETEa").build());
  EXPECT_FALSE(FileBlob(path).parseBlob());
}

}  // namespace
