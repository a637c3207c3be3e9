// Figures drawn pixel by pixel along their outlines against the library's own way, to the last bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "draw/cdc.h"
#include "draw/outline_painter.h"
#include "picture.h"

namespace {

using ei4::test::Picture;

constexpr int kWidth = 110;
constexpr int kHeight = 80;
constexpr const char* kColors[] = {"#ff0000", "#000000", "#ffffff", "#13a7fe", "#808080"};
constexpr unsigned int kPacked[] = {0x0000FF, 0x000000, 0xFFFFFF, 0xFEA713, 0x808080};

class OutlinePainter : public testing::Test {
 protected:
  int from(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }

  // Coordinates about the picture, of a small figure or one that goes far beyond it.
  tagPOINT point(int spread) {
    return {kWidth / 2 + from(-spread, spread), kHeight / 2 + from(-spread, spread)};
  }
  std::vector<tagPOINT> points(int n, int spread) {
    std::vector<tagPOINT> all;
    all.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) all.push_back(point(spread));
    return all;
  }
  static std::string list(const std::vector<tagPOINT>& points) {
    std::string text;
    for (const tagPOINT& p : points) text += std::to_string(p.x) + ' ' + std::to_string(p.y) + ' ';
    return text;
  }

  // Has `draw` draw a figure with a drawing context and compares it with the primitive, drawn by the library.
  template <class Draw>
  bool same(const std::string& primitive, Draw draw) {
    const auto color = static_cast<std::size_t>(from(0, 4));
    const char* const map = from(0, 1) == 0 ? "I" : "RGB";
    const Picture picture(kWidth, kHeight, map);
    const Picture expected(kWidth, kHeight, map);
    CDC dc(picture.image(), picture.info());
    CPen pen(0, 1, kPacked[color]);
    dc.SelectObject(&pen);
    dc.SelectObject(static_cast<CBrush*>(nullptr));
    draw(dc);
    expected.draw(primitive, kColors[color], "none");
    EXPECT_TRUE(picture.pixels() == expected.pixels()) << primitive << ' ' << kColors[color] << ' ' << map;
    EXPECT_EQ(picture.state(), expected.state());
    return !HasFailure();
  }

 private:
  std::mt19937 m_random{20240607};
};

TEST_F(OutlinePainter, AgreesWithTheLibraryAtHand) {
  const Picture picture(30, 30);
  const ei4::test::OwnedPicturePart<DrawInfo> info(AcquireDrawInfo());
  CloneString(&info->primitive, "line 1 1 9 9");
  auto outline = ei4::Outline::line(1, 1, 9, 9);
  long work = 1000;
  if (!ei4::paintOutline(*picture.image(), *info, *outline, work)) {
    constexpr std::size_t kKnownVersion = 0x69B;  // 6.9.11
    std::size_t version = 0;
    GetMagickVersion(&version);
    ASSERT_NE(version, kKnownVersion) << "this library's law is the one that is followed";
    GTEST_SKIP() << "this library covers pixels by another law: all figures are left to it";
  }
}

TEST_F(OutlinePainter, DrawsLines) {
  for (int i = 0; i < 1000; ++i) {
    const int spread = i % 4 == 0 ? 8 : i % 4 == 1 ? 60 : i % 4 == 2 ? 400 : 2000000000;
    tagPOINT a = point(spread);
    tagPOINT b = point(spread);
    if (i % 5 == 0) b.x = a.x;
    if (i % 7 == 0) b.y = a.y;
    const bool equal =
        same("line " + list({a}) + std::to_string(b.x) + ' ' + std::to_string(b.y), [&](CDC& dc) {
          dc.MoveTo(a);
          dc.LineTo(b);
        });
    if (!equal) break;
  }
}

TEST_F(OutlinePainter, DrawsEllipses) {
  for (int i = 0; i < 700; ++i) {
    const int size = i % 4 == 0 ? 6 : i % 4 == 1 ? 30 : i % 4 == 2 ? 80 : 700;
    const tagPOINT c = point(i % 3 == 0 ? 10 : size);
    const int rx = from(1, size);
    const int ry = i % 6 == 0 ? rx : from(1, size);
    const auto l = static_cast<int>(c.x) - rx;
    const auto t = static_cast<int>(c.y) - ry;
    const std::string primitive = "ellipse " + list({c, {rx, ry}}) + "0 360";
    const bool equal = same(primitive, [&](CDC& dc) { dc.Ellipse(l, t, l + 2 * rx, t + 2 * ry, 0.0); });
    if (!equal) break;
  }
}

TEST_F(OutlinePainter, DrawsVeryLargeEllipses) {
  for (const int radius : {3000, 16384, 16385}) {
    const int l = 40 - 2 * radius;
    same("ellipse " + list({{40 - radius, 30}, {radius, radius - 7}}) + "0 360",
         [&](CDC& dc) { dc.Ellipse(l, 30 - radius + 7, l + 2 * radius, 30 + radius - 7, 0.0); });
  }
}

