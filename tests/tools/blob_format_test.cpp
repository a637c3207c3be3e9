#include "blob/blob_format.h"

#include <gtest/gtest.h>

#include "container/FileBlob.h"

namespace {

using namespace ei4::tools;
using namespace std::string_literals;

TEST(BlobNameFault, AcceptsNamesThatReadersFindAgain) {
  EXPECT_EQ(blobNameFault("a.ei4"), nullptr);
  EXPECT_EQ(blobNameFault("prefix#a.ei4"), nullptr);
  EXPECT_EQ(blobNameFault("#a"), nullptr);
  EXPECT_EQ(blobNameFault("x#ERDELETEa"), nullptr);
  EXPECT_EQ(blobNameFault(std::string(255, 'n')), nullptr);
}

TEST(BlobNameFault, RefusesTheOthers) {
  EXPECT_NE(blobNameFault(""), nullptr);
  EXPECT_NE(blobNameFault("prefix#"), nullptr);
  EXPECT_NE(blobNameFault("a\0b"s), nullptr);
  EXPECT_NE(blobNameFault("ERDELETEa"), nullptr);
  EXPECT_NE(blobNameFault(std::string(256, 'n')), nullptr);
}

TEST(BlobFormat, AgreesWithTheReaderOnTheDeletionPrefix) { EXPECT_EQ(kDeletionPrefix, FileBlob::DELPREFIX); }

TEST(EncodeTable, LaysOutHeaderAndEntries) {
  const TableEntry entry{"ab", 0x01020304, 0x1122334455667788};
  Bytes expected = {'E', 'R', 'B', 'L', 1, 0, 0, 0};
  expected.resize(124);
  const Bytes rest = {1, 0, 0, 0, 2, 0, 'a', 'b', 4, 3, 2, 1, 0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11};
  expected.insert(expected.end(), rest.begin(), rest.end());
  EXPECT_EQ(encodeTable({&entry, 1}), expected);
}

TEST(EncodeChunkHead, IsNameAndSize) {
  EXPECT_EQ(encodeChunkHead("ab", 0x01020304), (Bytes{2, 0, 'a', 'b', 4, 3, 2, 1}));
}

TEST(EncodeDeletion, IsAnEmptyChunkUnderThePrefixedName) {
  EXPECT_EQ(encodeDeletion("a"), (Bytes{9, 0, 'E', 'R', 'D', 'E', 'L', 'E', 'T', 'E', 'a', 0, 0, 0, 0}));
}

}  // namespace
