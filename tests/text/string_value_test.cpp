#include "text/string_value.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace {

constexpr int kUntouched = -77;

// What a reader did with a text: its answer, how many characters it moved and the value it left.
template <class VALUE>
struct Outcome {
  bool read;
  long moved;
  VALUE value;
  bool operator==(const Outcome&) const = default;
};

template <class VALUE>
std::ostream& operator<<(std::ostream& out, const Outcome<VALUE>& outcome) {
  return out << (outcome.read ? "read " : "refused ") << outcome.value << " after " << outcome.moved;
}

template <class VALUE>
Outcome<VALUE> outcomeOf(bool (*reader)(const char*&, VALUE&), const char* text, VALUE value) {
  const char* at = text;
  const bool read = reader(at, value);
  return {read, at - text, value};
}

Outcome<int> readInt(const char* text) { return outcomeOf<int>(CStringValue::ReadInt, text, kUntouched); }
Outcome<int> readBool(const char* text) { return outcomeOf<int>(CStringValue::ReadBOOL, text, kUntouched); }
Outcome<unsigned long> readDword(const char* text) {
  return outcomeOf<unsigned long>(CStringValue::ReadDWORD, text, 77);
}
Outcome<char> readChar(const char* text) { return outcomeOf<char>(CStringValue::ReadChar, text, '?'); }
Outcome<double> readDouble(const char* text) {
  return outcomeOf<double>(CStringValue::ReadDouble, text, kUntouched);
}

using Text = Outcome<std::string>;

Text textOutcome(bool (*reader)(const char*&, CString&), const char* text) {
  const char* at = text;
  CString value("old");
  const bool read = reader(at, value);
  return {read, at - text, static_cast<const char*>(value)};
}

Text readString(const char* text) { return textOutcome(CStringValue::ReadString, text); }
Text readWord(const char* text) { return textOutcome(CStringValue::ReadWord, text); }
Text readLine(const char* text) { return textOutcome(CStringValue::ReadLine, text); }

// What a writer appends to a string that holds "<" already.
template <class VALUE>
std::string appended(void (*writer)(CString&, VALUE), VALUE value) {
  CString out("<");
  writer(out, value);
  return static_cast<const char*>(out);
}

std::string appended(void (*writer)(CString&, const CString&), const char* text) {
  return appended<const CString&>(writer, CString(text));
}

// What a writer leaves at a position, checked to be closed by a zero byte where the position is then.
template <class VALUE>
std::string written(void (*writer)(char*&, VALUE), VALUE value) {
  char buffer[64];
  std::memset(buffer, '#', sizeof(buffer));
  char* at = buffer;
  writer(at, value);
  EXPECT_EQ(*at, '\0');
  EXPECT_EQ(at[1], '#') << "no more than that";
  return {buffer, at};
}

std::string written(void (*writer)(char*&, const CString&), const char* text) {
  return written<const CString&>(writer, CString(text));
}

// All texts of up to `longest` characters over an alphabet.
std::vector<std::string> textsOver(const std::string& alphabet, std::size_t longest) {
  std::vector<std::string> texts = {""};
  for (std::size_t from = 0, length = 1; length <= longest; ++length) {
    const std::size_t to = texts.size();
    for (; from < to; ++from) {
      for (const char c : alphabet) texts.push_back(texts[from] + c);
    }
  }
  return texts;
}

}  // namespace

TEST(ReadInt, TakesDigitsAndOneSpace) {
  EXPECT_EQ(readInt("12 "), (Outcome<int>{true, 3, 12}));
  EXPECT_EQ(readInt("12  7"), (Outcome<int>{true, 3, 12}));
  EXPECT_EQ(readInt("0012 x"), (Outcome<int>{true, 5, 12}));
}

TEST(ReadInt, TakesAMinusInFront) {
  EXPECT_EQ(readInt("-7 "), (Outcome<int>{true, 3, -7}));
  EXPECT_EQ(readInt("-0 "), (Outcome<int>{true, 3, 0}));
  EXPECT_EQ(readInt("-2147483648 "), (Outcome<int>{true, 12, INT_MIN}));
}