TEST_F(OutlinePainter, DrawsPolylines) {
  for (int i = 0; i < 400; ++i) {
    const auto all = points(from(1, i % 2 == 0 ? 5 : 40), i % 3 == 0 ? 35 : i % 3 == 1 ? 50 : 300);
    const bool equal = same("polyline " + list(all),
                            [&](CDC& dc) { dc.Polyline(all.data(), static_cast<int>(all.size())); });
    if (!equal) break;
  }
}

TEST_F(OutlinePainter, DrawsPolygons) {
  for (int i = 0; i < 600; ++i) {
    auto all = points(from(1, i % 2 == 0 ? 6 : 40), i % 3 == 0 ? 35 : i % 3 == 1 ? 50 : 300);
    if (i % 4 == 0) {
      for (tagPOINT& p : all) p.y = p.y / 9 * 9;  // level edges, and many that end together
    }
    if (i % 5 == 0) all.push_back(all.back());
    const bool equal =
        same("polygon " + list(all), [&](CDC& dc) { dc.Polygon(all.data(), static_cast<int>(all.size())); });
    if (!equal) break;
  }
}

TEST_F(OutlinePainter, DrawsUpToSevenRunsThatEndInOneRow) {
  for (int peaks = 1; peaks <= 8; ++peaks) {
    std::vector<tagPOINT> comb;
    for (int i = 0; i < peaks; ++i) {
      comb.push_back({2 + 4 * i, 10});
      comb.push_back({4 + 4 * i, 30});
    }
    comb.push_back({2, 60});
    same("polygon " + list(comb), [&](CDC& dc) { dc.Polygon(comb.data(), static_cast<int>(comb.size())); });
    same("polyline " + list(comb), [&](CDC& dc) { dc.Polyline(comb.data(), static_cast<int>(comb.size())); });
  }
}

TEST_F(OutlinePainter, DrawsLinesThatEndAtTheLastNumbers) {
  const auto drawnAlike = [this](int x1, int y1, int x2, int y2) {
    same("line " + list({{x1, y1}}) + std::to_string(x2) + ' ' + std::to_string(y2), [=](CDC& dc) {
      dc.MoveTo(x1, y1);
      dc.LineTo(x2, y2);
    });
  };
  const int ends[] = {INT_MIN, INT_MIN + 1, -1, 0, 40, INT_MAX - 1, INT_MAX};
  for (const int y1 : ends) {
    for (const int y2 : ends) {
      drawnAlike(50, y1, 50, y2);
      drawnAlike(30, y1, 80, y2);
      drawnAlike(INT_MAX, y1, INT_MIN, y2);
    }
  }
}

// Several figures of all kinds on each.
TEST_F(OutlinePainter, DrawsOnPicturesOfAnySize) {
  std::vector<std::array<int, 2>> sizes;
  for (int w = 1; w <= 5; ++w) {
    for (int h = 1; h <= 5; ++h) sizes.push_back({w, h});
  }
  for (const int n : {6, 24, 100, 300}) {
    sizes.push_back({1, n});
    sizes.push_back({n, 1});
  }
  for (const auto& [w, h] : sizes) {
    for (int round = 0; round < 12; ++round) {
      const char* const map = round % 2 == 0 ? "I" : "RGB";
      const Picture picture(w, h, map);
      const Picture expected(w, h, map);
      CDC dc(picture.image(), picture.info());
      CPen pen(0, 1, 0x0000FF);
      dc.SelectObject(&pen);
      dc.SelectObject(static_cast<CBrush*>(nullptr));
      std::string figures;
      const auto near = [&, w = w, h = h](int reach) {
        return tagPOINT{from(-reach, w + reach), from(-reach, h + reach)};
      };
      for (int i = 0; i < 4; ++i) {
        std::string primitive;
        const int reach = from(0, 4);
        std::vector<tagPOINT> all;
        for (int n = from(2, 6); n > 0; --n) all.push_back(near(reach));
        const int n = static_cast<int>(all.size());
        switch (from(0, 3)) {
          case 0:
            primitive = "line " + list({all[0], all[1]});
            dc.MoveTo(all[0]);
            dc.LineTo(all[1]);
            break;
          case 1: {
            const auto x = static_cast<int>(all[0].x);
            const auto y = static_cast<int>(all[0].y);
            const int rx = from(1, 6);
            const int ry = from(1, 6);
            primitive = "ellipse " + list({{x, y}, {rx, ry}}) + "0 360";
            dc.Ellipse(x - rx, y - ry, x + rx, y + ry, 0.0);
            break;
          }
          case 2:
            primitive = "polyline " + list(all);
            dc.Polyline(all.data(), n);
            break;
          default:
            primitive = "polygon " + list(all);
            dc.Polygon(all.data(), n);
        }
        if (primitive.starts_with("line ")) primitive.pop_back();  // as LineTo writes it
        expected.draw(primitive, "#ff0000", "none");
        figures += primitive + "; ";
      }
      ASSERT_TRUE(picture.pixels() == expected.pixels()) << w << " x " << h << ' ' << map << ": " << figures;
      ASSERT_EQ(picture.state(), expected.state());
    }
  }
}

