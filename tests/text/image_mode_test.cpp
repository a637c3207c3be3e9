#include "text/image_mode.h"

#include <gtest/gtest.h>

TEST(ImageMode2Int, GivesTheCodeOfEachMode) {
  EXPECT_EQ(ImageMode2Int(IMAGE_FIT), 1);
  EXPECT_EQ(ImageMode2Int(IMAGE_ZOOM), 0);
  EXPECT_EQ(ImageMode2Int(IMAGE_FIT_ACTUAL), 3);
  EXPECT_EQ(ImageMode2Int(IMAGE_ZOOM_ACTUAL), 2);
}

TEST(ImageMode2Int, WritesUnknownModesAsThree) {
  EXPECT_EQ(ImageMode2Int(static_cast<IMAGE_MODE>(4)), 3);
  EXPECT_EQ(ImageMode2Int(static_cast<IMAGE_MODE>(-1)), 3);
}

TEST(Int2ImageMode, GivesTheModeOfEachCode) {
  EXPECT_EQ(Int2ImageMode(0), IMAGE_ZOOM);
  EXPECT_EQ(Int2ImageMode(1), IMAGE_FIT);
  EXPECT_EQ(Int2ImageMode(2), IMAGE_ZOOM_ACTUAL);
  EXPECT_EQ(Int2ImageMode(3), IMAGE_FIT_ACTUAL);
}

TEST(Int2ImageMode, ReadsUnknownCodesAsFit) {
  EXPECT_EQ(Int2ImageMode(4), IMAGE_FIT);
  EXPECT_EQ(Int2ImageMode(-1), IMAGE_FIT);
}
