#include "erblb/container_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "blob/blob_writer.h"
#include "container/FileBlob.h"
#include "erblb/command_line.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::erblb::ContainerCheck;
using ei4::erblb::Finding;
using ei4::erblb::Weight;
using ei4::test::BlobBuilder;
using ei4::test::Bytes;
using ei4::test::ramp;
using ei4::test::TempFolder;
using ei4::tools::BlobWriter;
using testing::ElementsAre;
using testing::IsEmpty;

class ContainerCheckTest : public testing::Test {
 protected:
  /// Checks these bytes. Each finding as "offset weight name what", weights being R, F and N.
  std::vector<std::string> findings(const Bytes& bytes) {
    folder.write("x", bytes);
    check.emplace(folder.path("x"));
    std::vector<std::string> found;
    ei4::tools::Progress progress(std::nullopt);
    check->run(
        [&found](const Finding& finding) {
          const char weight = finding.weight == Weight::refused ? 'R'
                              : finding.weight == Weight::fault ? 'F'
                                                                : 'N';
          found.push_back(std::to_string(finding.offset) + " " + weight + " " + finding.name + " " +
                          finding.what);
        },
        progress);
    return found;
  }

  TempFolder folder;
  std::optional<ContainerCheck> check;
};

// A table entry takes 14 bytes and its name, from byte 128 on; a chunk's head 6 bytes and its name.

TEST_F(ContainerCheckTest, FindsNothingInWhatTheWriterMakes) {
  EXPECT_THAT(findings(BlobWriter().bytes()), IsEmpty());
  EXPECT_THAT(findings(BlobWriter().entry("a", ramp(5)).entry("p#b", ramp(7)).entry("c", Bytes()).bytes()),
              IsEmpty());
  EXPECT_EQ(check->entries().size(), 3U);
  const Bytes changed =
      BlobWriter().entry("a", ramp(5)).chunk("b", ramp(7)).chunk("a", ramp(2)).deletion("b").bytes();
  EXPECT_THAT(findings(changed), IsEmpty());
  EXPECT_EQ(check->superseded(), 1);
  EXPECT_EQ(check->deleted(), 1);
  EXPECT_FALSE(check->isRefused());
}

TEST_F(ContainerCheckTest, FindsFaultsOfTheHeader) {
  EXPECT_THAT(findings({}), ElementsAre("0 R  does not begin with ERBL"));
  EXPECT_THAT(findings(BlobBuilder().magic("ERBM").build()), ElementsAre("0 R  does not begin with ERBL"));
  EXPECT_THAT(findings(BlobBuilder().version(2).build()), ElementsAre("4 R  has the version 2, not 1"));
  EXPECT_THAT(findings(BlobBuilder().entryCount(-7).build()),
              ElementsAre("124 N  states -7 entries, which counts as none"));
  EXPECT_THAT(findings({'E', 'R', 'B', 'L', 1, 0, 0, 0}), ElementsAre("8 R  ends within its header"));
}

TEST_F(ContainerCheckTest, FindsFaultsOfTheTable) {
  EXPECT_THAT(findings(BlobBuilder().entryCount(3).entry("a", 0, 0).build()),
              ElementsAre("143 R  ends after 1 of 3 entries"));
  EXPECT_THAT(findings(BlobBuilder().entry(std::string(256, 'n'), 0, 0).build()),
              ElementsAre("128 R  states a name of 256 bytes; 255 are the most"));
  EXPECT_THAT(findings(BlobBuilder().entry("a", -1, 0).build()),
              ElementsAre("128 R a states a size of -1 and an offset of 0"));
  EXPECT_THAT(findings(BlobBuilder().entry("a", 0, 0).entry("b", 1, -2).build()),
              ElementsAre("143 R b states a size of 1 and an offset of -2"));
  EXPECT_THAT(findings(BlobBuilder().entry("a", 4, 0).bytes(ramp(3)).build()),
              ElementsAre("128 R a reaches past the end of the file"));
  EXPECT_THAT(findings(BlobBuilder().entry("a", 0x7FFFFFFF, INT64_MAX).build()),
              ElementsAre("128 R a reaches past the end of the file"));
  EXPECT_TRUE(check->isRefused());
}

