#include "container/blob_entry.h"

#include <gtest/gtest.h>

namespace {

TEST(BlobEntry, SplitsTheStoredNameAtItsFirstHash) {
  const BlobEntry entry("study#a#b.ei4", 13, 7, 9);
  EXPECT_EQ(entry.prefix, "study");
  EXPECT_EQ(entry.name, "a#b.ei4");
  EXPECT_EQ(entry.nameLength, 13);
  EXPECT_EQ(entry.offset, 7);
  EXPECT_EQ(entry.size, 9);
}

TEST(BlobEntry, HasNoPrefixWithoutAHash) {
  const BlobEntry entry("a.ei4", 5, 0, 0);
  EXPECT_EQ(entry.prefix, "");
  EXPECT_EQ(entry.name, "a.ei4");
}

TEST(BlobEntry, AllowsNothingOnEitherSideOfTheHash) {
  EXPECT_EQ(BlobEntry("#a", 2, 0, 0).prefix, "");
  EXPECT_EQ(BlobEntry("#a", 2, 0, 0).name, "a");
  EXPECT_EQ(BlobEntry("a#", 2, 0, 0).prefix, "a");
  EXPECT_EQ(BlobEntry("a#", 2, 0, 0).name, "");
}

TEST(BlobEntry, HasTheFieldWidthsOfTheFormat) {
  static_assert(sizeof(BlobEntry::size) == 4 && sizeof(BlobEntry::nameLength) == 4 &&
                sizeof(BlobEntry::offset) == 8);
  EXPECT_LT(BlobEntry("a", 1, -1, -1).offset, 0);
  EXPECT_LT(BlobEntry("a", 1, -1, -1).size, 0);
}

}  // namespace
