#include "ei4make/dicom_structure.h"

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "ei4make/picture.h"

namespace {

// Texts are put together as they read.
// NOLINTBEGIN(performance-inefficient-string-concatenation)

using namespace ei4::tools;
using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;

std::vector<unsigned char> bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::string refusalOf(std::string_view dataSet, DicomEncoding encoding = {}) {
  try {
    outlineOf(bytesOf(dataSet), encoding);
  } catch (const PictureError& error) {
    return error.what();
  }
  return "accepted";
}

const std::string kRows = "\x28\0\x10\0US\2\0\1\0"s;
const std::string kPixels = "\xE0\x7F\x10\0OW\0\0\4\0\0\0abcd"s;

TEST(OutlineOf, FindsThePixelsBehindOtherElements) {
  const DicomOutline outline = outlineOf(bytesOf(kRows + kPixels + "what follows"), {});
  EXPECT_EQ(outline.pixelElement, 10U);
  EXPECT_EQ(outline.pixelValue, 22U);
  EXPECT_EQ(outline.pixelValueEnd, 26U);
  EXPECT_FALSE(outline.hasFragments);
  EXPECT_TRUE(outline.isWordValue);
}

TEST(OutlineOf, ReadsTheOtherEncodings) {
  const DicomOutline bare =
      outlineOf(bytesOf("\x28\0\x10\0\2\0\0\0\1\0\xE0\x7F\x10\0\2\0\0\0ab"sv), {false, false});
  EXPECT_EQ(bare.pixelValue, 18U);
  const DicomOutline swapped =
      outlineOf(bytesOf("\0\x28\0\x10US\0\2\0\1\x7F\xE0\0\x10OB\0\0\0\0\0\2ab"sv), {true, true});
  EXPECT_EQ(swapped.pixelValue, 22U);
  EXPECT_FALSE(swapped.isWordValue);
}

const std::string kItem = "\xFE\xFF\0\xE0"s;
const std::string kItemEnd = "\xFE\xFF\x0D\xE0\0\0\0\0"s;
const std::string kSequenceEnd = "\xFE\xFF\xDD\xE0\0\0\0\0"s;
const std::string kOpen = "\xFF\xFF\xFF\xFF"s;

TEST(OutlineOf, FollowsSequencesWithAndWithoutLengths) {
  const std::string sequence = "\x08\0\x40\x11SQ\0\0"s;
  const std::string unknown = "\x09\0\x40\x11UN\0\0"s;
  const std::string inner = "\x08\0\x50\x11\0\0\0\0"s;  // inside an unknown one, without representation
  for (const std::string& front :
       {sequence + kOpen + kItem + kOpen + kRows + kItemEnd + kSequenceEnd,
        sequence + kOpen + kItem + "\x0A\0\0\0"s + kRows + kSequenceEnd,
        sequence + "\x12\0\0\0"s + kItem + "\x0A\0\0\0"s + kRows, sequence + "\0\0\0\0"s,
        unknown + kOpen + kItem + kOpen + inner + kItemEnd + kSequenceEnd}) {
    EXPECT_EQ(outlineOf(bytesOf(front + kPixels), {}).pixelElement, front.size());
  }
}

TEST(OutlineOf, FindsFragments) {
  const std::string pixels = "\xE0\x7F\x10\0OB\0\0"s + kOpen + kItem + "\0\0\0\0"s + kItem + "\2\0\0\0ab"s;
  const DicomOutline outline = outlineOf(bytesOf(pixels + kSequenceEnd + "behind"), {});
  EXPECT_TRUE(outline.hasFragments);
  EXPECT_EQ(outline.pixelValueEnd, pixels.size() + kSequenceEnd.size());
  EXPECT_THAT(refusalOf(pixels), HasSubstr("ends within an element"));
  EXPECT_THAT(refusalOf(pixels + kItemEnd), HasSubstr("stands among fragments"));
}

TEST(OutlineOf, RefusesLengthsThatTheFileCannotHold) {
  EXPECT_EQ(refusalOf("\x28\0\x10\0US\3\1\1\0"sv),
            "the DICOM file is damaged: element (0028,0010) is longer than what it is in");
  EXPECT_THAT(refusalOf("\xE0\x7F\x10\0OW\0\0\xFE\xFF\xFF\xFF"
                        "abcd"sv),
              HasSubstr("(7fe0,0010) is longer"));
  const std::string sequence = "\x08\0\x40\x11SQ\0\0\x12\0\0\0"s;  // the item is longer than it
  EXPECT_THAT(refusalOf(sequence + kItem + "\x0C\0\0\0"s + kRows + kRows),
              HasSubstr("(fffe,e000) is longer"));
  EXPECT_THAT(refusalOf("\x28\0\x10\0LO\1\0x"sv), HasSubstr("odd length"));
  EXPECT_THAT(refusalOf("\x28\0\x10\0UT\0\0"s + kOpen + kRows), HasSubstr("has no length"));
  EXPECT_THAT(refusalOf("\x28\0\x10\0OB\0\0"s + kOpen + kRows), HasSubstr("has fragments"));
}

TEST(OutlineOf, RefusesEveryCut) {
  const std::string whole =
      kRows + "\x08\0\x40\x11SQ\0\0"s + kOpen + kItem + kOpen + kRows + kItemEnd + kSequenceEnd + kPixels;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_NE(refusalOf(std::string_view(whole).substr(0, length)), "accepted") << length;
  }
  EXPECT_EQ(refusalOf(whole), "accepted");
}

