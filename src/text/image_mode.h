// The view modes of a report, and the numbers that stand for them in its text.
#pragma once

/// Bit 0: zoomed, not fitted. Bit 1: at actual size.
enum IMAGE_MODE : int {
  IMAGE_FIT = 0,
  IMAGE_ZOOM = 1,
  IMAGE_FIT_ACTUAL = 2,
  IMAGE_ZOOM_ACTUAL = 3,
};

/// Quirk view-mode-codes-uneven: the two conversions are no exact inverses of each other. Numbers without a
/// meaning read as IMAGE_FIT and modes without one are written as 3, while code 1 too reads as IMAGE_FIT and
/// IMAGE_FIT_ACTUAL too is written as 3.
int ImageMode2Int(IMAGE_MODE mode);
IMAGE_MODE Int2ImageMode(int code);

/// A value beyond the four modes is neither fitted nor at actual size; so it counts as zoomed.
bool IsImageModeFit(IMAGE_MODE mode);
bool IsImageModeZoom(IMAGE_MODE mode);  ///< whatever is not fitted
bool IsImageModeActual(IMAGE_MODE mode);
