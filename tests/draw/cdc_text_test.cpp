#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <string>

#include "draw/cdc.h"
#include "drawing_fixture.h"
#include "support/cli_temp_folder.h"

namespace {

class Text : public ei4::test::Drawing {
 protected:
  void SetUp() override { dc.SetTextColor(0x0000FF); }

  static constexpr const char* kRed = "#ff0000";
  static constexpr const char* kFontLine =
      "Font Info: Face: 0 Font: Courier Metrics: (null) Family: (null) Weight: 0 PointSize: 12 StrokeWidth: "
      "0.01\n";
};

TEST_F(Text, IsDrawnFromItsBaseline) {
  EXPECT_EQ(dc.TextOut(10, 40, "Label 12.5 mm"), 1);
  expected.annotate("Label 12.5 mm", "+10+40", kRed);
  expectSame();
}

TEST_F(Text, IsBlackInANewContext) {
  CDC another(picture.image(), picture.info());
  another.TextOut(10, 40, "Label");
  expected.annotate("Label", "+10+40", kBlack);
  expectSame();
}

TEST_F(Text, LooksTheSameBehindAFilledFigure) {
  dc.Ellipse(0, 60, 20, 80, 0.0);
  dc.TextOut(10, 40, "Label");
  expected.draw("ellipse 10 70 10 10 0 360", kBlack, kBlack);
  expected.annotate("Label", "+10+40", kRed);
  expectSame();
}

TEST_F(Text, IsTakenLiterally) {
  const std::string text = R"(%w @/etc/passwd \n "q" -x <&>)";
  dc.TextOut(2, 40, text.c_str());
  expected.annotate(text, "+2+40", kRed);
  expectSame();
}

TEST_F(Text, ReadsUtf8AndElseLatin1) {
  dc.TextOut(10, 40, "\xC2\xB5m \xE2\x82\xAC");
  dc.TextOut(10, 60, "\xB5m");
  expected.annotate("\xC2\xB5m \xE2\x82\xAC", "+10+40", kRed);
  expected.annotate("\xB5m", "+10+60", kRed);
  expectSame();
}

TEST_F(Text, OfNothingDrawsNothing) {
  EXPECT_EQ(dc.TextOut(10, 40, ""), 1);
  EXPECT_EQ(dc.TextOut(10, 40, "\n\r\n"), 1);
  expectUntouched();
}

TEST_F(Text, GoesOnLineByLine) {
  for (const char* text :
       {"one\ntwo\nthree", "one\r\ntwo", "\n\nthird", "a\rbcd\nef", "a\rlost", "\xB5\n\xC2\xB5"}) {
    dc.TextOut(10, 20, text);
    expected.annotate(text, "+10+20", kRed);
    EXPECT_TRUE(picture.pixels() == expected.pixels()) << text;
  }
  expectSame();
}

TEST_F(Text, ShowsTheSameLinesWhereverItStarts) {
  std::string text;
  for (int i = 0; i < 40; ++i) text += "line " + std::to_string(i) + (i % 3 == 0 ? "\r\n" : "\n");
  for (const int y : {-700, -300, -20, -1, 0, 5, 100, 119, 130}) {
    const ei4::test::Picture wanted(160, 120);
    const ei4::test::Picture drawn(160, 120);
    CDC context(drawn.image(), drawn.info());
    context.TextOut(10, y, text.c_str());
    wanted.annotate(text, "+10+" + std::to_string(y), kBlack);
    EXPECT_TRUE(drawn.pixels() == wanted.pixels()) << y;
    const bool shows = y > -600 && y < 130;
    EXPECT_EQ(drawn.pixels() != untouched.pixels(), shows) << y;
  }
}

TEST_F(Text, IsCutOffAtThePicturesEdges) {
  for (const int x : {-3, 120, 158, 159, 160, 170}) {
    const std::string place = "+" + std::to_string(x < 0 ? x + 7 : x);
    for (const int y : {-3, 0, 4, 118, 125}) {
      dc.TextOut(x, y, "Wide label");
      expected.annotate("Wide label", place + "+" + std::to_string(y), kRed);
      EXPECT_TRUE(picture.pixels() == expected.pixels()) << x << ' ' << y;
    }
  }
  expectSame();
}

TEST_F(Text, LeftOfThePictureIsMovedInByWholeCells) {
  dc.TextOut(-15, 20, "ABCDEFG");
  expected.annotate("ABCDEFG", "+6+20", kRed);
  expectSame();
}

TEST_F(Text, LeftOfThePictureIsTracedWithoutTheFirstCharacters) {
  EXPECT_EQ(traceOf([this] { dc.TextOut(-15, 20, "ABCDEFG"); }), "TextOut-string 6 20 DEFG\n");
  EXPECT_EQ(traceOf([this] { dc.TextOut(-14, 20, "ABCDEFG"); }), "TextOut-string 0 20 CDEFG\n");
  EXPECT_EQ(traceOf([this] { dc.TextOut(-1, 20, "ABCDEFG"); }), "TextOut-string 6 20 BCDEFG\n");
  EXPECT_EQ(traceOf([this] { dc.TextOut(0, 20, "ABCDEFG"); }), "TextOut-string 0 20 ABCDEFG\n");
}

TEST_F(Text, FurtherLeftThanItsLengthStays) {
  EXPECT_EQ(traceOf([this] { dc.TextOut(-100, 20, "AB"); }), "TextOut-string -100 20 AB\n");
  EXPECT_EQ(traceOf([this] { dc.TextOut(-8, 20, "AB"); }), "TextOut-string -8 20 AB\n");
  EXPECT_EQ(traceOf([this] { dc.TextOut(-7, 20, "AB"); }), "TextOut-string 0 20 B\n");
}

TEST_F(Text, AtTheEndsOfIntDrawsNothing) {
  for (const int x : {INT_MIN, INT_MIN + 1, INT_MAX}) dc.TextOut(x, 20, "AB");
  for (const int y : {INT_MIN, INT_MAX}) dc.TextOut(20, y, "A\nB\nC");
  expectUntouched();
  EXPECT_EQ(traceOf([this] { dc.TextOut(INT_MIN, 20, "AB"); }), "TextOut-string -2147483648 20 AB\n");
}

TEST_F(Text, IsTracedAsItIs) {
  EXPECT_EQ(traceOf([this] { dc.TextOut(1, 2, "100%s %n"); }), "TextOut-string 1 2 100%s %n\n");
}

// Placed text: "abc" is 21 pixels wide and 9 high.
struct Placed {
  unsigned int format;
  tagRECT before;
  tagRECT after;
};

class PlacedText : public Text, public testing::WithParamInterface<Placed> {};

TEST_P(PlacedText, SetsTheRectangleAndDrawsAtItsLeftBottom) {
  tagRECT rect = GetParam().before;
  const tagRECT& after = GetParam().after;
  EXPECT_EQ(dc.DrawText("abc", &rect, GetParam().format), after.bottom - after.top);
  EXPECT_EQ(rect, after);
  expected.annotate("abc", "+" + std::to_string(after.left) + "+" + std::to_string(after.bottom), kRed);
  expectSame();
}

INSTANTIATE_TEST_SUITE_P(
    ByFormat, PlacedText,
    testing::Values(Placed{0, {40, 20, 90, 60}, {40, 20, 90, 60}},      // nothing asked: the rectangle stays
                    Placed{4, {40, 20, 91, 60}, {55, 20, 76, 60}},      // 131 / 2 - 21 / 2
                    Placed{8, {40, 20, 90, 61}, {40, 36, 90, 45}},      // 81 / 2 - 9 / 2
                    Placed{16, {70, 20, 90, 60}, {49, 20, 70, 60}},     // ends at the left edge
                    Placed{4 | 8, {40, 20, 91, 61}, {55, 36, 76, 45}},  //
                    Placed{
                        4 | 16, {60, 20, 131, 60}, {64, 20, 85, 60}},  // centred first, then moved: 85 - 21
                    Placed{77, {80, 50, 80, 50}, {70, 46, 91, 55}},    // 64 + 8 + 4 + 1 at a point
                    Placed{67, {30, 20, 90, 60}, {30, 20, 90, 60}},    // 64 + 2 + 1: none of the flags
                    Placed{73, {80, 50, 80, 50}, {80, 46, 80, 55}},    // 64 + 8 + 1
                    Placed{89, {80, 50, 80, 50}, {59, 46, 80, 55}}));  // 64 + 16 + 8 + 1

TEST_F(Text, IsCentredWithHalvesTowardZero) {
  tagRECT rect{-20, -7, -5, -4};
  dc.DrawText("abc", &rect, 77);  // -25 / 2 = -12, less 10; -11 / 2 = -5, less 4
  EXPECT_EQ(rect, (tagRECT{-22, -9, -1, 0}));
}

TEST_F(Text, IsMeasuredWithoutBeingDrawn) {
  for (const unsigned int format : {128U, 128U + 77U, 128U + 16U}) {
    tagRECT rect{40, 20, 90, 60};
    EXPECT_EQ(dc.DrawText("abcd", &rect, format), FONT_HEIGHT);
    EXPECT_EQ(rect, (tagRECT{0, 0, 28, 9}));
  }
  tagRECT rect{40, 20, 90, 60};
  EXPECT_EQ(dc.DrawText("", &rect, 128), 9);
  EXPECT_EQ(rect, (tagRECT{0, 0, 0, 9}));
  expectUntouched();
}

TEST_F(Text, AtWideCoordinatesNeitherOverflowsNorShows) {
  for (const long far : {LONG_MAX, LONG_MIN, 5000000000L, -5000000000L}) {
    for (const unsigned int format : {0U, 4U, 8U, 16U, 77U, 89U}) {
      tagRECT rect{far, far, far, far};
      dc.DrawText("abc", &rect, format);
      tagRECT empty{far, far, far / -2, 0};
      dc.DrawText("abc", &empty, format);
    }
  }
  SUCCEED();
}

TEST_F(Text, IsTracedByMeasuringAndByDrawing) {
  tagRECT rect{80, 50, 80, 50};
  EXPECT_EQ(traceOf([&] { dc.DrawText("abc", &rect, 128); }),
            std::string("DrawText-calc 21 9 \"abc\"\n") + kFontLine);
  rect = {80, 50, 80, 50};
  EXPECT_EQ(traceOf([&] { dc.DrawText("abc", &rect, 77); }),
            std::string("DrawText-draw 70 55 \"abc\"\n") + kFontLine + "TextOut-string 70 55 abc\n");
}

TEST_F(Text, TracesTheStrokeWidthOfTheDrawingBefore) {
  dc.LineTo(5, 5);
  tagRECT rect{0, 0, 0, 0};
  const std::string trace = traceOf([&] { dc.DrawText("abc", &rect, 128); });
  EXPECT_TRUE(trace.ends_with("PointSize: 12 StrokeWidth: 1\n")) << trace;
}

TEST_F(Text, OfAnyLengthTakesLittleTime) {
  // Each line opens the font again, and each character is set: without bounds these take minutes.
  const std::string lines(1000000, '\n');
  dc.TextOut(10, 20, (lines + "x").c_str());
  dc.TextOut(10, INT_MIN, (std::string(200, 'x') + lines).c_str());
  std::string manyLines;
  for (int i = 0; i < 200000; ++i) manyLines += "x\n";
  dc.TextOut(10, 200, manyLines.c_str());
  expectUntouched();
  const std::string longLine(1000000, 'x');
  dc.TextOut(10, 20, longLine.c_str());
  expected.annotate(longLine.substr(0, 1000), "+10+20", kRed);
  expectSame();
}

// Makes a folder the current one for a while.
class InFolder {
 public:
  explicit InFolder(const std::string& path) : m_before(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~InFolder() { std::filesystem::current_path(m_before); }
  InFolder(const InFolder&) = delete;
  InFolder& operator=(const InFolder&) = delete;

 private:
  std::filesystem::path m_before;
};

TEST_F(Text, TakesNoFileInTheWorkingFolderForItsFont) {
  expected.annotate("Wiki", "+10+40", kRed);

  const ei4::test::TempFolder folder;
  std::filesystem::copy_file("/usr/share/fonts/opentype/urw-base35/NimbusSans-Bold.otf",
                             folder.path("Courier"));
  const InFolder inside(folder.path("."));
  const ei4::test::Picture deceived(160, 120);
  deceived.annotate("Wiki", "+10+40", kRed);
  ASSERT_FALSE(deceived.pixels() == expected.pixels()) << "the library no longer takes the file";

  CDC another(picture.image(), picture.info());
  EXPECT_EQ(FONT_WIDTH, 7);
  EXPECT_EQ(FONT_HEIGHT, 9);
  another.SetTextColor(0x0000FF);
  another.TextOut(10, 40, "Wiki");
  expectSame();

  tagRECT rect{0, 0, 0, 0};
  EXPECT_EQ(traceOf([&] { another.DrawText("abc", &rect, 128); }),
            std::string("DrawText-calc 21 9 \"abc\"\n") + kFontLine);
}

// What the library does where it can open no font file at all.
TEST_F(Text, WithoutAnyFontIsLeftOut) {
  FONT_NAME = "@/no/such/font";
  {
    CDC another(picture.image(), picture.info());
    EXPECT_EQ(FONT_WIDTH, 0);
    EXPECT_EQ(FONT_HEIGHT, 0);
    EXPECT_EQ(another.TextOut(10, 40, "abc\ndef"), 1);
    EXPECT_EQ(traceOf([&] { another.TextOut(-10, 40, "abc"); }), "TextOut-string -10 40 abc\n");
    tagRECT rect{30, 40, 50, 60};
    EXPECT_EQ(another.DrawText("abc", &rect, 77), 0);
    EXPECT_EQ(rect, (tagRECT{40, 50, 40, 50}));
    EXPECT_EQ(another.DrawText("abc", &rect, 128), 0);
    EXPECT_EQ(rect, (tagRECT{0, 0, 0, 0}));
  }
  FONT_NAME = "Courier";
  expectUntouched();
}

}  // namespace
