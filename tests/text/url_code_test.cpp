#include "text/url_code.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr char kGuard = '\x7E';

std::string encode(const std::string& text) {
  std::vector<char> out(3 * text.size() + 1,
                        kGuard);  // exactly what is asked for, so that ASan sees one more
  EncodeURL(text.c_str(), out.data());
  return out.data();
}

// The decoded bytes up to the last zero that was written, zeros in the text included.
std::string decode(const std::string& text) {
  std::vector<char> out(text.size() + 2, kGuard);
  DecodeURL(text.c_str(), out.data());
  const std::size_t end = std::string_view(out.data(), out.size()).rfind('\0');
  EXPECT_LE(end, text.size()) << "no longer than the input";
  return {out.data(), end};
}

TEST(EncodeURL, CopiesLettersDigitsAndDots) {
  EXPECT_EQ(encode("AZaz09."), "AZaz09.");
  EXPECT_EQ(encode(""), "");
}

TEST(EncodeURL, WritesASpaceAsPlus) { EXPECT_EQ(encode("a b/."), "a+b%2f."); }

TEST(EncodeURL, WritesEveryOtherByteAsTwoDigits) {
  EXPECT_EQ(encode("+%-_~"), "%2b%25%2d%5f%7e");
  EXPECT_EQ(encode("\r\n\t\x01"), "%0d%0a%09%01");
  EXPECT_EQ(encode("\x80\xE4\xFF"), "%80%e4%ff");
  EXPECT_EQ(encode("@[`{/:"), "%40%5b%60%7b%2f%3a") << "the neighbours of letters and digits";
}

TEST(DecodeURL, UndoesTheEncodingOfEveryByteButLineEnds) {
  std::string text;
  for (int c = 1; c < 256; ++c)
    if (c != '\r' && c != '\n') text += static_cast<char>(c);
  EXPECT_EQ(decode(encode(text)), text);
}

TEST(DecodeURL, MakesSpacesOfPluses) { EXPECT_EQ(decode("a++b"), "a  b"); }

TEST(DecodeURL, TakesDigitsInEitherCase) { EXPECT_EQ(decode("%4a%4A%fF"), "JJ\xFF"); }

TEST(DecodeURL, WritesAnEncodedLineEndAsAPair) {
  EXPECT_EQ(decode("a%0ab"), "a\r\nb");
  EXPECT_EQ(decode("a%0Db"), "a\r\nb");
  EXPECT_EQ(decode("%0d%0a"), "\r\n");
  EXPECT_EQ(decode("%0a%0d"), "\r\n");
  EXPECT_EQ(decode("%0a%0a"), "\r\n\r\n");
  EXPECT_EQ(decode("%0d%0d"), "\r\n\r\n");
}

TEST(DecodeURL, StartsAnewBehindACompletedPair) {
  EXPECT_EQ(decode("%0d%0a%0a"), "\r\n\r\n");
  EXPECT_EQ(decode("%0d%0a%0d"), "\r\n\r\n");
  EXPECT_EQ(decode("%0d%0a%0d%0a"), "\r\n\r\n");
  EXPECT_EQ(decode("%0d%0d%0a"), "\r\n\r\n");
  EXPECT_EQ(decode("%0a%0a%0d%0d"), "\r\n\r\n\r\n");
}

TEST(DecodeURL, JoinsAPairOnlyWhenNothingStandsBetween) {
  EXPECT_EQ(decode("%0da%0a"), "\r\na\r\n");
  EXPECT_EQ(decode("%0d+%0a"), "\r\n \r\n");
  EXPECT_EQ(decode("%0d%41%0a"), "\r\nA\r\n");
  EXPECT_EQ(decode("%0d%%0a"), "\r\n%%0a") << "no escape at all behind the first one";
  EXPECT_EQ(decode("%0d%x%0a"), "\r\n%x\r\n");
}

TEST(DecodeURL, CopiesLineEndsThatAreNotEncoded) {
  EXPECT_EQ(decode("a\rb\nc\r\nd"), "a\rb\nc\r\nd");
  EXPECT_EQ(decode("\r%0a"), "\r\r\n") << "the pair is joined only from encoded halves";
  EXPECT_EQ(decode("%0d\n%0a"), "\r\n\n\r\n");
}

TEST(DecodeURL, LeavesAPercentSignWithoutTwoDigits) {
  EXPECT_EQ(decode("%zz"), "%zz");
  EXPECT_EQ(decode("%4z"), "%4z");
  EXPECT_EQ(decode("%+%4+"), "%+%4+") << "the characters looked at are copied as they are";
  EXPECT_EQ(decode("%%41"), "%%41");
  EXPECT_EQ(decode("%4%41"), "%4%41");
  EXPECT_EQ(decode("%z%41"), "%zA");
  EXPECT_EQ(decode("a+b%41%0d%0a%zz"), "a bA\r\n%zz");
}

TEST(DecodeURL, EndsWithTheTextInTheMiddleOfAnEscape) {
  EXPECT_EQ(decode("a%"), "a%");
  EXPECT_EQ(decode("a%4"), "a%4");
  EXPECT_EQ(decode(""), "");
  // Bytes behind the end that would complete the escape must not be looked at.
  const char behind[] =
      "%4\0"
      "1";
  char out[sizeof behind];
  DecodeURL(behind, out);
  EXPECT_STREQ(out, "%4");
}

TEST(DecodeURL, GoesOnBehindAnEncodedZero) { EXPECT_EQ(decode("a%00b"), (std::string{'a', '\0', 'b'})); }

TEST(DecodeURL, MayWorkInPlace) {
  const std::string_view alphabet = "%0da+";
  // Every text of up to seven of these characters: each escape, broken or whole, behind each other one.
  for (std::size_t length = 0, count = 1; length <= 7; ++length, count *= alphabet.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      std::string text;
      for (std::size_t i = 0, left = number; i < length; ++i, left /= alphabet.size())
        text += alphabet[left % alphabet.size()];
      const std::string apart = decode(text);
      std::string inPlace = text;
      DecodeURL(inPlace.c_str(), inPlace.data());
      ASSERT_EQ(std::string_view(inPlace).substr(0, apart.size()), apart) << text;
      ASSERT_EQ(inPlace.c_str()[apart.size()], '\0') << text;
    }
  }
}

}  // namespace
