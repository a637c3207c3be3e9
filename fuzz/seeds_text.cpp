// Texts in every coding, and command lines.
#include "seeds.h"

namespace ei4::fuzz {

namespace {

Bytes codes(std::string_view text) { return Seed().u8(0).text(text); }
Bytes values(std::int64_t number, std::string_view text) { return Seed().u8(1).i64(number).text(text); }
Bytes walks(std::string_view text) { return Seed().u8(2).text(text); }

Bytes geometry(std::initializer_list<std::int64_t> numbers, int orientation = 0) {
  Seed seed;
  seed.u8(3).u8(0);
  for (const std::int64_t number : numbers) seed.i32(number);
  return seed.i32(orientation).f64(1.5).f64(0.25);
}

Bytes wideGeometry(std::initializer_list<std::int64_t> numbers) {
  Seed seed;
  seed.u8(3).u8(1);
  for (const std::int64_t number : numbers) seed.i64(number);
  return seed.i32(5).f64(1e300).f64(-0.0);
}

Bytes words(std::initializer_list<std::string_view> all) {
  Seed seed;
  for (const std::string_view word : all) seed.text(word).u8(0);
  return seed;
}

}  // namespace

Seeds textSeeds() {
  constexpr std::int64_t kMost = 0x7FFFFFFFFFFFFFFF;
  Seeds seeds;
  seeds["url_words"] = codes("a+b%41%0d%0a%zz");
  seeds["url_line_ends"] = codes("%0a%0d%0d%0a%0d%0d%0a\r\n%0A%0D");
  seeds["url_line_ends_of_a_kind"] = codes("%0a%0a%0ax%0d%0dx%0d%0a%0a");
  seeds["url_broken_codes"] = codes("%%41%4%+%4+%4");
  seeds["url_zero_byte"] = codes("a%00b%0");
  seeds["url_bytes_above_127"] = codes("\xc3\xa4%c3%a4\xff");
  seeds["binary_code"] = codes("AGrWXJs@@@B1");
  seeds["binary_code_of_one_character"] = codes("A");
  seeds["binary_code_odd"] = codes("AAAABBBBCC");
  seeds["hex"] = codes("ff 10 0xDEADBEEF0123 gG");
  seeds["ints"] = values(-2147483648, "12 -7 -0 99999999999 5");
  seeds["int_without_its_space"] = values(0, "12x -x");
  seeds["counted_string"] = values(kMost, "5 a b c 3 xyz 0 -1 ");
  seeds["counted_string_too_long"] = values(7, "2147483647 abc");
  seeds["doubles"] = values(-1, "1.5 -2e3 inf nan 0x1p3 1e999 .5 5. +1 1.5");
  seeds["double_behind_white_space"] = values(1, "  \t\n 1.5 x");
  seeds["double_that_begins_well"] = values(1, "infi 0x 1e+ -.e ");
  seeds["flags_and_lines"] = values(1, "yn y\nline\r\n\nz");
  seeds["words_and_lines"] = walks("abc \n def\tg\r\n\r\n h\x0b i\n");
  seeds["comments"] = walks("# one\n  # two: value of it \n\nthree # four\n#two:x\n");
  seeds["comment_field"] = walks("name: x\n# name:  the value \nnext\n#name: again");
  seeds["white_space_only"] = walks(" \t\r\n ");
  seeds["line_across"] = geometry({10, 10, 20, 20, 0, 0, 40, 31});
  seeds["line_past_a_corner"] = geometry({10, 10, 20, 20, 0, 15, 15, 30}, 3);
  seeds["line_over_the_whole_range"] =
      geometry({10, 10, 20, 20, -2147483648, -2147483648, 2147483647, 2147483647}, 7);
  seeds["rectangle_the_wrong_way_round"] = geometry({20, 20, 10, 10, 9, 25, 25, 9}, 1);
  seeds["rectangle_without_pixels"] = geometry({10, 10, 10, 20, 0, 15, 20, 15}, 2);
  seeds["oval_beside"] = geometry({10, 10, 20, 20, 25, 25, 8, 8}, 4);
  seeds["numbers_of_64_bits"] = wideGeometry({-kMost, kMost, 5, -5, kMost, -kMost - 1, 0, kMost});
  return seeds;
}

Seeds optionsSeeds() {
  Seeds seeds;
  seeds["conversion"] = words({"-in", "a.ei4", "-out", "b.jpg", "-geom", "512x256", "-jpgquality", "90"});
  seeds["raw"] =
      words({"-in", "a.raw", "-out", "b.raw", "-size", "64x48", "-incolor", "M16", "-outcolor", "M08"});
  seeds["window"] = words(
      {"-window", "400", "-level", "40", "-slope", "1.5", "-intercept", "-1024", "-invert", "-in", "a.raw"});
  seeds["window_of_three"] = words({"-window", "400", "-level", "40", "-slope", "1"});
  seeds["blob"] = words({"-blob", "-in", "d/a.ei4", "-out", "a.raw"});
  seeds["report"] = words({"-ima", "r.txt", "-in", "a.ei4", "-out", "b.png"});
  seeds["help_swallows"] = words({"-help", "-in", "a", "-h", "-out"});
  seeds["unknown_swallows"] = words({"-doAll", "-in", "-x", "-help", "-in", "b"});
  seeds["last_words_without_a_value"] = words({"-in", "a", "-window"});
  seeds["geometry_without_its_value"] = words({"-geom"});
  seeds["geometries"] =
      words({"-geom", "512X256", "-size", "512 x 256", "-geom", "-1x0", "-size", "5x", "-geom", " 7x +8"});
  seeds["numbers_at_the_limits"] = words({"-window", "2147483648", "-level", "-9223372036854775809", "-size",
                                          "9223372036854775808x-9223372036854775809"});
  seeds["reals"] = words({"-slope", "inf", "-intercept", "nan", "-slope", "infi", "-intercept", "0x1p-3",
                          "-slope", "1e999", "-slope", "0x", "-intercept", "1e-50", "-intercept", "nan(7)"});
  seeds["quality_withdrawn"] = words({"-jpgquality", "90", "-jpgquality", "x"});
  seeds["colours"] = words({"-incolor", "M08", "-outcolor", "RGB", "-incolor", "m16", "-outcolor"});
  seeds["extract"] = words({"extract", "-f", "-C", "out", "full.erblb", "--", "-a", "b"});
  seeds["build"] = words({"build", "full.erblb", "x#n=a=b", "c"});
  seeds["list"] = words({"list", "--all", "full.erblb", "--directory=x"});
  seeds["make"] = words({"--bits", "12", "--levels=3", "--window=400", "--level", "40", "a.pgm", "b.ei4"});
  seeds["make_from_raw"] =
      words({"--size", "64x48", "--format=M16", "--lowest-bit=2", "--magic", "GW40", "a", "b"});
  seeds["make_of_odd_numbers"] =
      words({"--size=99999999999x1", "--slope=nan", "--preamble", "24", "--", "-a", "b"});
  seeds["empty_words"] = words({"", "-in", "", "", "-blob"});
  return seeds;
}

}  // namespace ei4::fuzz
