#include "draw/drawing_globals.h"

#include <gtest/gtest.h>

TEST(DrawingGlobals, NameTheFontAndHaveNoCellYet) {
  EXPECT_STREQ(FONT_NAME, "Courier");
  EXPECT_EQ(FONT_WIDTH, 0);
  EXPECT_EQ(FONT_HEIGHT, 0);
}

TEST(DrawingGlobals, AreSilentUntilTheDriverAsksForATrace) { EXPECT_EQ(iVerbose, 0); }
