#include "types/cstring.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

static_assert(sizeof(CString) == sizeof(char*), "one pointer and nothing else");
static_assert(std::is_nothrow_move_assignable_v<CString>);

// What lies in the buffer, the terminators behind the text included.
std::vector<char> bytes(const char* buffer, std::size_t n) { return {buffer, buffer + n}; }

CString formattedWith(const char* text) {
  CString string;
  string.Format("%s", text);
  return string;
}

}  // namespace

TEST(CString, IsEmptyAndNeverNullAfterEachConstructor) {
  const CString none;
  const CString fromNull(nullptr, 3);
  const CString fromNothing("abc", 0);
  const CString copy(none);
  for (const CString* string : {&none, &fromNull, &fromNothing, &copy}) EXPECT_STREQ(*string, "");
}

TEST(CString, CopiesATextIntoMemoryOfItsOwn) {
  char text[] = "abc";
  const CString string(text);
  text[0] = 'x';
  EXPECT_STREQ(string, "abc");
}

TEST(CString, TakesTheFirstCharactersAndNoMoreThanThereAre) {
  EXPECT_STREQ(CString("abcd", 2), "ab");
  EXPECT_STREQ(CString("abcd", 4), "abcd");
  EXPECT_STREQ(CString("abcd", 5), "abcd");
  EXPECT_STREQ(CString("abcd", -1), "");
}

TEST(CString, LooksNoFurtherThanTheCharactersItTakes) {
  const char unterminated[] = {'a', 'b'};
  EXPECT_STREQ(CString(unterminated, 2), "ab");
}

TEST(CString, CopiesAreIndependent) {
  CString original("abc");
  CString constructed(original);
  CString assigned("old");
  assigned = original;
  original.GetBuffer()[0] = 'x';
  EXPECT_STREQ(constructed, "abc");
  EXPECT_STREQ(assigned, "abc");
}

TEST(CString, KeepsItsTextWhenAssignedToItself) {
  CString string("abc");
  const CString& same = string;
  string = same;
  EXPECT_STREQ(string, "abc");
  CString& again = string;
  string = std::move(again);
  EXPECT_STREQ(string, "abc");
}

TEST(CString, TakesAPartOfItsOwnText) {
  CString string("abcdef");
  string = string.GetBuffer() + 4;
  EXPECT_STREQ(string, "ef");
}

TEST(CString, ExchangesTextsWhenMovedTo) {
  CString from("abc");
  CString to("old");
  const char* const buffer = from;
  to = std::move(from);
  EXPECT_EQ(static_cast<const char*>(to), buffer) << "not copied";
  EXPECT_STREQ(to, "abc");
  // NOLINTNEXTLINE(bugprone-use-after-move, clang-analyzer-cplusplus.Move): that is the promise
  EXPECT_STREQ(from, "old");
}

TEST(CString, HandsOutItsBuffer) {
  CString string("abc");
  const char* const text = string;
  EXPECT_EQ(string.GetBuffer(), text);
  EXPECT_EQ(string.LockBuffer(), text);
  string.LockBuffer()[1] = 'x';
  string.UnlockBuffer();
  string.ReleaseBuffer();
  EXPECT_STREQ(string, "axc");
  EXPECT_EQ(string.GetBuffer(), text);
}

TEST(CString, KeepsTheBufferThatHasTheLengthAskedFor) {
  CString string("abcd");
  const char* const text = string;
  EXPECT_EQ(string.GetBuffer(4), text);
}

TEST(CString, CutsTheBufferToTheLengthAskedFor) {
  CString string("abcd");
  EXPECT_STREQ(string.GetBuffer(2), "ab");
  EXPECT_STREQ(string, "ab");
  EXPECT_STREQ(string.GetBuffer(0), "");
  EXPECT_STREQ(CString("abcd").GetBuffer(-1), "");
}

TEST(CString, PadsTheBufferWithZerosToTheLengthAskedFor) {
  CString string("ab");
  EXPECT_THAT(bytes(string.GetBuffer(5), 6), ElementsAre('a', 'b', 0, 0, 0, 0));
  std::fill_n(string.GetBuffer(), 5, 'x');  // all five are its own
  EXPECT_STREQ(string, "xxxxx");
}

TEST(CString, HasTheLengthOfItsTextWhateverLiesBehind) {
  CString string("abcd");
  EXPECT_EQ(string.GetLength(), 4);
  string.GetBuffer()[1] = '\0';
  EXPECT_EQ(string.GetLength(), 1);
  EXPECT_EQ(CString().GetLength(), 0);
}

TEST(CString, ComparesByteByByte) {
  const CString string("abc");
  EXPECT_EQ(string.Compare("abc"), 0);
  EXPECT_LT(string.Compare("abd"), 0);
  EXPECT_GT(string.Compare("ab"), 0);
  EXPECT_LT(string.Compare("\xE4"), 0);  // as unsigned bytes
}

