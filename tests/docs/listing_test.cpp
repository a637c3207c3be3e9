// docs/formats.md: its listings are the committed files, and each line says what its bytes say.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <set>

#include "docs/page.h"

namespace ei4::test {
namespace {

std::vector<Block> hexListings() { return formatsPage().ofKind("hex"); }

TEST(HexListings, EqualTheirFilesByteForByte) {
  for (const Block& block : hexListings())
    EXPECT_EQ(bytesOf(hexLines(block)), fileBytes(docsFolder() / block.name)) << block.name;
}

TEST(HexListings, CountTheirOffsets) {
  for (const Block& block : hexListings()) {
    std::size_t offset = 0;
    for (const HexLine& line : hexLines(block)) {
      EXPECT_EQ(line.offset, offset) << block.name;
      offset += line.bytes.size();
    }
  }
}

TEST(HexListings, GiveTheValuesOfTheirBytes) {
  const std::set<std::string> kTexts = {"magic", "name"};
  const std::set<std::string> kReals = {"intercept", "slope", "window", "level"};
  const std::set<std::string> kIntegers = {
      "length", "bytesPerPixel", "bitsPerPixel", "xSize", "ySize", "version",
      "N",      "nameLength",    "size",         "offset"};
  int checked = 0;
  for (const Block& block : hexListings()) {
    for (const HexLine& line : hexLines(block)) {
      if (kTexts.contains(line.field)) {
        EXPECT_EQ(std::string(line.bytes.begin(), line.bytes.end()), line.meaning);
      } else if (kReals.contains(line.field)) {
        ASSERT_EQ(line.bytes.size(), 4U) << line.field;
        std::uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) bits |= std::uint32_t{line.bytes[static_cast<std::size_t>(i)]} << (8 * i);
        EXPECT_EQ(std::bit_cast<float>(bits), std::stof(line.meaning)) << line.field;
      } else if (kIntegers.contains(line.field)) {
        ASSERT_LE(line.bytes.size(), 8U) << line.field;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < line.bytes.size(); ++i) value |= std::uint64_t{line.bytes[i]} << (8 * i);
        EXPECT_EQ(value, std::stoul(line.meaning)) << line.field << ' ' << line.meaning;
      } else {
        continue;
      }
      ++checked;
    }
  }
  EXPECT_GE(checked, 25) << "the listings have lost their fields";
}

TEST(TextListing, EqualsItsFile) {
  for (const Block& block : formatsPage().ofKind("text")) {
    std::string text;
    for (const std::string& line : block.lines) text += line + "\n";
    const Bytes file = fileBytes(docsFolder() / block.name);
    EXPECT_EQ(text, std::string(file.begin(), file.end())) << block.name;
  }
}

TEST(Listings, LeaveNoExampleOut) {
  std::set<std::string> listed;
  for (const char* kind : {"hex", "text"}) {
    for (const Block& block : formatsPage().ofKind(kind)) listed.insert(block.name);
  }
  std::set<std::string> committed;
  for (const auto& file : std::filesystem::directory_iterator(docsFolder() / "examples"))
    committed.insert("examples/" + file.path().filename().string());
  EXPECT_EQ(listed, committed);
}

}  // namespace
}  // namespace ei4::test
