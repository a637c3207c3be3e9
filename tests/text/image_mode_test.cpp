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

TEST(ImageModeCodes, AreNoInversesForWhatSharesACode) {
  EXPECT_EQ(Int2ImageMode(ImageMode2Int(static_cast<IMAGE_MODE>(7))), IMAGE_FIT_ACTUAL);
  EXPECT_EQ(ImageMode2Int(Int2ImageMode(9)), 1);
  for (const IMAGE_MODE mode : {IMAGE_FIT, IMAGE_ZOOM, IMAGE_FIT_ACTUAL, IMAGE_ZOOM_ACTUAL})
    EXPECT_EQ(Int2ImageMode(ImageMode2Int(mode)), mode);
}

TEST(IsImageMode, TellsFitFromZoom) {
  EXPECT_TRUE(IsImageModeFit(IMAGE_FIT));
  EXPECT_FALSE(IsImageModeFit(IMAGE_ZOOM));
  EXPECT_TRUE(IsImageModeFit(IMAGE_FIT_ACTUAL));
  EXPECT_FALSE(IsImageModeFit(IMAGE_ZOOM_ACTUAL));
  for (int mode = 0; mode < 4; ++mode)
    EXPECT_NE(IsImageModeFit(static_cast<IMAGE_MODE>(mode)), IsImageModeZoom(static_cast<IMAGE_MODE>(mode)));
}

TEST(IsImageMode, TellsActualSize) {
  EXPECT_FALSE(IsImageModeActual(IMAGE_FIT));
  EXPECT_FALSE(IsImageModeActual(IMAGE_ZOOM));
  EXPECT_TRUE(IsImageModeActual(IMAGE_FIT_ACTUAL));
  EXPECT_TRUE(IsImageModeActual(IMAGE_ZOOM_ACTUAL));
}

TEST(IsImageMode, TakesUnknownModesForZoomed) {
  for (const int mode : {4, 6, 8, -1, -2}) {
    EXPECT_FALSE(IsImageModeFit(static_cast<IMAGE_MODE>(mode))) << mode;
    EXPECT_TRUE(IsImageModeZoom(static_cast<IMAGE_MODE>(mode))) << mode;
    EXPECT_FALSE(IsImageModeActual(static_cast<IMAGE_MODE>(mode))) << mode;
  }
}
