// Tests of the report picture's flow: an image, a report, and how another painter paints the one as the other asks.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "driver/report_image.h"
#include "image/reference_painter.h"
#include "picture_file.h"
#include "settings_fixture.h"
#include "support/cli_temp_folder.h"

namespace ei4::test {

// The table of a rising window from `lo` to `hi`, in stored values, for 8 bits of output.
inline std::vector<std::uint16_t> windowTable(int entries, int lo, int hi, bool invert = false) {
  std::vector<std::uint16_t> table;
  for (int value = 0; value < entries; ++value) {
    const int share = std::clamp(value - lo, 0, hi - lo);
    const int grey = share * 255 / (hi - lo);
    table.push_back(static_cast<std::uint16_t>(invert ? 255 - grey : grey));
  }
  return table;
}

// A picture whose samples differ along rows, columns and components.
inline Picture pictureOf(COLOR_TYPE format, long cx, long cy) {
  Picture picture{format, cx, cy, {}};
  const unsigned range = format == COLOR_TYPE_M16 ? 65536 : 256;
  const int components = componentsOf(format);
  for (long i = 0; i < cx * cy * components; ++i) {
    picture.samples.push_back(static_cast<unsigned>(i * i % 251 + i / components % cx * 3) * (range / 256) %
                              range);
  }
  return picture;
}

inline Bytes rawBytes(const Picture& picture) {
  Bytes bytes;
  for (const unsigned sample : picture.samples) {
    bytes.push_back(static_cast<unsigned char>(sample));
    if (picture.format == COLOR_TYPE_M16) bytes.push_back(static_cast<unsigned char>(sample >> 8));
  }
  return bytes;
}

inline COLOR_TYPE outputOf(COLOR_TYPE format) { return format == COLOR_TYPE_M16 ? COLOR_TYPE_M08 : format; }

// How the picture is to be painted when the whole of it is visible; each test changes what it is about.
inline PaintRequest requestFor(const Picture& picture, CSize size, std::vector<std::uint16_t> table) {
  return {.format = outputOf(picture.format),
          .cx = size.cx,
          .cy = size.cy,
          .offsetX = 0,
          .offsetY = 0,
          .shownX = size.cx,
          .shownY = size.cy,
          .clipL = 0,
          .clipT = 0,
          .clipR = size.cx,
          .clipB = size.cy,
          .orientation = ORIENTATION_AS_STORED,
          .background = 0,
          .mode = 1,
          .table = std::move(table)};
}

class ReportImageTest : public SettingsTest {
 protected:
  static void SetUpTestSuite() { startMagickCore(); }

  void SetUp() override {
    SettingsTest::SetUp();
    useRaw(pictureOf(COLOR_TYPE_M08, 40, 30));
    useReport("sized 40 30 0 0\nlight 256 128 0 0\nclip 1 0 0 40 30\n");
    out = output.path("out.png");
  }

  void useRaw(const Picture& picture) {
    source = picture;
    in = input.write("in.raw", rawBytes(picture));
  }

  void useReport(const std::string& text) {
    report = input.write("report.txt", {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
  }

  int make() {
    return CreateReportImageFile(in.c_str(), source.format, tagSIZE{source.cx, source.cy}, out.c_str(), box,
                                 hasQuality, 90, report.c_str(), intercept, slope);
  }

  PictureFile made() {
    EXPECT_EQ(make(), 1);
    return readPicture(out);
  }

  void expectNothingWritten() {
    EXPECT_EQ(make(), 1);
    EXPECT_TRUE(output.empty());
  }

  // What is made must be the picture as the reference paints it.
  void expectPainted(const PaintRequest& request) {
    const PictureFile picture = made();
    ASSERT_EQ(picture.width, static_cast<unsigned long>(request.cx));
    ASSERT_EQ(picture.height, static_cast<unsigned long>(request.cy));
    Bytes wanted = ReferencePainter(source, request).paint(0);
    wanted.resize(static_cast<std::size_t>(request.cx * request.cy * bytesOf(request.format)));
    EXPECT_EQ(picture.pixels, request.format == COLOR_TYPE_C08 ? wanted : inColour(wanted));
  }

  TempFolder input;
  TempFolder output;
  Picture source{};
  std::string in;
  std::string out;
  std::string report;
  CSize box = CSize(0, 0);
  int hasQuality = 0;
  double intercept = 0;
  double slope = 1;
};

}  // namespace ei4::test
