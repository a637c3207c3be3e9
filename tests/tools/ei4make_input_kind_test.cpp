#include "ei4make/input_kind.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ei4::tools::InputKind;
using ei4::tools::kindOf;

InputKind kindOfText(const std::string& text) {
  return kindOf(std::vector<unsigned char>(text.begin(), text.end()));
}

TEST(KindOf, LooksAtTheFirstBytes) {
  EXPECT_EQ(kindOfText("P5\n1 1 255\nx"), InputKind::Pnm);
  EXPECT_EQ(kindOfText("\x89PNG\r\n\x1a\nrest"), InputKind::Png);
  EXPECT_EQ(kindOfText(std::string(128, '\0') + "DICM"), InputKind::Dicom);
  EXPECT_EQ(kindOfText(""), InputKind::Unknown);
  EXPECT_EQ(kindOfText("\x89PNG\n\x1a\n"), InputKind::Unknown);  // as a transfer of text leaves it
  EXPECT_EQ(kindOfText(std::string(127, '\0') + "DICM"), InputKind::Unknown);
  EXPECT_EQ(kindOfText(std::string(128, '\0') + "DIC"), InputKind::Unknown);
}

// The 128 bytes in front of the mark may make the file something else as well.
TEST(KindOf, PutsTheDicomMarkFirst) {
  EXPECT_EQ(kindOfText("P5\n" + std::string(125, ' ') + "DICM"), InputKind::Dicom);
}

}  // namespace