TEST(OutlineOf, RefusesWhatIsNoElement) {
  EXPECT_THAT(refusalOf("\x28\0\x10\0??\2\0\1\0"sv), HasSubstr("unknown value representation"));
  EXPECT_THAT(refusalOf(kItemEnd), HasSubstr("stands where it cannot"));
  EXPECT_THAT(refusalOf("\x08\0\x40\x11SQ\0\0"s + kOpen + kRows), HasSubstr("where an item should"));
  EXPECT_THAT(refusalOf(""), HasSubstr("no pixel data"));
}

TEST(OutlineOf, FollowsSequencesOnlySoDeep) {
  const auto nested = [](int depth, const std::string& head) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += head + kOpen + kItem + kOpen;
    for (int i = 0; i < depth; ++i) text += kItemEnd + kSequenceEnd;
    return text;
  };
  const std::string explicitHead = "\x08\0\x40\x11SQ\0\0"s;
  EXPECT_EQ(refusalOf(nested(kMostNesting, explicitHead) + kPixels), "accepted");
  EXPECT_THAT(refusalOf(nested(kMostNesting + 1, explicitHead) + kPixels), HasSubstr("nests too deep"));
  EXPECT_THAT(refusalOf(nested(100000, explicitHead)), HasSubstr("nests too deep"));
  // With lengths and without representations a sequence can be told by its content only.
  std::string text;
  for (int i = 0; i < kMostNesting + 1; ++i) {
    const auto length = [](std::size_t n) {
      return std::string{static_cast<char>(n & 0xFFU), static_cast<char>(n >> 8U), 0, 0};
    };
    text = "\x08\0\x40\x11"s + length(text.size() + 8) + kItem + length(text.size()) + text;
  }
  EXPECT_THAT(refusalOf(text, {false, false}), HasSubstr("nests too deep"));
}

TEST(ReadPrologue, TakesTheTransferSyntaxWithoutItsPadding) {
  const std::string front = std::string(128, 'x') + "DICM";
  const auto read = [&](const std::string& meta) { return readPrologue(bytesOf(front + meta)); };
  const std::string meta = "\2\0\x10\0UI\x12\0"s + "1.2.840.10008.1.2" + "\0"s;
  EXPECT_EQ(read(meta + kRows).transferSyntax, "1.2.840.10008.1.2");
  EXPECT_EQ(read(meta + kRows).dataSetOffset, front.size() + meta.size());
  EXPECT_THROW(read(""), PictureError);
  EXPECT_THROW(read(kRows), PictureError);
  EXPECT_THROW(read(meta.substr(0, 20)), PictureError);
  EXPECT_THROW(read("\2\0\x10\0UI\0\0"s), PictureError);
  EXPECT_THROW(read("\2\0\x10\0UI\2\0\x1B["s), PictureError);
}

// NOLINTEND(performance-inefficient-string-concatenation)

}  // namespace
