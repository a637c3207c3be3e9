// How a picture is turned or mirrored on its way to the destination.
#pragma once

/// A destination point (x, y) of a displayed picture of W x H (in destination orientation) shows the
/// displayed-source point given here. Odd values exchange width and height.
enum ORIENTATION : int {
  ORIENTATION_AS_STORED = 0,          ///< (x, y)
  ORIENTATION_QUARTER_TURN = 1,       ///< (y, W - x)
  ORIENTATION_HALF_TURN = 2,          ///< (W - x, H - y)
  ORIENTATION_THREE_QUARTERS = 3,     ///< (H - y, x)
  ORIENTATION_MIRROR_LEFT_RIGHT = 4,  ///< (W - x, y)
  ORIENTATION_OTHER_DIAGONAL = 5,     ///< (H - y, W - x)
  ORIENTATION_MIRROR_TOP_BOTTOM = 6,  ///< (x, H - y)
  ORIENTATION_MAIN_DIAGONAL = 7,      ///< (y, x)
};

/// True for the eight values above.
constexpr bool IsOrientation(int value) { return value >= 0 && value <= 7; }

/// True for the orientations that exchange width and height.
constexpr bool ExchangesSides(ORIENTATION orientation) { return (orientation & 1) != 0; }
