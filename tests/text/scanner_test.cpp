#include "text/scanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using Scan = char* (*)(char*);

// What is left of the text where the scanner stops; "(null)" when it says that nothing follows.
std::string rest(Scan scan, std::string text) {
  const std::string before = text;
  const char* const p = scan(text.data());
  EXPECT_EQ(text, before) << "a scanner only reads";
  return p == nullptr ? "(null)" : p;
}

TEST(Scanner, AnswersNullForNull) {
  for (const Scan scan :
       {SkipWhiteSpaces, SkipWhiteSpacesInLine, NextWord, NextWordInLine, NextLine, SkipCommentLines})
    EXPECT_EQ(scan(nullptr), nullptr);
}

TEST(Scanner, AnswersAPositionInTheSameText) {
  char text[] = " a\n b";
  EXPECT_EQ(SkipWhiteSpaces(text), text + 1);
  EXPECT_EQ(SkipWhiteSpacesInLine(text), text + 1);
  EXPECT_EQ(NextWord(text + 1), text + 4);
  EXPECT_EQ(NextLine(text), text + 4);
}

TEST(SkipWhiteSpaces, PassesTheFourCharactersOfItsSet) {
  EXPECT_EQ(rest(SkipWhiteSpaces, " \t\r\n \tab c"), "ab c");
  EXPECT_EQ(rest(SkipWhiteSpaces, "ab"), "ab");
}

TEST(SkipWhiteSpaces, StopsAtAnyOtherCharacter) {
  for (int c = 1; c < 256; ++c) {
    if (std::string_view(" \t\r\n").find(static_cast<char>(c)) != std::string_view::npos) continue;
    const std::string text{static_cast<char>(c), 'x'};
    EXPECT_EQ(rest(SkipWhiteSpaces, text), text) << "character " << c;
  }
}

TEST(SkipWhiteSpaces, StopsAtTheEndOfTheText) {
  EXPECT_EQ(rest(SkipWhiteSpaces, ""), "");
  EXPECT_EQ(rest(SkipWhiteSpaces, " \n"), "");
}

TEST(SkipWhiteSpacesInLine, PassesSpacesAndTabsAlone) {
  EXPECT_EQ(rest(SkipWhiteSpacesInLine, " \t \ta"), "a");
  EXPECT_EQ(rest(SkipWhiteSpacesInLine, " \ra"), "\ra");
  EXPECT_EQ(rest(SkipWhiteSpacesInLine, " \na"), "\na");
  EXPECT_EQ(rest(SkipWhiteSpacesInLine, " \va"), "\va");
  EXPECT_EQ(rest(SkipWhiteSpacesInLine, "  "), "");
}

TEST(NextWord, PassesTheRestOfAWordAndWhatStandsBehind) {
  EXPECT_EQ(rest(NextWord, "abc def ghi"), "def ghi");
  EXPECT_EQ(rest(NextWord, "abc\t \tdef"), "def");
  EXPECT_EQ(rest(NextWord, "#a:b,c\fd next"), "next") << "nothing else ends a word";
}

TEST(NextWord, CrossesLineEnds) {
  EXPECT_EQ(rest(NextWord, "abc \n def"), "def");
  EXPECT_EQ(rest(NextWord, "abc\r\n\r\n\tdef"), "def");
}

TEST(NextWord, TakesAnEmptyWordWhenItStandsInFrontOfOne) {
  EXPECT_EQ(rest(NextWord, " abc def"), "abc def");
  EXPECT_EQ(rest(NextWord, "\nabc"), "abc");
}

TEST(NextWord, AnswersNullBehindTheLastOne) {
  EXPECT_EQ(rest(NextWord, "abc"), "(null)");
  EXPECT_EQ(rest(NextWord, "abc \r\n"), "(null)");
  EXPECT_EQ(rest(NextWord, ""), "(null)");
}

TEST(NextWordInLine, PassesTheRestOfAWordAndBlanks) {
  EXPECT_EQ(rest(NextWordInLine, "abc def"), "def");
  EXPECT_EQ(rest(NextWordInLine, "abc\t \tdef\nx"), "def\nx");
  EXPECT_EQ(rest(NextWordInLine, " abc"), "abc");
}

TEST(NextWordInLine, AnswersNullAtTheLineEnd) {
  EXPECT_EQ(rest(NextWordInLine, "abc \n def"), "(null)");
  EXPECT_EQ(rest(NextWordInLine, "abc\n"), "(null)");
  EXPECT_EQ(rest(NextWordInLine, "abc\r\ndef"), "(null)");
  EXPECT_EQ(rest(NextWordInLine, "\ndef"), "(null)");
  EXPECT_EQ(rest(NextWordInLine, "abc  "), "(null)");
  EXPECT_EQ(rest(NextWordInLine, ""), "(null)");
}

TEST(NextLine, PassesTheLineAndAllWhiteSpaceBehindIt) {
  EXPECT_EQ(rest(NextLine, "a b\nc d"), "c d");
  EXPECT_EQ(rest(NextLine, "a\rb"), "b") << "a carriage return alone ends a line";
  EXPECT_EQ(rest(NextLine, "a\r\n\r\n \t\n\tb c\n"), "b c\n");
  EXPECT_EQ(rest(NextLine, "\nb"), "b");
}

TEST(NextLine, StopsAtAFormFeed) { EXPECT_EQ(rest(NextLine, "a\n\fb"), "\fb"); }

TEST(NextLine, AnswersNullBehindTheLastOne) {
  EXPECT_EQ(rest(NextLine, "abc def"), "(null)");
  EXPECT_EQ(rest(NextLine, "abc\n \r\n\t"), "(null)");
  EXPECT_EQ(rest(NextLine, ""), "(null)");
}

TEST(SkipCommentLines, StopsAtTheFirstLineThatIsNoComment) {
  EXPECT_EQ(rest(SkipCommentLines, "a # b"), "a # b");
  EXPECT_EQ(rest(SkipCommentLines, " \r\n\ta"), "a");
  EXPECT_EQ(rest(SkipCommentLines, "# one\n#two\n\n  # three\n  a\n# four"), "a\n# four");
}

TEST(SkipCommentLines, AnswersNullWhenTheTextEnds) {
  EXPECT_EQ(rest(SkipCommentLines, ""), "(null)");
  EXPECT_EQ(rest(SkipCommentLines, " \n"), "(null)");
  EXPECT_EQ(rest(SkipCommentLines, "# one\n# two"), "(null)");
  EXPECT_EQ(rest(SkipCommentLines, "# one\n \n"), "(null)");
}

}  // namespace
