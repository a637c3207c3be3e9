#include "scenarios.h"

namespace ei4::test {

namespace {

using Words = std::vector<std::string>;

// The words of ei4convert that all scenarios of one kind have.
Words convert(const char* input, const char* output, const Words& more = {}) {
  Words words = {"-in", input, "-out", output};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

const Words kWindow = {"-window", "400", "-level", "40", "-slope", "1", "-intercept", "-1024"};

Words with(Words words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

Scenario conversion(const char* name, Words words) {
  return {name, Flow::conversion, "ei4convert", std::move(words)};
}
Scenario decoding(const char* name, Words words) {
  return {name, Flow::decoding, "ei4convert", std::move(words)};
}
Scenario report(const char* name, Words words) {
  return {name, Flow::report, "ei4convert", std::move(words)};
}

}  // namespace

const std::vector<Scenario>& scenarios() {
  static const std::vector<Scenario> all = {
      decoding("ei4_to_raw", convert("IN/grey.ei4", "OUT/o.raw")),
      decoding("ei4_of_16_bits_to_raw", convert("IN/ct.ei4", "OUT/o.raw")),
      decoding("ei4_of_16_bits_to_8", convert("IN/ct.ei4", "OUT/o.raw", {"-outcolor", "M08"})),
      decoding("ei4_in_colour_to_raw", convert("IN/colour.ei4", "OUT/o.raw")),
      decoding("ei4_to_jpg", convert("IN/flat.ei4", "OUT/o.jpg", {"-jpgquality", "90"})),
      decoding("ei4_in_colour_to_jpg", convert("IN/colour.ei4", "OUT/o.jpg", {"-jpgquality", "90"})),
      decoding("ei4_thumbnail", convert("IN/ct.ei4", "OUT/o.jpg", {"-jpgquality", "80", "-geom", "100x100"})),
      decoding("ei4_enlarged", convert("IN/grey.ei4", "OUT/o.raw", {"-geom", "200x200"})),
      decoding("blob_entry", convert("IN/study/img.ei4", "OUT/o.raw", {"-blob"})),
      decoding("blob_entry_in_two_parts", convert("IN/split/img.ei4", "OUT/o.raw", {"-blob"})),
      conversion("raw_copy", convert("IN/grey.raw", "OUT/o.raw", {"-size", "64x48", "-incolor", "M08"})),
      conversion("raw_windowed", with(convert("IN/ct.raw", "OUT/o.raw",
                                              {"-size", "512x512", "-incolor", "M16", "-outcolor", "M08"}),
                                      kWindow)),
      conversion("raw_to_jpg", with(convert("IN/ct.raw", "OUT/o.jpg",
                                            {"-size", "512x512", "-incolor", "M16", "-jpgquality", "90"}),
                                    kWindow)),
      conversion(
          "raw_to_jpg_by_the_library",
          convert("IN/flat.raw", "OUT/o.jpg", {"-size", "256x200", "-incolor", "M08", "-jpgquality", "90"})),
      conversion("raw_in_colour_to_jpg_by_the_library",
                 convert("IN/colour.raw", "OUT/o.jpg", {"-size", "96x64", "-jpgquality", "90"})),
      conversion("raw_reduced", convert("IN/flat.raw", "OUT/o.raw",
                                        {"-size", "256x200", "-incolor", "M08", "-geom", "100x100"})),
      conversion("raw_in_colour_enlarged",
                 convert("IN/colour.raw", "OUT/o.raw", {"-size", "96x64", "-geom", "200x200"})),
      report("report_png", convert("IN/flat.ei4", "OUT/o.png", {"-ima", "IN/every_kind.txt"})),
      report("report_jpg", convert("IN/flat.raw", "OUT/o.jpg",
                                   {"-size", "256x200", "-incolor", "M08", "-jpgquality", "90", "-geom",
                                    "180x150", "-ima", "IN/every_kind.txt"})),
      report("report_in_colour", convert("IN/colour.ei4", "OUT/o.png", {"-ima", "IN/report_colour.txt"})),
      decoding("refused_stream", convert("IN/foreign.ei4", "OUT/o.raw")),
      decoding("refused_size", convert("IN/huge.ei4", "OUT/o.raw")),
      conversion("refused_quality", convert("IN/grey.raw", "OUT/o.jpg", {"-size", "64x48"})),
      report("refused_report", convert("IN/grey.ei4", "OUT/o.png", {"-ima", "IN/report_of_no_view.txt"})),
      {"erblb_list", Flow::tool, "erblb", {"list", "IN/study/full.erblb"}},
      {"erblb_extract", Flow::tool, "erblb", {"extract", "IN/study/full.erblb", "-C", "OUT/"}},
      {"erblb_build",
       Flow::tool,
       "erblb",
       {"build", "OUT/new.erblb", "IN/grey.ei4", "x#y.ei4=IN/colour.ei4"}},
      {"erblb_append",
       Flow::tool,
       "erblb",
       {"append", "OUT/study/full.erblb", "IN/grey.ei4"},
       "study/full.erblb"},
      {"erblb_delete",
       Flow::tool,
       "erblb",
       {"delete", "OUT/study/full.erblb", "img.ei4"},
       "study/full.erblb"},
      {"ei4make",
       Flow::tool,
       "ei4make",
       {"--size", "96x64", "--format", "RGB", "IN/colour.raw", "OUT/new.ei4"}},
  };
  return all;
}

}  // namespace ei4::test
