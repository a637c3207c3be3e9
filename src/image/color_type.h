// The pixel formats, by the number that options and images name them with.
#pragma once

/// Any int may arrive here; what a value outside the three means is said where one is taken.
enum COLOR_TYPE : int {
  COLOR_TYPE_C08 = 0,  ///< colour, CPixelC08: the bytes red, green, blue
  COLOR_TYPE_M08 = 1,  ///< grey, CPixelM08: one byte
  COLOR_TYPE_M16 = 2,  ///< grey, CPixelM16: 16 bits in host byte order
};