TEST_F(OutlinePainter, DrawsOverOtherFiguresAndTexts) {
  for (const char* const map : {"I", "RGB"}) {
    const Picture picture(kWidth, kHeight, map);
    const Picture expected(kWidth, kHeight, map);
    CDC dc(picture.image(), picture.info());
    CPen pen(0, 1, 0x0000FF);
    dc.SelectObject(&pen);
    dc.SelectObject(static_cast<CBrush*>(nullptr));
    dc.SetTextColor(0x13A7FE);
    dc.TextOut(10, 40, "Label");
    expected.annotate("Label", "+10+40", "#fea713");
    dc.MoveTo(5, 44);
    dc.LineTo(70, 30);
    expected.draw("line 5 44 70 30", "#ff0000", "none");
    dc.Ellipse(8, 20, 48, 50, 0.0);
    expected.draw("ellipse 28 35 20 15 0 360", "#ff0000", "none");
    dc.TextOut(20, 52, "more");
    expected.annotate("more", "+20+52", "#fea713");
    const tagPOINT zigzag[] = {{12, 30}, {60, 44}, {14, 50}, {55, 20}};
    dc.Polyline(zigzag, 4);
    expected.draw("polyline 12 30 60 44 14 50 55 20 ", "#ff0000", "none");
    EXPECT_TRUE(picture.pixels() == expected.pixels()) << map;
    EXPECT_EQ(picture.state(), expected.state());
  }
}

// The pixels beside this line are covered by a sixteenth: the mixture is often half way between two values.
// Every byte below meets every byte of a pen, as one of its three components.
TEST_F(OutlinePainter, RoundsMixturesOfEveryTwoBytesAlike) {
  constexpr int kColumns = 9;
  constexpr int kRows = 101;
  constexpr std::size_t kRowBytes = std::size_t{3} * kColumns;
  for (int top = 0; top <= 255; top += kRows) {
    std::vector<unsigned char> bytes;
    for (int y = 0; y < kRows; ++y) {
      bytes.insert(bytes.end(), kRowBytes, static_cast<unsigned char>(std::min(top + y, 255)));
    }
    for (unsigned int red = 0; red <= 85; ++red) {
      const unsigned int green = red + 85;
      const unsigned int blue = red + 170;
      const Picture picture(kColumns, kRows, "RGB", bytes);
      const Picture expected(kColumns, kRows, "RGB", bytes);
      CDC dc(picture.image(), picture.info());
      CPen pen(0, 1, blue << 16 | green << 8 | red);
      dc.SelectObject(&pen);
      dc.MoveTo(4, 0);
      dc.LineTo(4, 100);
      std::array<char, 16> color{};
      std::snprintf(color.data(), color.size(), "#%02x%02x%02x", red, green, blue);
      expected.draw("line 4 0 4 100", color.data(), "none");
      ASSERT_TRUE(picture.pixels() == expected.pixels()) << color.data() << " on greys from " << top;
    }
  }
}

TEST_F(OutlinePainter, BlendsWithPixelsThatAreNotOpaque) {
  auto bytes = ei4::test::unevenBytes(4 * kWidth * kHeight);
  for (std::size_t i = 3; i < bytes.size(); i += 4) bytes[i] = static_cast<unsigned char>(from(1, 255));
  for (int i = 0; i < 100; ++i) {
    const Picture picture(kWidth, kHeight, "RGBA", bytes);
    const Picture expected(kWidth, kHeight, "RGBA", bytes);
    const auto pen = static_cast<std::size_t>(from(0, 4));
    CDC dc(picture.image(), picture.info());
    CPen inColor(0, 1, kPacked[pen]);
    dc.SelectObject(&inColor);
    dc.SelectObject(static_cast<CBrush*>(nullptr));
    const auto all = points(5, 40);
    dc.MoveTo(all[0]);
    dc.LineTo(all[1]);
    expected.draw("line " + list({all[0], all[1]}), kColors[pen], "none");
    dc.Polygon(all.data(), 5);
    expected.draw("polygon " + list(all), kColors[pen], "none");
    dc.Ellipse(10, 12, 90, 62, 0.0);
    expected.draw("ellipse 50 37 40 25 0 360", kColors[pen], "none");
    ASSERT_TRUE(picture.pixels() == expected.pixels()) << list(all) << kColors[pen];
    ASSERT_EQ(picture.state(), expected.state());
  }
}

}  // namespace
