#include "text/extract.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::StrEq;

// The value of the field and, behind a bar, the text from `next` on.
std::string field(std::string text, const char* name) {
  char untouched = 0;
  char* next = &untouched;
  const CString value = GetCommentField(text.data(), name, &next);
  return std::string(value) + "|" + (next == nullptr ? "(null)" : next);
}

TEST(GetWord, EndsAtWhiteSpaceOrTheEnd) {
  for (const char* text : {"abc", "abc def", "abc\tdef", "abc\rdef", "abc\ndef"})
    EXPECT_THAT(GetWord(text), StrEq("abc")) << text;
  EXPECT_THAT(GetWord("a\f\v#:,b c"), StrEq("a\f\v#:,b")) << "nothing else ends a word";
}

TEST(GetWord, IsEmptyInFrontOfWhiteSpaceAndForNull) {
  EXPECT_THAT(GetWord(" abc"), StrEq(""));
  EXPECT_THAT(GetWord("\nabc"), StrEq(""));
  EXPECT_THAT(GetWord(""), StrEq(""));
  EXPECT_THAT(GetWord(nullptr), StrEq(""));
}

TEST(GetLine, EndsAtEitherLineEndAndKeepsBlanks) {
  EXPECT_THAT(GetLine(" a b \tc \nd"), StrEq(" a b \tc "));
  EXPECT_THAT(GetLine("a b\r\nc"), StrEq("a b"));
  EXPECT_THAT(GetLine("a # b"), StrEq("a # b"));
  EXPECT_THAT(GetLine("\nb"), StrEq(""));
  EXPECT_THAT(GetLine(""), StrEq(""));
  EXPECT_THAT(GetLine(nullptr), StrEq(""));
}

TEST(GetPureLine, EndsAtTheFirstHash) {
  EXPECT_THAT(GetPureLine("a b#c#d"), StrEq("a b"));
  EXPECT_THAT(GetPureLine("#a"), StrEq(""));
  EXPECT_THAT(GetPureLine("a\n#b"), StrEq("a"));
}

TEST(GetPureLine, HasNoWhiteSpaceAround) {
  EXPECT_THAT(GetPureLine(" \ta b\t \t# c"), StrEq("a b"));
  EXPECT_THAT(GetPureLine("\t a\tb \r\nc"), StrEq("a\tb"));
  EXPECT_THAT(GetPureLine(" \t "), StrEq(""));
  EXPECT_THAT(GetPureLine("\v a \f"), StrEq("\v a \f")) << "these are no white space here";
  EXPECT_THAT(GetPureLine(""), StrEq(""));
  EXPECT_THAT(GetPureLine(nullptr), StrEq(""));
}

TEST(GetCommentField, FindsTheValueInAnyCommentLine) {
  EXPECT_EQ(field("# size: 12 34\nsized", "size"), "12 34|sized");
  EXPECT_EQ(field("sized 1\n\n \t# a:b\n#\t size:\t 12\r\n\r\n more x", "size"), "12|more x");
  EXPECT_EQ(field("  #size:12", "size"), "12|(null)");
}

TEST(GetCommentField, KeepsBlanksAtTheEndOfTheValue) { EXPECT_EQ(field("# a: b c \t\nd", "a"), "b c \t|d"); }

TEST(GetCommentField, TakesTheFirstOfSeveral) { EXPECT_EQ(field("#a:1\n#a:2", "a"), "1|#a:2"); }

TEST(GetCommentField, GivesAnEmptyValueWithTheNextLine) {
  EXPECT_EQ(field("#a:\n#b:2", "a"), "|#b:2") << "the value doesn't cross the line end";
  EXPECT_EQ(field("#a: \t\r\nc", "a"), "|c");
  EXPECT_EQ(field("#a:", "a"), "|(null)");
}

TEST(GetCommentField, WantsTheWholeNameAndTheColonBehindIt) {
  EXPECT_EQ(field("#size :1\nx", "size"), "|(null)");
  EXPECT_EQ(field("#sizes:1\nx", "size"), "|(null)");
  EXPECT_EQ(field("#siz:1\nx", "size"), "|(null)");
  EXPECT_EQ(field("#Size:1\nx", "size"), "|(null)");
  EXPECT_EQ(field("##size:1\nx", "size"), "|(null)");
  EXPECT_EQ(field("#siz", "size"), "|(null)") << "the text ends within the name";
  EXPECT_EQ(field("#size", "size"), "|(null)");
  EXPECT_EQ(field("#", "size"), "|(null)");
}

TEST(GetCommentField, PassesOverOtherLines) {
  EXPECT_EQ(field("size:1\na #size:2\nx", "size"), "|(null)");
  EXPECT_EQ(field("", "size"), "|(null)");
  EXPECT_EQ(field(" \n", "size"), "|(null)");
}

TEST(GetCommentField, NeedsNoPlaceForTheNextLine) {
  char text[] = "#a:1\nb";
  EXPECT_THAT(GetCommentField(text, "a", nullptr), StrEq("1"));
  EXPECT_THAT(GetCommentField(text, "b", nullptr), StrEq(""));
}

TEST(GetCommentField, FindsNothingInNull) {
  char untouched = 0;
  char* next = &untouched;
  EXPECT_THAT(GetCommentField(nullptr, "a", &next), StrEq(""));
  EXPECT_EQ(next, nullptr);
}

// Each word of a long text by itself: when one costs the rest of the text, the test runs into its time limit.
TEST(GetWord, CostsTheWordAlone) {
  std::string text;
  constexpr int kWords = 2'000'000;
  for (int i = 0; i < kWords; ++i) text += "ab ";
  long total = 0;
  for (const char* p = text.c_str(); *p != '\0'; p += 3) total += GetWord(p).GetLength();
  EXPECT_EQ(total, 2L * kWords);
}

TEST(GetCommentField, WalksALongTextOnce) {
  std::string text;
  for (int i = 0; i < 1'000'000; ++i) text += "# a: b\n";
  EXPECT_EQ(field(text + "# z: 1", "z"), "1|(null)");
}

}  // namespace