TEST_F(ContainerCheckTest, FindsEntriesThatTakeOneNameOrOnePlace) {
  EXPECT_THAT(findings(BlobBuilder().entry("p#a", 2, 0).entry("q#a", 2, 2).bytes(ramp(4)).build()),
              ElementsAre("145 F q#a supersedes the entry at byte 128"));
  EXPECT_THAT(
      findings(BlobBuilder().entry("a", 9, 0).entry("a", 2, 0).bytes(ramp(2)).build()),
      ElementsAre(
          "143 F a supersedes the entry at byte 128",
          "128 F a reaches past the end of the file; it is superseded, but chunks would begin behind it",
          "143 F a overlaps the entry at byte 128"));
  EXPECT_FALSE(check->isRefused());
  EXPECT_THAT(
      findings(BlobBuilder()
                   .entry("a", 10, 0)
                   .entry("b", 2, 3)
                   .entry("c", 4, 8)
                   .entry("none", 0, 5)
                   .entry("d", 1, 12)
                   .bytes(ramp(13))
                   .build()),
      ElementsAre("143 F b overlaps the entry at byte 128", "158 F c overlaps the entry at byte 128"));
}

TEST_F(ContainerCheckTest, NotesBytesThatBelongToNoEntry) {
  EXPECT_THAT(findings(BlobBuilder().entry("a", 2, 3).entry("b", 1, 9).bytes(ramp(10)).build()),
              ElementsAre("158 N  has 7 bytes between its entries that belong to none"));
}

TEST_F(ContainerCheckTest, FindsTheEndOfTheChainOfChunks) {
  const auto begin = [] { return BlobBuilder().chunk("c", ramp(3)); };  // 138 bytes
  EXPECT_THAT(findings(begin().bytes(ramp(1)).build()),
              ElementsAre("138 F  ends within a chunk; the last 1 byte of the file are out of reach"));
  EXPECT_THAT(
      findings(begin().chunkHead(std::string(264, 'n'), 0).chunk("d").build()),
      ElementsAre(
          "138 F  has a chunk with a name of 264 bytes; 263 are the most; the last 277 bytes of the file are "
          "out of reach"));
  EXPECT_THAT(
      findings(begin().name("dd", 3).build()),
      ElementsAre("138 F  ends within a chunk's name; the last 4 bytes of the file are out of reach"));
  EXPECT_THAT(findings(begin().name("d").number(0, 3).build()),
              ElementsAre("138 F d ends within a chunk; the last 6 bytes of the file are out of reach"));
  EXPECT_THAT(findings(begin().chunkHead("d", -5).build()),
              ElementsAre("138 F d states a size of -5; the last 7 bytes of the file are out of reach"));
  EXPECT_THAT(
      findings(begin().chunkHead("d", 5).bytes(ramp(4)).build()),
      ElementsAre(
          "138 F d states 5 bytes, of which 4 are there; the last 11 bytes of the file are out of reach"));
  EXPECT_EQ(check->entries().size(), 1U);
}

