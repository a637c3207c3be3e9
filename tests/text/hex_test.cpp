#include "text/hex.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

TEST(ByteToHex, ReadsADigitInEitherCase) {
  for (int value = 0; value < 16; ++value) {
    EXPECT_EQ(ByteToHex(static_cast<unsigned char>("0123456789abcdef"[value])), value);
    EXPECT_EQ(ByteToHex(static_cast<unsigned char>("0123456789ABCDEF"[value])), value);
  }
}

TEST(ByteToHex, AnswersMinusOneForEveryOtherCharacter) {
  int digits = 0;
  for (int c = 0; c < 256; ++c) {
    const bool isDigit = c != 0 && std::string_view("0123456789abcdefABCDEF").find(static_cast<char>(c)) !=
                                       std::string_view::npos;
    digits += isDigit ? 1 : 0;
    EXPECT_EQ(ByteToHex(static_cast<unsigned char>(c)) == -1, !isDigit) << "character " << c;
  }
  EXPECT_EQ(digits, 22);
}

TEST(HexToByte, WritesTheLowFourBitsInLowerCase) {
  std::string digits;
  for (int value = 0; value < 16; ++value) digits += HexToByte(value);
  EXPECT_EQ(digits, "0123456789abcdef");
  EXPECT_EQ(HexToByte(0x12A), 'a');
  EXPECT_EQ(HexToByte(-1), 'f');
  EXPECT_EQ(HexToByte(-16), '0');
}

TEST(StrToHex, ReadsDigitsInEitherCase) {
  EXPECT_EQ(StrToHex("0"), 0);
  EXPECT_EQ(StrToHex("ff"), 255);
  EXPECT_EQ(StrToHex("00C0ffEE"), 0xC0FFEE);
}

TEST(StrToHex, PassesOverWhatIsNoDigit) {
  EXPECT_EQ(StrToHex("ff 10"), 65296);
  EXPECT_EQ(StrToHex("0x1F"), 0x1F);
  EXPECT_EQ(StrToHex("#12-34\n5g\xE4"), 0x12345);
  EXPECT_EQ(StrToHex("-1"), 1);
}

TEST(StrToHex, AnswersZeroWithoutDigits) {
  EXPECT_EQ(StrToHex(""), 0);
  EXPECT_EQ(StrToHex("xyz"), 0);
  EXPECT_EQ(StrToHex(nullptr), 0);
}

TEST(StrToHex, WrapsAt32Bits) {
  EXPECT_EQ(StrToHex("7fffffff"), 2147483647);
  EXPECT_EQ(StrToHex("ffffffff"), -1);
  EXPECT_EQ(StrToHex("80000000"), -2147483647 - 1);
  EXPECT_EQ(StrToHex("123456789"), 0x23456789);
}

}  // namespace
