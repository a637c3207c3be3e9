#include "draw/pen_brush.h"

#include <gtest/gtest.h>

namespace {

std::string nameOf(unsigned int colour) {
  char name[kColorNameBytes];
  SetColor_(colour, name);
  return name;
}

TEST(ColorNames, TurnTheBytesRound) {
  EXPECT_EQ(nameOf(0x0000FF), "#ff0000");
  EXPECT_EQ(nameOf(0x00FF00), "#00ff00");
  EXPECT_EQ(nameOf(0xFF0000), "#0000ff");
  EXPECT_EQ(nameOf(0x123456), "#563412");
}

TEST(ColorNames, HaveSixLowerCaseDigits) {
  EXPECT_EQ(nameOf(0), "#000000");
  EXPECT_EQ(nameOf(0x0A0B0C), "#0c0b0a");
  EXPECT_EQ(nameOf(0xABCDEF), "#efcdab");
}

TEST(ColorNames, TakeTheSixLeadingDigitsOfALongerNumber) {
  // "%6.6x" prints all eight digits of such a number, of which the first six are taken in pairs.
  EXPECT_EQ(nameOf(0x12345678), "#563412");
  EXPECT_EQ(nameOf(0x1234567), "#563412");
  EXPECT_EQ(nameOf(0xFFFFFFFF), "#ffffff");
}

TEST(Pens, KeepTheColorAlone) {
  EXPECT_STREQ(CPen(0, 1, 0x123456).GetColorName(), "#563412");
  EXPECT_STREQ(CPen(5, 99, 0x123456).GetColorName(), "#563412");
}

TEST(Brushes, KeepTheirColor) { EXPECT_STREQ(CBrush(0x123456).GetColorName(), "#563412"); }

}  // namespace