TEST(ReadInt, FailsWithoutADigit) {
  EXPECT_EQ(readInt(""), (Outcome<int>{false, 0, kUntouched}));
  EXPECT_EQ(readInt(" 5 "), (Outcome<int>{false, 0, kUntouched}));
  EXPECT_EQ(readInt("+5 "), (Outcome<int>{false, 0, kUntouched}));
  EXPECT_EQ(readInt("x"), (Outcome<int>{false, 0, kUntouched}));
}

TEST(ReadInt, ConsumesTheMinusThatNoDigitFollows) {
  EXPECT_EQ(readInt("-"), (Outcome<int>{false, 1, kUntouched}));
  EXPECT_EQ(readInt("--5 "), (Outcome<int>{false, 1, kUntouched}));
  EXPECT_EQ(readInt("- 5 "), (Outcome<int>{false, 1, kUntouched}));
}

TEST(ReadInt, KeepsTheDigitsWithoutTheirSignWhenNoSpaceFollows) {
  EXPECT_EQ(readInt("12x"), (Outcome<int>{false, 2, 12}));
  EXPECT_EQ(readInt("-12x"), (Outcome<int>{false, 3, 12}));
  EXPECT_EQ(readInt("-12"), (Outcome<int>{false, 3, 12}));
  EXPECT_EQ(readInt("12\t"), (Outcome<int>{false, 2, 12}));
  EXPECT_EQ(readInt("12\n"), (Outcome<int>{false, 2, 12}));
}

TEST(ReadInt, WrapsBeyondAnInt) {
  EXPECT_EQ(readInt("2147483648 ").value, INT_MIN);
  EXPECT_EQ(readInt("4294967301 ").value, 5);
  EXPECT_EQ(readInt("-4294967301 ").value, -5);
  EXPECT_EQ(readInt("-2147483649 ").value, INT_MAX);
}

TEST(WriteInt, AddsOneSpace) {
  EXPECT_EQ(appended<int>(CStringValue::WriteInt, 0), "<0 ");
  EXPECT_EQ(appended<int>(CStringValue::WriteInt, INT_MIN), "<-2147483648 ");
  EXPECT_EQ(written<int>(CStringValue::WriteInt, -7), "-7 ");
  EXPECT_EQ(written<int>(CStringValue::WriteInt, INT_MAX), "2147483647 ");
}

TEST(ReadDWORD, TakesDigitsAndOneSpace) {
  EXPECT_EQ(readDword("4294967296 "), (Outcome<unsigned long>{true, 11, 4294967296UL}));
  EXPECT_EQ(readDword("18446744073709551615 "), (Outcome<unsigned long>{true, 21, ULONG_MAX}));
  EXPECT_EQ(readDword("18446744073709551617 ").value, 1UL);
}

TEST(ReadDWORD, HasNoSign) {
  EXPECT_EQ(readDword("-1 "), (Outcome<unsigned long>{false, 0, 77}));
  EXPECT_EQ(readDword(""), (Outcome<unsigned long>{false, 0, 77}));
}

TEST(ReadDWORD, KeepsTheDigitsWhenNoSpaceFollows) {
  EXPECT_EQ(readDword("12x"), (Outcome<unsigned long>{false, 2, 12}));
  EXPECT_EQ(readDword("12"), (Outcome<unsigned long>{false, 2, 12}));
}

TEST(WriteDWORD, AddsOneSpace) {
  EXPECT_EQ(appended<unsigned long>(CStringValue::WriteDWORD, 0), "<0 ");
  EXPECT_EQ(appended<unsigned long>(CStringValue::WriteDWORD, ULONG_MAX), "<18446744073709551615 ");
}

TEST(ReadChar, TakesAnyCharacterButTheTerminator) {
  EXPECT_EQ(readChar("ab"), (Outcome<char>{true, 1, 'a'}));
  EXPECT_EQ(readChar(" "), (Outcome<char>{true, 1, ' '}));
  EXPECT_EQ(readChar("\n"), (Outcome<char>{true, 1, '\n'}));
  EXPECT_EQ(readChar(""), (Outcome<char>{false, 0, '?'}));
}

TEST(WriteChar, AddsTheCharacterAlone) {
  EXPECT_EQ(appended<char>(CStringValue::WriteChar, 'a'), "<a");
  EXPECT_EQ(written<char>(CStringValue::WriteChar, 'a'), "a");
}

