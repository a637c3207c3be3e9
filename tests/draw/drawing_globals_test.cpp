#include "draw/drawing_globals.h"

#include <gtest/gtest.h>

namespace {

// Taken before any drawing context can have measured a font.
const bool hadNoCell = FONT_WIDTH == 0 && FONT_HEIGHT == 0;

TEST(DrawingGlobals, NameTheFontAndHaveNoCellYet) {
  EXPECT_STREQ(FONT_NAME, "Courier");
  EXPECT_TRUE(hadNoCell);
}

TEST(DrawingGlobals, AreSilentUntilTheDriverAsksForATrace) { EXPECT_EQ(iVerbose, 0); }

}  // namespace
