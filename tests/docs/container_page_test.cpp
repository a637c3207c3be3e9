// docs/formats.md: what a reader finds in the container of the page.
#include <gtest/gtest.h>

#include <cstdio>

#include "container/FileBlob.h"
#include "docs/page.h"

namespace ei4::test {
namespace {

constexpr const char* kContainer = "examples/full.erblb";

/// The file positions where a field stands, in the order of the listing.
std::vector<std::size_t> positionsOf(const std::string& field) {
  std::vector<std::size_t> found;
  for (const HexLine& line : hexLines(formatsPage().only("hex", kContainer))) {
    if (line.field == field) found.push_back(line.offset);
  }
  return found;
}

class ContainerOfThePage : public testing::Test {
 protected:
  ContainerOfThePage() : m_Blob((docsFolder() / kContainer).string()) {}
  void SetUp() override { ASSERT_TRUE(m_Blob.parseBlob()); }

  FileBlob m_Blob;
};

TEST_F(ContainerOfThePage, HasTheStatedEntries) {
  std::vector<std::vector<std::string>> found;
  for (const auto& [name, entry] : m_Blob.entries()) {
    char position[20];
    std::snprintf(position, sizeof position, "%03lX",
                  static_cast<unsigned long>(m_Blob.dataBase() + entry->offset));
    found.push_back(
        {entry->prefix.empty() ? "-" : entry->prefix, name, std::to_string(entry->size), position});
  }
  EXPECT_EQ(found, formatsPage().table("entries"));
}

TEST_F(ContainerOfThePage, HasItsDataWhereThePageSays) {
  EXPECT_EQ(positionsOf("data base"), std::vector{static_cast<std::size_t>(m_Blob.dataBase())});
  const std::vector<std::size_t> names = positionsOf("nameLength");  // of two entries, then of the chunks
  ASSERT_EQ(names.size(), 4U);
  EXPECT_EQ(names[2], static_cast<std::size_t>(m_Blob.dataEnd()));
}

TEST_F(ContainerOfThePage, HoldsTheImageOfThePage) {
  const Bytes image = fileBytes(docsFolder() / "examples/tiny.ei4");
  Bytes payload(image.size());
  const int wanted = static_cast<int>(payload.size());
  const BlobEntry* const entry = m_Blob.findBlobEntry("tiny.ei4");
  EXPECT_EQ(m_Blob.readEntryIntoBuffer(entry, 0, payload.data(), 0, wanted + 1), wanted);
  EXPECT_EQ(payload, image);
}

}  // namespace
}  // namespace ei4::test