TEST(ReadString, TakesAsManyCharactersAsItsLengthSays) {
  EXPECT_EQ(readString("3 abcdef"), (Text{true, 5, "abc"}));
  EXPECT_EQ(readString("5 a b\nc"), (Text{true, 7, "a b\nc"}));
  EXPECT_EQ(readString("2  x"), (Text{true, 4, " x"}));
}

TEST(ReadString, TakesNoneForALengthOf0) {
  EXPECT_EQ(readString("0 abc"), (Text{true, 2, ""}));
  EXPECT_EQ(readString("-0 "), (Text{true, 3, ""}));
}

TEST(ReadString, FailsForALengthThatIsNotThereOrNegative) {
  EXPECT_EQ(readString(""), (Text{false, 0, "old"}));
  EXPECT_EQ(readString("3abc"), (Text{false, 1, "old"}));
  EXPECT_EQ(readString("-1 abc"), (Text{false, 3, "old"}));
}

TEST(ReadString, FailsWhenTheTextEndsTooEarly) {
  EXPECT_EQ(readString("4 abc"), (Text{false, 2, "old"}));
  EXPECT_EQ(readString("2147483647 abc"), (Text{false, 11, "old"}));
  EXPECT_EQ(readString("1 "), (Text{false, 2, "old"}));
}

TEST(ReadString, ReadsManyStringsOfALongTextFast) {
  std::string text;
  for (int i = 0; i < 1000000; ++i) text += "2 ab";
  const char* at = text.c_str();
  CString value;
  int count = 0;
  while (!CStringValue::IsEmpty(at)) {
    ASSERT_TRUE(CStringValue::ReadString(at, value));
    ASSERT_STREQ(value, "ab");
    ++count;
  }
  EXPECT_EQ(count, 1000000);
}

TEST(WriteString, PutsTheLengthInFrontAndNothingBehind) {
  EXPECT_EQ(appended(CStringValue::WriteString, "a b\n"), "<4 a b\n");
  EXPECT_EQ(appended(CStringValue::WriteString, ""), "<0 ");
  EXPECT_EQ(written(CStringValue::WriteString, "a b\n"), "4 a b\n");
  EXPECT_EQ(written(CStringValue::WriteString, ""), "0 ");
}

TEST(WriteString, AppendsAStringToItself) {
  CString text("abc");
  CStringValue::WriteString(text, text);
  EXPECT_STREQ(text, "abc3 abc");
}

TEST(ReadWord, TakesTheCharactersUpToASpaceAndStepsOverIt) {
  EXPECT_EQ(readWord("ab cd"), (Text{true, 3, "ab"}));
  EXPECT_EQ(readWord("ab  cd"), (Text{true, 3, "ab"}));
}

TEST(ReadWord, KnowsNoOtherSeparator) { EXPECT_EQ(readWord("a\tb\r\nc d"), (Text{true, 7, "a\tb\r\nc"})); }

TEST(ReadWord, StepsPastTheTerminatorBehindTheLastWord) { EXPECT_EQ(readWord("ab"), (Text{true, 3, "ab"})); }

TEST(ReadWord, FailsAndClearsTheResultAtASpaceOrTheEnd) {
  EXPECT_EQ(readWord(""), (Text{false, 0, ""}));
  EXPECT_EQ(readWord(" ab"), (Text{false, 0, ""}));
}

TEST(WriteWord, WritesTheWordAndASpace) {
  EXPECT_EQ(written(CStringValue::WriteWord, "ab"), "ab ");
  EXPECT_EQ(written(CStringValue::WriteWord, ""), " ");
}

TEST(WriteWord, AppendsFromThe33rdCharacterOn) {
  EXPECT_EQ(appended(CStringValue::WriteWord, "0123456789012345678901234567890123"), "<23");
  EXPECT_EQ(appended(CStringValue::WriteWord, "012345678901234567890123456789012"), "<2");
}

TEST(WriteWord, AppendsNothingOfAShorterWord) {
  EXPECT_EQ(appended(CStringValue::WriteWord, "01234567890123456789012345678901"), "<");  // 32 characters
  EXPECT_EQ(appended(CStringValue::WriteWord, "ab"), "<");
  EXPECT_EQ(appended(CStringValue::WriteWord, ""), "<");
}

