#include "blob/blob_writer.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "container/FileBlob.h"
#include "support/blob_builder.h"
#include "support/cli_temp_folder.h"

namespace {

using ei4::test::ramp;
using ei4::test::TempFolder;
using ei4::tools::BlobWriter;
using ei4::tools::Bytes;

TEST(BlobWriter, WritesWhatTheReaderReads) {
  const TempFolder folder;
  ASSERT_TRUE(BlobWriter()
                  .entry("a", ramp(10))
                  .entry("p#b", ramp(5, 50))
                  .chunk("c", ramp(7, 70))
                  .deletion("a")
                  .chunk("b", ramp(3, 90))
                  .writeTo(folder.path("x")));
  FileBlob blob(folder.path("x"));
  ASSERT_TRUE(blob.parseBlob());
  EXPECT_EQ(blob.findBlobEntry("a"), nullptr);
  Bytes bytes(3);
  EXPECT_EQ(blob.readEntryIntoBuffer(blob.findBlobEntry("b"), 0, bytes.data(), 0, 100), 3);
  EXPECT_EQ(bytes, ramp(3, 90));
  bytes.resize(7);
  EXPECT_EQ(blob.readEntryIntoBuffer(blob.findBlobEntry("c"), 0, bytes.data(), 0, 100), 7);
  EXPECT_EQ(bytes, ramp(7, 70));
}

TEST(BlobWriter, PutsEntriesBehindOneAnother) {
  const TempFolder folder;
  const Bytes bytes = BlobWriter().entry("a", ramp(10)).entry("b", ramp(5)).bytes();
  folder.write("x", bytes);
  FileBlob blob(folder.path("x"));
  ASSERT_TRUE(blob.parseBlob());
  EXPECT_EQ(blob.findBlobEntry("b")->offset, 10);
  EXPECT_EQ(blob.dataEnd(), static_cast<std::int64_t>(bytes.size()));
  EXPECT_FALSE(blob.isModified());
}

TEST(BlobWriter, RefusesNamesThatReadersWouldNotFind) {
  EXPECT_THROW(BlobWriter().entry("", ramp(1)), std::invalid_argument);
  EXPECT_THROW(BlobWriter().chunk("ERDELETEa", ramp(1)), std::invalid_argument);
  EXPECT_THROW(BlobWriter().deletion(std::string(256, 'n')), std::invalid_argument);
}

TEST(BlobWriter, TellsWhenAFileCannotBeWritten) {
  const TempFolder folder;
  EXPECT_FALSE(BlobWriter().writeTo(folder.path("no/such/folder")));
}

}  // namespace
