#include "annotation/report_fields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using testing::StrEq;

TEST(ReportFields, AreWordsBetweenWhiteSpace) {
  std::string text = "12\t-7 \r\n 1.5e1\nff8000 a+b%41 c+d";
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeInt(), 12);
  EXPECT_EQ(fields.TakeInt(), -7);
  EXPECT_EQ(fields.TakeReal(), 15.0);
  EXPECT_EQ(fields.TakeColor(), 0xFF8000u);
  EXPECT_THAT(fields.TakeText(), StrEq("a bA"));
  EXPECT_THAT(fields.TakeWord(), StrEq("c+d"));
  EXPECT_FALSE(fields.Missing());
}

TEST(ReportFields, TakePointsXFirst) {
  std::string text = "3 4";
  EXPECT_EQ(ReportFields(text.data()).TakePoint(), CPoint(3, 4));
}

TEST(ReportFields, ReadWhatIsNoNumberAsZero) {
  std::string text = "abc x1 12abc 3.9 |";
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeInt(), 0);
  EXPECT_EQ(fields.TakeReal(), 0.0);
  EXPECT_EQ(fields.TakeInt(), 12);
  EXPECT_EQ(fields.TakeInt(), 3);
  EXPECT_EQ(fields.TakeInt(), 0);
  EXPECT_FALSE(fields.Missing());
}

TEST(ReportFields, ReadIntegersInDecimalOnly) {
  std::string text = "0x10 010 +5";
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeInt(), 0);
  EXPECT_EQ(fields.TakeInt(), 10);
  EXPECT_EQ(fields.TakeInt(), 5);
}

TEST(ReportFields, StayWithinTheWord) {
  std::string text = "\f 5 - 6";  // a form feed is a word of its own, though a number may begin behind it
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeInt(), 0);
  EXPECT_EQ(fields.TakeInt(), 5);
  EXPECT_EQ(fields.TakeInt(), 0);
  EXPECT_EQ(fields.TakeInt(), 6);
}

TEST(ReportFields, KeepTheLowWordOfWideIntegers) {
  // Beyond 64 bits the conversion ends at their limits: all ones, and only the highest bit.
  std::string text = "4294967301 2147483648 99999999999999999999 -99999999999999999999";
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeInt(), 5);
  EXPECT_EQ(fields.TakeInt(), -2147483647 - 1);
  EXPECT_EQ(fields.TakeInt(), -1);
  EXPECT_EQ(fields.TakeInt(), 0);
}

TEST(ReportFields, TakeAllRealsOfTheLanguage) {
  std::string text = "0x10 inf nan 1e999";
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeReal(), 16.0);
  EXPECT_TRUE(std::isinf(fields.TakeReal()));
  EXPECT_TRUE(std::isnan(fields.TakeReal()));
  EXPECT_TRUE(std::isinf(fields.TakeReal()));
}

TEST(ReportFields, AreMissingOnceTheTextEnds) {
  std::string text = "1 \n";
  ReportFields fields(text.data());
  EXPECT_EQ(fields.TakeInt(), 1);
  EXPECT_FALSE(fields.Missing());
  EXPECT_EQ(fields.TakeInt(), 0);
  EXPECT_TRUE(fields.Missing());
  EXPECT_THAT(fields.TakeText(), StrEq(""));
  EXPECT_EQ(fields.TakePoint(), CPoint(0, 0));
  EXPECT_TRUE(fields.Missing());
  EXPECT_EQ(*fields.End(), '\0');
}

TEST(ReportFields, AreAllMissingForNullAndForNothing) {
  std::string nothing;
  for (char* text : {static_cast<char*>(nullptr), nothing.data()}) {
    ReportFields fields(text);
    EXPECT_FALSE(fields.Missing());
    EXPECT_FALSE(fields.MoreOnLine());
    EXPECT_EQ(fields.Rest(), nullptr);
    EXPECT_EQ(fields.TakeReal(), 0.0);
    EXPECT_TRUE(fields.Missing());
    EXPECT_EQ(fields.End(), text);
  }
}

TEST(ReportFields, KnowWhetherTheLineGoesOn) {
  std::string text = "1 \t 2 \n3\r4";
  ReportFields fields(text.data());
  fields.TakeInt();
  EXPECT_TRUE(fields.MoreOnLine());
  fields.TakeInt();
  EXPECT_FALSE(fields.MoreOnLine());
  EXPECT_EQ(fields.TakeInt(), 3);
  EXPECT_FALSE(fields.MoreOnLine());
  EXPECT_EQ(fields.TakeInt(), 4);
  EXPECT_FALSE(fields.MoreOnLine());
}

TEST(ReportFields, TellWhereTheRestBegins) {
  std::string text = "1\n \t2 3";
  ReportFields fields(text.data());
  fields.TakeInt();
  EXPECT_STREQ(fields.Rest(), "2 3");
  EXPECT_EQ(fields.TakeInt(), 2);
  EXPECT_STREQ(fields.End(), " 3");
}

}  // namespace
