#include "driver/scan.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kUntouched = -77;

int intOf(const char* text) {
  int value = kUntouched;
  return ei4::scanInt(text, value) ? value : kUntouched;
}

// All texts of up to `longest` characters over an alphabet of signs, digits, blanks and
// letters that numbers hold.
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

TEST(ScanInt, ReadsTheNumberInFront) {
  EXPECT_EQ(intOf("400"), 400);
  EXPECT_EQ(intOf(" \t\n\v\f\r-40x"), -40);
  EXPECT_EQ(intOf("+7.9"), 7);
  EXPECT_EQ(intOf("0x10"), 0);
  EXPECT_EQ(intOf("2147483647"), INT_MAX);
  EXPECT_EQ(intOf("-2147483648"), INT_MIN);
}

TEST(ScanInt, LeavesTheValueAloneWithoutOne) {
  for (const char* text : {"", "x", "-", "+ 1", "--1", " "}) EXPECT_EQ(intOf(text), kUntouched) << text;
  EXPECT_EQ(intOf(nullptr), kUntouched);
}

TEST(ScanInt, KeepsTheLowWordOfWhatAnIntCannotHold) {
  EXPECT_EQ(intOf("4294967297"), 1);
  EXPECT_EQ(intOf("2147483648"), INT_MIN);
  EXPECT_EQ(intOf("99999999999999999999"), -1);  // LONG_MAX
  EXPECT_EQ(intOf("-99999999999999999999"), 0);  // LONG_MIN
}

TEST(ScanInt, DoesWhatTheLibraryDoesOnEveryShortText) {
  for (const std::string& text : textsOver("+-09 x.\t", 5)) {
    int expected = kUntouched;
    std::sscanf(text.c_str(), "%d", &expected);
    ASSERT_EQ(intOf(text.c_str()), expected) << '"' << text << '"';
  }
}

TEST(ScanFloat, ReadsDecimalHexadecimalAndNames) {
  float value = 0;
  ASSERT_TRUE(ei4::scanFloat(" -1024.5mm", value));
  EXPECT_EQ(value, -1024.5F);
  ASSERT_TRUE(ei4::scanFloat("0x1p3", value));
  EXPECT_EQ(value, 8.0F);
  ASSERT_TRUE(ei4::scanFloat("-inf", value));
  EXPECT_EQ(value, -INFINITY);
  ASSERT_TRUE(ei4::scanFloat("nan", value));
  EXPECT_TRUE(std::isnan(value));
}

TEST(ScanFloat, RoundsToSinglePrecision) {
  float value = 0;
  ASSERT_TRUE(ei4::scanFloat("0.1", value));
  EXPECT_EQ(value, 0.1F);
  ASSERT_TRUE(ei4::scanFloat("16777217", value));
  EXPECT_EQ(value, 16777216.0F);
  ASSERT_TRUE(ei4::scanFloat("1e39", value));
  EXPECT_EQ(value, INFINITY);
}

TEST(ScanFloat, LeavesTheValueAloneWithoutANumber) {
  float value = kUntouched;
  for (const char* text : {"", "x", ".", "-.", "infi", "0x"})
    EXPECT_FALSE(ei4::scanFloat(text, value)) << text;
  EXPECT_FALSE(ei4::scanFloat(nullptr, value));
  EXPECT_EQ(value, kUntouched);
}

TEST(ScanGeometry, TakesTwoNumbersAroundAnX) {
  CSize size(0, 0);
  EXPECT_TRUE(ei4::scanGeometry("512x256", size));
  EXPECT_EQ(size, CSize(512, 256));
  EXPECT_TRUE(ei4::scanGeometry(" -1x 20!", size));
  EXPECT_EQ(size, CSize(-1, 20));
}

TEST(ScanGeometry, KeepsBothNumbersAroundAnotherCharacter) {
  CSize size(0, 0);
  EXPECT_FALSE(ei4::scanGeometry("512X256", size));
  EXPECT_EQ(size, CSize(512, 256));
}

TEST(ScanGeometry, KeepsTheWidthOfABrokenOne) {
  CSize size(1, 2);
  EXPECT_FALSE(ei4::scanGeometry("640", size));
  EXPECT_EQ(size, CSize(640, 2));
  EXPECT_FALSE(ei4::scanGeometry("512 x 256", size));
  EXPECT_EQ(size, CSize(512, 2));
  EXPECT_FALSE(ei4::scanGeometry("x7", size));
  EXPECT_FALSE(ei4::scanGeometry(nullptr, size));
  EXPECT_EQ(size, CSize(512, 2));
}

TEST(ScanGeometry, ClampsWhatALongCannotHold) {
  CSize size(0, 0);
  EXPECT_TRUE(ei4::scanGeometry("99999999999999999999x-99999999999999999999", size));
  EXPECT_EQ(size.cx, LONG_MAX);
  EXPECT_EQ(size.cy, LONG_MIN);
}

TEST(ScanGeometry, DoesWhatTheLibraryDoesOnEveryShortText) {
  for (const std::string& text : textsOver("-12xX ", 6)) {
    long cx = kUntouched;
    long cy = kUntouched;
    char separator = '?';
    const int converted = std::sscanf(text.c_str(), "%ld%c%ld", &cx, &separator, &cy);
    CSize size(kUntouched, kUntouched);
    ASSERT_EQ(ei4::scanGeometry(text.c_str(), size), converted == 3 && separator == 'x')
        << '"' << text << '"';
    ASSERT_EQ(size.cx, cx) << '"' << text << '"';
    ASSERT_EQ(size.cy, cy) << '"' << text << '"';
  }
}
