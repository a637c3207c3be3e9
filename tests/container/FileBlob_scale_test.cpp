// Containers of very many records: each is read once, whatever it is. A step for each pair of them would not end.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "container/FileBlob.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::BlobBuilder;
using ei4::test::ramp;
using ei4::test::TempFolder;

constexpr int kMany = 50000;

class ManyRecords : public testing::Test {
 protected:
  const FileBlob& parsed(const BlobBuilder& builder) {
    blob = std::make_unique<FileBlob>(folder.write("x", builder.build()));
    EXPECT_TRUE(blob->parseBlob());
    return *blob;
  }
  TempFolder folder;
  std::unique_ptr<FileBlob> blob;
};

TEST_F(ManyRecords, MayBeTableEntries) {
  BlobBuilder builder;
  for (int i = 0; i < kMany; ++i) builder.entry(std::to_string(i), 1, i);
  EXPECT_EQ(parsed(builder.bytes(ramp(kMany))).entries().size(), std::size_t{kMany});
  unsigned char byte = 0;
  EXPECT_EQ(blob->readEntryIntoBuffer(blob->findBlobEntry("40001"), 0, &byte, 0, 1), 1);
  EXPECT_EQ(byte, 40001 % 256);
}

TEST_F(ManyRecords, MayBeChunks) {
  BlobBuilder builder;
  for (int i = 0; i < kMany; ++i) builder.chunk(std::to_string(i), ramp(3, i));
  EXPECT_EQ(parsed(builder).entries().size(), std::size_t{kMany});
  std::vector<unsigned char> bytes(3);
  EXPECT_EQ(blob->readEntryIntoBuffer(blob->findBlobEntry("49999"), 0, bytes.data(), 0, 3), 3);
  EXPECT_EQ(bytes, ramp(3, 49999));
}

TEST_F(ManyRecords, MayBeEntriesOfOneName) {
  BlobBuilder builder;
  for (int i = 0; i < kMany; ++i) builder.entry("a", 0, 0);
  for (int i = 0; i < kMany; ++i) builder.chunk("p#a", ramp(1, i));
  ASSERT_EQ(parsed(builder.chunk("a", ramp(7))).entries().size(), 1U);
  EXPECT_EQ(blob->findBlobEntry("a")->size, 7);
}

TEST_F(ManyRecords, MayBeChunksWithoutNameAndPayload) {
  EXPECT_EQ(parsed(BlobBuilder().bytes(std::vector<unsigned char>(std::size_t{6} * kMany))).entries().size(),
            1U);
  EXPECT_EQ(blob->findBlobEntry("")->offset, 6 * kMany);  // the last one's
}

TEST_F(ManyRecords, MayBeDeletions) {
  BlobBuilder builder;
  for (int i = 0; i < kMany; ++i) builder.chunk(std::to_string(i));
  for (int i = 0; i < kMany; ++i) builder.chunk("ERDELETE" + std::to_string(i));
  for (int i = 0; i < kMany; ++i) builder.chunk("ERDELETE0");
  EXPECT_EQ(parsed(builder).entries().size(), std::size_t{kMany});
  EXPECT_EQ(blob->findBlobEntry("77"), nullptr);
  EXPECT_NE(blob->findBlobEntry("ERDELETE77"), nullptr);
}

TEST_F(ManyRecords, MayShareLongNames) {
  BlobBuilder builder;
  const std::string longest(255, 'n');
  for (int i = 0; i < kMany / 5; ++i) {
    const std::string number = std::to_string(i);
    builder.chunk(longest.substr(number.size()) + number);
  }
  EXPECT_EQ(parsed(builder).entries().size(), std::size_t{kMany / 5});
}

}  // namespace