TEST(ReadLine, ReadsFromTheTextThatItReplaces) {
  CString value("first\nsecond");
  const char* text = value;
  EXPECT_TRUE(CStringValue::ReadLine(text, value));
  EXPECT_STREQ(value, "first");
}

TEST(ReadLine, TakesTheCharactersUpToALineFeedAndStepsOverIt) {
  EXPECT_EQ(readLine("a b\nc\n"), (Text{true, 4, "a b"}));
  EXPECT_EQ(readLine("\na"), (Text{true, 1, ""}));
}

TEST(ReadLine, KeepsACarriageReturn) { EXPECT_EQ(readLine("a\r\nb"), (Text{true, 3, "a\r"})); }

TEST(ReadLine, StopsAtTheEndOfTheText) { EXPECT_EQ(readLine("abc"), (Text{true, 3, "abc"})); }

TEST(ReadLine, FailsAndClearsTheResultAtTheEndAndForNull) {
  EXPECT_EQ(readLine(""), (Text{false, 0, ""}));
  const char* nothing = nullptr;
  CString value("old");
  EXPECT_FALSE(CStringValue::ReadLine(nothing, value));
  EXPECT_STREQ(value, "");
  EXPECT_EQ(nothing, nullptr);
}

TEST(ReadBOOL, TakesYOrN) {
  EXPECT_EQ(readBool("yn"), (Outcome<int>{true, 1, 1}));
  EXPECT_EQ(readBool("n"), (Outcome<int>{true, 1, 0}));
}

TEST(ReadBOOL, FailsForAnyOtherCharacter) {
  for (const char* text : {"", "Y", "N", "1", " y"})
    EXPECT_EQ(readBool(text), (Outcome<int>{false, 0, kUntouched})) << text;
}

TEST(WriteBOOL, WritesOneLetter) {
  EXPECT_EQ(appended<int>(CStringValue::WriteBOOL, 1), "<y");
  EXPECT_EQ(appended<int>(CStringValue::WriteBOOL, -5), "<y");
  EXPECT_EQ(appended<int>(CStringValue::WriteBOOL, 0), "<n");
}

TEST(ReadDouble, TakesANumberAndOneSpace) {
  EXPECT_EQ(readDouble("1.5 "), (Outcome<double>{true, 4, 1.5}));
  EXPECT_EQ(readDouble("-2e3  4"), (Outcome<double>{true, 5, -2000.0}));
  EXPECT_EQ(readDouble("0x1p-2 "), (Outcome<double>{true, 7, 0.25}));
  EXPECT_EQ(readDouble("-inf "), (Outcome<double>{true, 5, -INFINITY}));
  EXPECT_EQ(readDouble("1e999 "), (Outcome<double>{true, 6, INFINITY}));
}

TEST(ReadDouble, FailsAtTheEndOfTheTextWithTheValueStored) {
  EXPECT_EQ(readDouble("1.5"), (Outcome<double>{false, 3, 1.5}));
  EXPECT_EQ(readDouble("1.5\n"), (Outcome<double>{false, 4, 1.5}));
}

TEST(ReadDouble, SkipsWhatFollowsTheNumberUpToASpace) {
  EXPECT_EQ(readDouble("1.5mm\n2 3"), (Outcome<double>{true, 8, 1.5}));
}

TEST(ReadDouble, StopsAtASpaceInFrontOfTheNumber) {
  EXPECT_EQ(readDouble("  1.5 "), (Outcome<double>{true, 1, 1.5}));
  EXPECT_EQ(readDouble("\n 1.5"), (Outcome<double>{true, 2, 1.5}));
  EXPECT_EQ(readDouble("\n1.5 "), (Outcome<double>{true, 5, 1.5}));
}

TEST(ReadDouble, FailsOnTheSpotWithoutANumber) {
  for (const char* text : {"", " ", "x 1 ", "- 1 ", ". ", "infi ", "0x ", "--1 "})
    EXPECT_EQ(readDouble(text), (Outcome<double>{false, 0, kUntouched})) << text;
}