TEST(CString, BecomesEmpty) {
  CString string("abc");
  string.Empty();
  EXPECT_STREQ(string, "");
  string = "abc";
  string.Init();
  EXPECT_STREQ(string, "");
}

TEST(CString, AppendsATextOrACharacter) {
  CString string;
  string += "ab";
  string += 'c';
  string += "";
  EXPECT_STREQ(string, "abc");
}

TEST(CString, AppendsNothingForNullOrAZeroByte) {
  CString string("ab");
  string += static_cast<const char*>(nullptr);
  string += '\0';
  string += 'c';
  EXPECT_STREQ(string, "abc");
}

TEST(CString, AppendsItsOwnText) {
  CString string("abc");
  string += string;
  EXPECT_STREQ(string, "abcabc");
  string += string.GetBuffer() + 4;
  EXPECT_STREQ(string, "abcabcbc");
}

TEST(CString, ReplacesEachOccurrenceAndCountsThem) {
  CString string("banana");
  EXPECT_EQ(string.Replace('a', 'b'), 3);
  EXPECT_STREQ(string, "bbnbnb");
  EXPECT_EQ(string.Replace('x', 'y'), 0);
  EXPECT_STREQ(string, "bbnbnb");
}

TEST(CString, ReplacesNothingForEqualBytesOrAZeroByte) {
  CString string("banana");
  EXPECT_EQ(string.Replace('a', 'a'), 0);
  EXPECT_EQ(string.Replace('\0', 'x'), 0);
  EXPECT_STREQ(string, "banana");
}

TEST(CString, EndsAtTheFirstByteReplacedByZeroYetReplacesAll) {
  CString string("a#b#c");
  EXPECT_EQ(string.Replace('#', '\0'), 2);
  EXPECT_THAT(bytes(string, 6), ElementsAre('a', 0, 'b', 0, 'c', 0));
}

TEST(CString, TrimsBlanksOnTheLeft) {
  CString string("  a b ");
  string.TrimLeft();
  EXPECT_STREQ(string, "a b ");
  string.TrimLeft();
  EXPECT_STREQ(string, "a b ");
}

TEST(CString, TrimsBlanksOnTheRight) {
  CString string(" a b  ");
  string.TrimRight();
  EXPECT_STREQ(string, " a b");
}

TEST(CString, TrimsNoOtherWhiteSpaceThanBlanks) {
  for (const char* text : {"\ta\t", "\na\n", "\ra\r", "\t a \t"}) {
    CString string(text);
    string.TrimLeft();
    string.TrimRight();
    EXPECT_STREQ(string, text);
  }
}

TEST(CString, TrimsBlanksAloneToNothing) {
  for (const char* text : {"", " ", "   "}) {
    CString left(text);
    left.TrimLeft();
    EXPECT_STREQ(left, "");
    CString right(text);
    right.TrimRight();
    EXPECT_STREQ(right, "");
  }
}

TEST(CString, FormatsAsPrintfDoesAndReplacesTheOldText) {
  CString string("old");
  string.Format("%d %5.2f %s%c%%", -7, 1.005, "text", '!');
  EXPECT_STREQ(string, "-7  1.00 text!%");
  string.Format("%s", "");
  EXPECT_STREQ(string, "");
}

TEST(CString, FormatsItsOwnText) {
  CString string("abc");
  string.Format("<%s|%s>", static_cast<const char*>(string), static_cast<const char*>(string));
  EXPECT_STREQ(string, "<abc|abc>");
}

TEST(CString, CutsAFormattedTextTo3999Bytes) {
  for (const std::size_t length : {3998U, 3999U, 4000U, 100000U}) {
    const std::string text(length, 'x');
    const std::size_t kept = std::min<std::size_t>(length, 3999);
    EXPECT_EQ(formattedWith(text.c_str()).GetLength(), static_cast<int>(kept));
  }
}

TEST(CString, IsEmptyWhereFormattingFails) {
  CString string("old");
  string.Format("abc%lc", static_cast<wint_t>(0x7FFFFFFF));  // no such character
  EXPECT_STREQ(string, "");
}

TEST(CString, EscapesQuotesAndBackslashes) {
  CString string(R"(a"b\c'd)");
  string.EncodeBuffer_();
  EXPECT_STREQ(string, R"(a\"b\\c'd)");
  CString twice(R"("\)");
  twice.EncodeBuffer_();
  twice.EncodeBuffer_();
  EXPECT_STREQ(twice, R"(\\\"\\\\)");
}

TEST(CString, LeavesATextWithNothingToEscape) {
  for (const char* text : {"", "plain\ttext\n"}) {
    CString string(text);
    string.EncodeBuffer_();
    EXPECT_STREQ(string, text);
  }
}
