#include "driver/paths.h"

#include <gtest/gtest.h>

TEST(Paths, AreToldByTheTextFromTheLastDotOn) {
  EXPECT_EQ(IsJpg("a.jpg"), 1);
  EXPECT_EQ(IsJpg("/x.raw/a.b.jpg"), 1);
  EXPECT_EQ(IsJpg(".jpg"), 1);
  EXPECT_EQ(IsEI4("scan.ei4"), 1);
  EXPECT_EQ(IsRAW("scan.raw"), 1);
}

TEST(Paths, WithOtherOrLongerExtensionsAreNot) {
  for (const char* path :
       {"a.jpeg", "a.jpg2", "a.jpg ", "a.jpg.", "ajpg", "a.jp", "", "a.raw", "a.ei4", "x.jpg/a"}) {
    EXPECT_EQ(IsJpg(path), 0) << path;
  }
  EXPECT_EQ(IsEI4("a.ei4/b"), 0);
  EXPECT_EQ(IsRAW("a.raw1"), 0);
}

TEST(Paths, AreComparedWithTheCaseOfTheirLetters) {
  EXPECT_EQ(IsEI4("image.EI4"), 0);
  EXPECT_EQ(IsJpg("image.Jpg"), 0);
  EXPECT_EQ(IsRAW("image.RAW"), 0);
}

TEST(Paths, ThatAreNullAreNone) {
  EXPECT_EQ(IsJpg(nullptr), 0);
  EXPECT_EQ(IsEI4(nullptr), 0);
  EXPECT_EQ(IsRAW(nullptr), 0);
}