// The promise is scanf's own acceptance, so scanf is what it is held against.
TEST(ReadDouble, TakesWhatTheLibraryTakesOfEveryShortText) {
  std::vector<std::string> texts = textsOver("+-.01eExXpaf \n,", 5);
  for (const std::string& text : textsOver("infatyNI(1) ", 4)) texts.push_back(text);
  for (const char* text :
       {"infinit ", "infinity ", "-INFINITYx ", "nan(12) ", "NaN() ", "1e+5 ", "0x.8p+1z "}) {
    texts.emplace_back(text);
  }
  for (const std::string& text : texts) {
    double expected = kUntouched;
    const bool found = std::sscanf(text.c_str(), "%lf", &expected) == 1;
    const Outcome<double> outcome = readDouble(text.c_str());
    ASSERT_EQ(std::bit_cast<std::uint64_t>(outcome.value), std::bit_cast<std::uint64_t>(expected)) << text;
    ASSERT_EQ(outcome.read, found && text.find(' ') != std::string::npos) << text;
  }
}

TEST(ReadDouble, ReadsManyNumbersOfALongTextFast) {
  std::string text;
  for (int i = 0; i < 300000; ++i) text += "0.25 ";
  const char* at = text.c_str();
  double value = 0;
  int count = 0;
  while (CStringValue::ReadDouble(at, value)) {
    ASSERT_EQ(value, 0.25);
    ++count;
  }
  EXPECT_EQ(count, 300000);
}

TEST(WriteDouble, WritesSixDecimalsAndASpace) {
  EXPECT_EQ(appended<double>(CStringValue::WriteDouble, 1.5), "<1.500000 ");
  EXPECT_EQ(appended<double>(CStringValue::WriteDouble, -1e-9), "<-0.000000 ");
  EXPECT_EQ(appended<double>(CStringValue::WriteDouble, DBL_MAX).size(), 1U + 309U + 7U + 1U);
}

TEST(SavedLength, IsTheLengthOfWhatIsWritten) {
  for (const int value : {0, 9, 10, -1, INT_MAX, INT_MIN}) {
    const std::string text = written<int>(CStringValue::WriteInt, value);
    EXPECT_EQ(CStringValue::SavedLength(value), static_cast<long>(text.size())) << value;
  }
  EXPECT_EQ(CStringValue::SavedLength(INT_MIN), 12);
  EXPECT_EQ(CStringValue::SavedLength('a'), 1);
  EXPECT_EQ(CStringValue::SavedLength(CString("")), 2);
  EXPECT_EQ(CStringValue::SavedLength(CString("123456789")), 11);
  EXPECT_EQ(CStringValue::SavedLength(CString("1234567890")), 13);
  EXPECT_EQ(CStringValue::SavedLengthOfWord(CString("abc")), 4);
  EXPECT_EQ(CStringValue::SavedLengthOfWord(CString("")), 1);
}

TEST(StringValue, IsEmptyAtTheEndOfTheText) {
  EXPECT_TRUE(CStringValue::IsEmpty(""));
  EXPECT_FALSE(CStringValue::IsEmpty(" "));
}

TEST(StringValue, ReadsBackWhatItWroteInOneText) {
  CString text;
  CStringValue::WriteInt(text, INT_MIN);
  CStringValue::WriteDWORD(text, ULONG_MAX);
  CStringValue::WriteString(text, CString("two words"));
  CStringValue::WriteBOOL(text, 1);
  CStringValue::WriteChar(text, ' ');
  CStringValue::WriteDouble(text, -0.125);
  const char* at = text;
  int number = 0;
  unsigned long dword = 0;
  CString string;
  int flag = 0;
  char character = 0;
  double real = 0;
  ASSERT_TRUE(CStringValue::ReadInt(at, number));
  ASSERT_TRUE(CStringValue::ReadDWORD(at, dword));
  ASSERT_TRUE(CStringValue::ReadString(at, string));
  ASSERT_TRUE(CStringValue::ReadBOOL(at, flag));
  ASSERT_TRUE(CStringValue::ReadChar(at, character));
  ASSERT_TRUE(CStringValue::ReadDouble(at, real));
  EXPECT_TRUE(CStringValue::IsEmpty(at));
  EXPECT_EQ(number, INT_MIN);
  EXPECT_EQ(dword, ULONG_MAX);
  EXPECT_STREQ(string, "two words");
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(character, ' ');
  EXPECT_EQ(real, -0.125);
}
