// Paintings and window/level tables.
#include <limits>

#include "seeds.h"

namespace ei4::fuzz {

namespace {

struct Painting {
  int from = 1;  // as COLOR_TYPE
  int to = 1;
  int cx = 8, cy = 6;
  int dstX = 8, dstY = 6;
  int offsetX = 0, offsetY = 0;
  int shownX = 8, shownY = 6;
  int clipL = 0, clipT = 0, clipR = 20, clipB = 20;
  int orientation = 0;
  int mode = 1;
  int table = 0;
  int background = 0x102030;
};

Bytes input(const Painting& p) {
  Seed seed;
  seed.u8(p.from).u8(p.to).u8(p.cx).u8(p.cy).u8(p.dstX).u8(p.dstY);
  for (const int number : {p.offsetX, p.offsetY, p.shownX, p.shownY, p.clipL, p.clipT, p.clipR, p.clipB})
    seed.i32(number);
  seed.i32(p.orientation).i32(p.mode).u8(p.table).i32(p.background);
  for (int i = 0; i < 60; ++i) seed.u8(i * i * 7 + i);
  return seed;
}

struct Window {
  double intercept = 0, slope = 1;
  int window = 256, level = 128, invert = 0, inBits = 8, shift = 0, outBits = 8, tableBits = 8;
};

Bytes input(const Window& w) {
  return Seed()
      .f64(w.intercept)
      .f64(w.slope)
      .i32(w.window)
      .i32(w.level)
      .u8(w.invert)
      .u8(w.inBits)
      .u8(w.shift)
      .u8(w.outBits)
      .u8(w.tableBits);
}

}  // namespace

Seeds paintSeeds() {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  Seeds seeds;
  seeds["as_it_is"] = input(Painting{});
  seeds["nearest"] = input(Painting{.shownX = 12, .shownY = 5, .mode = 0});
  seeds["averaged"] = input(Painting{.shownX = 5, .shownY = 4});
  seeds["averaged_in_one_direction"] = input(Painting{.dstX = 16, .shownX = 16, .shownY = 3});
  seeds["interpolated"] = input(Painting{.dstX = 20, .dstY = 20, .shownX = 19, .shownY = 17});
  seeds["interpolated_by_a_whole_zoom"] = input(Painting{.dstX = 16, .dstY = 12, .shownX = 16, .shownY = 12});
  seeds["replicated"] = input(Painting{.cx = 9, .cy = 2, .shownX = 8, .shownY = 14, .mode = 1});
  seeds["colour_averaged"] = input(Painting{.from = 0, .to = 0, .shownX = 5, .shownY = 4});
  seeds["colour_interpolated"] = input(Painting{.from = 0, .to = 0, .dstX = 20, .shownX = 20, .shownY = 6});
  seeds["16_bits_through_a_table"] =
      input(Painting{.from = 2, .to = 1, .shownX = 5, .shownY = 4, .table = 3});
  seeds["16_bits_to_8_without_a_table"] = input(Painting{.from = 2, .to = 1});
  seeds["colour_to_grey_without_a_table"] = input(Painting{.from = 0, .to = 1, .orientation = 1});
  seeds["colour_to_16_bits"] = input(Painting{.from = 0, .to = 2, .table = 1});
  seeds["grey_to_colour"] = input(Painting{.from = 1, .to = 0, .table = 200});
  seeds["grey_to_16_bits"] = input(Painting{.from = 1, .to = 2, .mode = 0, .table = 5});
  for (int orientation = 1; orientation < 8; ++orientation) {
    seeds["orientation_" + std::to_string(orientation)] = input(Painting{.dstX = 15,
                                                                         .dstY = 15,
                                                                         .offsetX = -3,
                                                                         .offsetY = 4,
                                                                         .shownX = 13,
                                                                         .shownY = 11,
                                                                         .clipL = 1,
                                                                         .clipT = 2,
                                                                         .clipR = 12,
                                                                         .clipB = 14,
                                                                         .orientation = orientation});
  }
  // Rows long enough for the painter to do several pixels at once.
  seeds["wide_averaged"] =
      input(Painting{.cx = 150, .cy = 3, .dstX = 70, .dstY = 2, .shownX = 70, .shownY = 2, .clipR = 70});
  seeds["wide_interpolated"] =
      input(Painting{.cx = 50, .cy = 3, .dstX = 120, .dstY = 2, .shownX = 119, .shownY = 7, .clipR = 120});
  seeds["wide_as_it_is"] =
      input(Painting{.cx = 100, .dstX = 100, .dstY = 3, .shownX = 100, .clipR = 100, .table = 3});
  seeds["wide_16_bits_through_a_table"] = input(Painting{.from = 2,
                                                         .cx = 100,
                                                         .dstX = 100,
                                                         .dstY = 3,
                                                         .shownX = 100,
                                                         .clipR = 100,
                                                         .orientation = 4,
                                                         .table = 9});
  seeds["wide_colour_nearest"] = input(
      Painting{.from = 0, .to = 0, .cx = 60, .dstX = 100, .dstY = 3, .shownX = 100, .clipR = 100, .mode = 0});
  seeds["high_turned"] = input(Painting{
      .cx = 90, .cy = 4, .dstX = 3, .dstY = 80, .shownX = 3, .shownY = 80, .clipB = 80, .orientation = 7});
  seeds["strange_orientation"] = input(Painting{.orientation = 8});
  seeds["clip_the_wrong_way_round"] = input(Painting{.clipL = 9, .clipT = 9, .clipR = 1, .clipB = 1});
  seeds["clip_that_only_touches"] = input(Painting{.clipL = 8, .clipR = 12});
  seeds["clip_at_the_limits"] =
      input(Painting{.clipL = kLeast, .clipT = kLeast, .clipR = kMost, .clipB = kMost});
  seeds["far_into_a_huge_display"] =
      input(Painting{.offsetX = -1000000007, .offsetY = -999999937, .shownX = kMost, .shownY = kMost});
  seeds["huge_display_nearest"] = input(Painting{
      .offsetX = -1000000007, .offsetY = -5, .shownX = kMost, .shownY = 40, .orientation = 3, .mode = 0});
  seeds["offset_at_the_limits"] = input(Painting{.offsetX = kLeast, .offsetY = kMost});
  seeds["shown_at_no_size"] = input(Painting{.shownX = 0, .shownY = -1});
  seeds["no_destination"] = input(Painting{.dstX = 0, .dstY = 5});
  seeds["negative_destination"] = input(Painting{.dstX = -2, .dstY = 5});
  seeds["no_picture"] = input(Painting{.cx = 0});
  seeds["destination_of_no_format"] = input(Painting{.to = 3});
  return seeds;
}

Seeds tableSeeds() {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  Seeds seeds;
  seeds["identity"] = input(Window{});
  seeds["rescaled"] =
      input(Window{.intercept = -1024, .window = 400, .level = 40, .inBits = 12, .tableBits = 12});
  seeds["inverted"] = input(Window{.window = 100, .invert = 1});
  seeds["no_width"] = input(Window{.window = 0});
  seeds["negative_width"] = input(Window{.window = -100});
  seeds["negative_slope"] = input(Window{.slope = -0.5});
  seeds["negative_slope_within_the_table"] =
      input(Window{.intercept = 200, .slope = -0.5, .window = 60, .level = 160});
  seeds["slope_of_zero"] = input(Window{.slope = 0});
  seeds["slope_that_divides_by_little"] = input(Window{.slope = 1e-300});
  seeds["product_that_wraps"] =
      input(Window{.window = 65536, .level = 32768, .inBits = 14, .outBits = 16, .tableBits = 14});
  seeds["width_at_the_limit"] = input(Window{.window = kLeast, .level = kMost});
  seeds["level_at_the_limit"] = input(Window{.window = kMost, .level = kLeast});
  seeds["slope_of_no_number"] = input(Window{.slope = kNone});
  seeds["endless_slope"] = input(Window{.slope = kEndless});
  seeds["endless_intercept"] = input(Window{.intercept = -kEndless});
  seeds["intercept_of_no_number"] = input(Window{.intercept = kNone});
  seeds["shifted_up"] = input(Window{.shift = 4});
  seeds["shifted_down"] = input(Window{.shift = -4});
  seeds["shifted_out"] = input(Window{.shift = 127});
  seeds["no_bits"] = input(Window{.inBits = 0, .outBits = 0, .tableBits = 0});
  seeds["bits_out_of_range"] = input(Window{.inBits = 25, .outBits = 17});
  return seeds;
}

}  // namespace ei4::fuzz
