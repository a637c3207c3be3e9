// Report texts, line by line of the grammar, and what hostile ones would try.
#include "seeds.h"

namespace ei4::fuzz {

namespace {

constexpr int kMeasure = 1;
constexpr int kDraw = 2;
constexpr int kColour = 4;

Bytes input(const std::string& text, int flags = kMeasure | kDraw, int boxX = 0, int boxY = 0) {
  return Seed().u16(80).u16(60).u8(flags).u8(boxX).u8(boxY).text(text);
}

const std::string kView =
    "sized 80 60 0 0\nrescale 1.0 -1024.0 1\npixel 0.5 0.25\nclip 1.0 0 0 80 60\nlight 400 40 0 0\n";

/// A report with one annotation line.
Bytes one(const std::string& line, int flags = kMeasure | kDraw) { return input(kView + line + "\n", flags); }

std::string repeated(const std::string& what, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += what;
  return all;
}

const std::string kCommon = "1 ff 9 9 1 1 8 20 40 30 | ";

// What passes each limit of a report, and what comes near.
void addLimits(Seeds& seeds) {
  const std::string text = "text " + kCommon + "0 ";
  const std::string outline = "free " + kCommon;
  seeds["too_many_annotations"] = one(repeated(text + "a\n", 1001));
  seeds["annotation_lines_without_fields"] = one(repeated("text \n", 1001));
  seeds["label_of_4000_bytes"] = one(text + repeated("x", 4000));
  seeds["label_of_4001_bytes"] = one(text + repeated("x", 4001));
  seeds["label_of_coded_line_ends"] = one(text + repeated("%0a", 2001));
  seeds["labels_too_long_in_all"] = one(repeated(text + repeated("x", 4000) + "\n", 17));
  seeds["outlines_with_too_many_vertices"] = one(repeated(outline + "17000\n", 3) + repeated("1 2 ", 17500));
  seeds["outlines_that_read_each_other"] = one(repeated(outline + "2000000000\n", 1000));
  seeds["outline_of_2001_vertices"] = one(outline + "2001" + repeated(" 9 9 70 50", 1001) + " x");
  seeds["outline_with_many_runs_at_the_left_edge"] = one(outline + "60" + repeated(" 0 0 79 59", 30) + " x");
  seeds["huge_ovals_across_the_picture"] = one(repeated("oval 1 ff -16000 9 0 0 9 9 9 9 | 16000 13 x\n", 40));
  seeds["dashes_without_an_end"] =
      one("cobangle_x 1 ff -2147483648 9 0 0 9 9 9 9 0 | 2147483647 9 -2147483648 9 2147483647 9 x");
  seeds["letters_beyond_their_room"] = input(kView + "patient_orientation 0 LAPFHR%00A @/etc/hostname\n");
  seeds["endless_line"] = input(kView + repeated("x", 9000));
  seeds["zero_bytes"] = input(kView + std::string(9, '\0') + "light 1 2 1 1\n");
}

}  // namespace

Seeds reportSeeds() {
  Seeds seeds;
  addLimits(seeds);
  seeds["view_only"] = input(kView);
  seeds["ruler"] = one("ruler 1 00ffff 10 10 1 1 8 20 40 30 | 50 40 12.5+mm");
  seeds["ruler_x"] = one("ruler_x 1 ffff00 10 10 1 1 8 20 40 30 3 | 50 40 12.5+mm");
  seeds["angle"] = one("angle_x 2 ff00ff 40 10 1 1 10 10 40 30 0 | 50 40 20 50 37%c2%b0");
  seeds["oval"] = one("oval_x 3 00ff00 10 10 1 1 10 10 30 20 0 | 50 40 9.7+cm%c2%b2 9.65");
  seeds["houns"] = one("houns_x 4 00ffff 20 10 1 1 10 10 30 20 0 | 50 40 41+HU 41.0");
  seeds["text"] = one("text_x 5 ffffff 10 20 0 1 0 0 10 20 0 | 0 Some+text%0d%0ain+lines");
  seeds["pointer"] = one("pointer 6 c090ff 40 30 1 1 10 10 0 0 | 6 5 Here");
  seeds["free_pointer"] = one("freepointer_x 7 00ff00 40 30 1 1 0 0 0 0 0 | 60 20 There");
  seeds["free"] = one("free_x 8 00a0ff 10 10 1 1 0 0 30 30 0 | 5 10 40 30 50 60 40 70 20 40 5 2+cm%c2%b2");
  seeds["free_that_states_too_many_points"] =
      one("free_x 8 00a0ff 10 10 1 1 0 0 30 30 0 | 2000000000 1 2 3 4");
  seeds["free_without_points"] = one("free 8 00a0ff 10 10 1 1 0 0 30 30 | -1 none");
  seeds["cobb_angle"] = one("cobangle_x 9 00c0ff 10 10 1 1 10 40 30 30 2 | 50 12 12 50 60 44 21+deg");
  seeds["spine_label"] = one("spinelabel_x 10 ffffff 20 20 1 1 10 10 30 20 0 | 0 L4");
  seeds["calibration"] = one("calib_x 11 ffffff 10 10 1 1 8 20 40 30 0 | 50 40 6+F");
  seeds["obstetric"] = input(kView +
                             "obm_gsd_x 1 00ff00 10 10 1 1 8 20 40 30 0 | 50 40 1\nobm_crl_x 2 00ff00 10 10 "
                             "1 1 8 20 40 30 0 | 5 4 2\n"
                             "obm_bpd_x 3 00ff00 10 10 1 1 8 20 40 30 0 | 9 40 3\nobm_hc_x 4 00ff00 10 10 1 "
                             "1 8 20 40 30 0 | 50 9 4\n"
                             "obm_ac_x 5 00ff00 10 10 1 1 8 20 40 30 0 | 50 4 5\nobm_fl_x 6 00ff00 10 10 1 1 "
                             "8 20 40 30 0 | 30 40 6\n");
  for (int orientation = 0; orientation < 8; ++orientation) {
    const std::string number = std::to_string(orientation);
    seeds["orientation_" + number] =
        input("sized 60 80 0 " + number +
              "\nlight 1 2 1 1\nclip 1.5 -5 7 90 70 0.75\npatient_orientation 0 LA HF\n"
              "ruler_x 1 ff 10 10 1 1 5 5 9 9 2 | 40 30 a\n");
  }
  seeds["region_of_interest"] = input(kView + "roi y 10 10 50 40\n");
  seeds["region_of_interest_off_and_over_the_edges"] = input(kView + "roi n -10 -10 500 400\n");
  seeds["letters"] = input(kView + "patient_orientation 0 L%41P FHR\n", kDraw | kColour);
  seeds["fitted"] = input("sized 80 60 1 0\nlight 1 2 0 0\nclip 1 0 0 80 60\n", kDraw, 40, 90);
  seeds["fitted_at_actual_size"] = input("sized 30 20 3 0\nlight 1 2 0 0\nclip 1 0 0 80 60\n", kDraw, 100, 5);
  seeds["no_view"] = input("ruler 1 00ffff 10 10 1 1 8 20 40 30 | 50 40 12.5+mm\n");
  seeds["no_window"] = input("sized 80 60 0 0\nruler 1 00ffff 10 10 1 1 8 20 40 30 | 50 40 12.5+mm\n");
  seeds["broken_lines"] =
      input("sized 1\nlight\nclip 1 2\npixel\nroi z\nroi y 1 2 3\nsized 9 9 0 0\nlight 1 1 1 1\nangle 1\n");
  seeds["comments_and_blank_lines"] = input("# one\n\r\n \t# two\nsized 9 9 0 0 # three\n\n\nlight 1 1 1 1");
  seeds["numbers_at_the_limits_of_int"] = input(
      "sized 2147483647 -2147483648 0 0\nlight -2147483648 2147483647 0 0\nclip 1 -2147483648 2147483647 80 "
      "60\n"
      "ruler_x -2147483648 ffffffff 2147483647 -2147483648 1 1 -2147483648 2147483647 2147483647 1 7 | -1 "
      "2147483647 x\n");
  seeds["numbers_at_the_limits_of_long"] = input(
      kView + "roi y -9223372036854775808 -9223372036854775808 9223372036854775807 9223372036854775807\n");
  seeds["zooms_of_no_number"] = input(
      "sized 80 60 0 0\nlight 1 1 0 0\nclip nan 0 0 80 60 -inf\npixel inf nan\n"
      "oval 1 f 1 1 1 1 2 2 9 9 | 30 30 x\nruler 2 f 1 1 1 1 2 2 9 9 | 70 50 x\n");
  seeds["pixels_of_no_size"] = input(kView + "pixel 0 -1e308\noval 1 f 1 1 1 1 2 2 9 9 | 30 30 x\n");
  seeds["labels_that_drawing_libraries_act_upon"] =
      input(kView +
            "text 1 f 10 9 0 1 0 0 5 5 | 0 @/etc/passwd\ntext 2 f 10 20 0 1 0 0 5 20 | 0 %25%5bfx:1%5d\n"
            "text 3 f 10 30 0 1 0 0 5 30 | 0 msl:x%00y\ntext 4 f 10 40 0 1 0 0 5 40 | 0 "
            "'%22%0apush+graphic-context\n");
  seeds["label_of_odd_bytes"] =
      input(kView + "text 1 f 10 9 0 1 0 0 5 5 | 0 %01%1b%ff%c3%28%e2%82%f0%9f%98%80%d7%90\n");
  seeds["label_of_many_lines"] =
      input(kView + "text 1 f 10 9 0 1 0 0 5 -900 | 0 a%0a%0a%0d%0d%0a%0ab%0dc%0a%0a%0a%0a%0a\n");
  seeds["label_far_to_the_left"] = input(kView + "text 1 f 10 9 0 1 0 0 -60 5 | 0 a+label+of+many+letters\n");
  seeds["colours_beyond_24_bits"] =
      input(kView + "ruler 1 1ffffffff 10 10 0 1 8 20 4 3 | 50 40 x\nruler 2 zz 1 1 0 1 2 2 3 3 | 4 4\n");
  seeds["huge_oval"] = one("oval 1 ff -1000000 -1000000 1 1 0 0 9 9 | 1000000 1000000 x");
  return seeds;
}

}  // namespace ei4::fuzz