TEST_F(ContainerCheckTest, NotesOddNamesAndDeletions) {
  using namespace std::string_literals;
  EXPECT_THAT(
      findings(BlobBuilder()
                   .entry("", 0, 0)
                   .entry("p#", 0, 0)
                   .entry("ERDELETEx", 0, 0)
                   .entry("a\0b"s, 0, 0)
                   .entry("\x1b", 0, 0)
                   .entry("\xE4", 0, 0)
                   .entry("\xC3\xA4\\", 0, 0)
                   .build()),
      ElementsAre("128 N  has no name", "142 N p# has no name", "142 F p# supersedes the entry at byte 128",
                  "158 N ERDELETEx is called like a deletion, but deletes nothing: it stands in the table",
                  "181 N a has a name that ends at a zero byte",
                  "198 N \x1b has control characters in its name, or bytes that are no UTF-8",
                  "213 N \xE4 has control characters in its name, or bytes that are no UTF-8"));
  const std::string longName(256, 'n');
  EXPECT_THAT(
      findings(
          BlobBuilder().chunk("ERDELETEx").chunk("x").chunk("ERDELETEx", ramp(2)).chunk(longName).build()),
      ElementsAre("128 N ERDELETEx deletes what is not there",
                  "150 N ERDELETEx is a deletion with 2 bytes of its own",
                  "167 N " + longName + " has a name that is too long to be deleted"));
}

TEST_F(ContainerCheckTest, RefusesWhatIsNoFile) {
  EXPECT_THROW(ContainerCheck(folder.path("missing")), ei4::erblb::JobError);
  EXPECT_THROW(ContainerCheck(folder.path("")), ei4::erblb::JobError);
}

// The entries that the check takes for those of a reader, and its verdict, are FileBlob's.
void expectFileBlobsView(const TempFolder& folder, const Bytes& bytes) {
  folder.write("x", bytes);
  ContainerCheck check(folder.path("x"));
  std::size_t faults = 0;
  ei4::tools::Progress progress(std::nullopt);
  check.run([&faults](const Finding&) { ++faults; }, progress);
  testing::internal::CaptureStderr();
  FileBlob blob(folder.path("x"));
  const bool parses = blob.parseBlob();
  const std::string complaints = testing::internal::GetCapturedStderr();
  ASSERT_EQ(check.isRefused(), !parses);
  ASSERT_TRUE(faults > 0 || (parses && complaints.empty()));
  if (!parses) return;
  ASSERT_EQ(check.entries().size(), blob.entries().size());
  for (const auto& [name, entry] : blob.entries()) {
    const auto found = check.entries().find(name);
    ASSERT_NE(found, check.entries().end()) << name;
    EXPECT_EQ(found->second.size, entry->size);
    EXPECT_EQ(found->second.start, blob.dataBase() + entry->offset);
  }
}

std::vector<Bytes> corpus() {
  std::vector<Bytes> containers;
  for (const auto& file : std::filesystem::directory_iterator(EI4_CORPUS "/blob")) {
    std::ifstream stream(file.path(), std::ios::binary);
    Bytes input{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    constexpr std::size_t kReads = 36;  // the fuzz target's reads stand in front of the container
    input.erase(input.begin(), input.begin() + std::ptrdiff_t(std::min(kReads, input.size())));
    containers.push_back(input);
  }
  return containers;
}

TEST(ContainerCheckAndFileBlob, AgreeOnTheCorpus) {
  const TempFolder folder;
  const auto containers = corpus();
  EXPECT_GT(containers.size(), 30U);
  for (const Bytes& bytes : containers) expectFileBlobsView(folder, bytes);
}

TEST(ContainerCheckAndFileBlob, AgreeOnEveryPrefixAndEveryDamagedByte) {
  const TempFolder folder;
  const Bytes whole = BlobWriter()
                          .entry("a", ramp(5))
                          .entry("b", ramp(4))
                          .chunk("c", ramp(3))
                          .chunk("a", ramp(2))
                          .deletion("b")
                          .bytes();
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    expectFileBlobsView(folder, Bytes(whole.begin(), whole.begin() + std::ptrdiff_t(length)));
  }
  for (std::size_t at = 124; at < whole.size(); ++at) {
    for (const unsigned flip : {0x01U, 0x04U, 0x80U, 0xFFU}) {
      Bytes damaged = whole;
      damaged[at] = static_cast<unsigned char>(damaged[at] ^ flip);
      expectFileBlobsView(folder, damaged);
    }
  }
}

}  // namespace
