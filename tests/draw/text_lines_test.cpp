#include "draw/text_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using ei4::boundedText;
using ei4::textLines;
using testing::ElementsAre;

TEST(TextLines, AreTheTextItselfWithoutALineEnd) {
  EXPECT_THAT(textLines("one line"), ElementsAre("one line"));
  EXPECT_THAT(textLines(""), ElementsAre(""));
}

TEST(TextLines, EndAtLineFeeds) {
  EXPECT_THAT(textLines("a\nb"), ElementsAre("a", "b"));
  EXPECT_THAT(textLines("a\n\nb\n"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(textLines("\n"), ElementsAre("", ""));
}

TEST(TextLines, EndOnceAtACarriageReturnWithItsLineFeed) {
  EXPECT_THAT(textLines("a\r\nb"), ElementsAre("a", "b"));
  EXPECT_THAT(textLines("a\r\n\r\nb"), ElementsAre("a", "", "b"));
}

TEST(TextLines, LoseTheByteBehindALoneCarriageReturn) {
  EXPECT_THAT(textLines("a\rbc\nd"), ElementsAre("a", "c"));
  EXPECT_THAT(textLines("a\r\r\nb"), ElementsAre("a", ""));
}

TEST(TextLines, AreNoMoreThanTheLineFeedsAndOne) {
  EXPECT_THAT(textLines("a\rbc"), ElementsAre("a"));
  EXPECT_THAT(textLines("a\r"), ElementsAre("a"));
  EXPECT_THAT(textLines("a\n\r"), ElementsAre("a", ""));
  EXPECT_THAT(textLines("a\nb\r"), ElementsAre("a", "b"));
}

TEST(BoundedText, IsTheTextUpToItsLimit) {
  EXPECT_EQ(boundedText("abc", 3), "abc");
  EXPECT_EQ(boundedText("abcd", 3), "abc");
  EXPECT_EQ(boundedText("", 3), "");
  EXPECT_EQ(boundedText("abc", 0), "");
}

TEST(BoundedText, KeepsUtf8CharactersWhole) {
  const std::string text =
      "a\xE2\x82\xAC"
      "b";  // a, a euro sign of three bytes, b
  EXPECT_EQ(boundedText(text, 1), "a");
  EXPECT_EQ(boundedText(text, 2), "a");
  EXPECT_EQ(boundedText(text, 3), "a");
  EXPECT_EQ(boundedText(text, 4), "a\xE2\x82\xAC");
  EXPECT_EQ(boundedText("\xF0\x9F\x98\x80"
                        "b",
                        3),
            "");
}

TEST(BoundedText, CutsWhatIsNoUtf8AnyWhere) {
  EXPECT_EQ(boundedText(std::string(9, '\x80'), 6), std::string(6, '\x80'));
  EXPECT_EQ(boundedText(std::string(9, '\x80'), 2), std::string(2, '\x80'));
}

}  // namespace
