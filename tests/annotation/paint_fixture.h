// A picture that annotations are painted on, and beside it what is expected: a second picture, onto which the test
// draws the primitives itself, and the trace that a drawing context leaves when it is asked for just these.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "annotation/annotation_set.h"
#include "draw/cdc.h"
#include "draw/drawing_globals.h"
#include "draw/picture.h"

namespace ei4::test {

// Packed colours with red in the low byte, and MagickCore's names for them.
inline constexpr unsigned int kYellow = 0x00FFFF;
inline constexpr unsigned int kBlue = 0xFF0000;
inline constexpr const char* kYellowName = "#ffff00";
inline constexpr const char* kBlueName = "#0000ff";
inline constexpr const char* kBlackName = "#000000";
inline constexpr const char* kWhiteName = "#ffffff";

struct XY {
  int x;
  int y;
};

/// Records and draws what a test expects. Texts are placed by a character cell of 7 x 9 pixels.
class Expected {
 public:
  Expected(int width, int height) : m_picture(width, height) {}

  Expected& move(XY at) {
    m_trace += "MoveTo-point " + numbers(at) + "\n";
    return *this;
  }
  Expected& line(const char* color, XY from, XY to) { return move(from).lineOn(color, from, to); }
  /// A line that goes on where the last one ended.
  Expected& lineOn(const char* color, XY from, XY to) {
    const std::string primitive = "line " + numbers(from) + " " + numbers(to);
    m_trace += "Draing Primitive: '" + primitive + "'\nLineTo " + numbers(to) + "\n";
    m_picture.draw(primitive, color, "none");
    return *this;
  }
  Expected& shadowedLine(const char* color, const char* shadow, XY from, XY to) {
    line(shadow, {from.x + 1, from.y + 1}, {to.x + 1, to.y + 1});
    line(shadow, {from.x + 1, from.y}, {to.x + 1, to.y});
    return line(color, from, to);
  }
  /// The painters' way of beginning a line: at its start, before it is drawn with its shadow.
  Expected& strokeTo(const char* color, const char* shadow, XY from, XY to) {
    return move(from).shadowedLine(color, shadow, from, to);
  }

  Expected& ellipse(const char* color, int l, int t, int r, int b) {
    std::ostringstream box;
    box << l << " " << t << " " << r << " " << b;
    std::ostringstream primitive;
    primitive << "ellipse " << (l + r) / 2 << " " << (t + b) / 2 << " " << (r - l) / 2 << " " << (b - t) / 2
              << " 0 360";
    m_trace += "Ellipse " + box.str() + "\nPrimitive: " + primitive.str() + "\nPen color: " + color +
               "\nBrush color: none\n";
    m_picture.draw(primitive.str(), color, "none");
    return *this;
  }
  Expected& shadowedEllipse(const char* color, const char* shadow, int l, int t, int r, int b) {
    ellipse(shadow, l + 1, t + 1, r + 1, b + 1).ellipse(shadow, l + 1, t, r + 1, b);
    return ellipse(color, l, t, r, b);
  }

  Expected& polygon(const char* color, const std::vector<XY>& points, XY moved = {0, 0}) {
    std::string primitive = "polygon ";
    for (const XY& point : points) primitive += numbers({point.x + moved.x, point.y + moved.y}) + " ";
    m_trace += "Polygon_";
    m_picture.draw(primitive, color, "none");
    return *this;
  }
  Expected& shadowedPolygon(const char* color, const char* shadow, const std::vector<XY>& points) {
    return polygon(shadow, points, {1, 1}).polygon(shadow, points, {1, 0}).polygon(color, points);
  }

  /// A text whose baseline begins at a point.
  Expected& text(const char* color, XY at, const std::string& words) {
    m_trace += "DrawText-draw " + numbers(at) + " \"" + words + "\"\n";
    m_trace += "TextOut-string " + numbers(at) + " " + words + "\n";
    m_picture.annotate(words, "+" + std::to_string(at.x) + "+" + std::to_string(at.y), color);
    return *this;
  }
  Expected& shadowedText(const char* color, const char* shadow, XY at, const std::string& words) {
    return text(shadow, {at.x + 1, at.y + 1}, words).text(color, at, words);
  }
  /// A label centred both ways: half its width to the left; half its height, 4, above, and so 5 below.
  Expected& label(const char* color, const char* shadow, XY center, const std::string& words) {
    const int width = 7 * static_cast<int>(words.size());
    return shadowedText(color, shadow, {center.x - width / 2, center.y + 5}, words);
  }
  /// A text that is measured.
  Expected& measured(const std::string& words) {
    m_trace += "DrawText-calc " + std::to_string(7 * words.size()) + " 9 \"" + words + "\"\n";
    return *this;
  }

  const std::string& trace() const { return m_trace; }
  const Picture& picture() const { return m_picture; }

 private:
  static std::string numbers(XY at) { return std::to_string(at.x) + " " + std::to_string(at.y); }

  std::string m_trace;
  Picture m_picture;
};

/// A set whose view shows its picture as it is: image and display coordinates agree until a test changes that.
class Painting : public testing::Test {
 protected:
  static constexpr int kWidth = 200;
  static constexpr int kHeight = 150;

  Painting() {
    set.m_sizeImg = CSize(kWidth, kHeight);
    set.m_sizeDst = CSize(kWidth, kHeight);
    set.m_sizeClip = CSize(kWidth, kHeight);
    atFirst = tools();
  }
  void TearDown() override {
    iVerbose = 0;
    const Tools after = tools();
    EXPECT_EQ(after.pen, atFirst.pen) << "a pen is still selected";
    EXPECT_EQ(after.brush, atFirst.brush) << "a brush is still selected";
    EXPECT_EQ(after.textColor, atFirst.textColor) << "a text colour is still set";
  }

  /// An annotation of the set's, in yellow, with both labels off.
  template <class Annotation>
  void place(Annotation& annotation, CPoint base, ORIENTATION orientation = ORIENTATION_AS_STORED) {
    annotation.Initialize(&set, 1, base, kYellow, orientation);
  }
  static void showIndex(CAnnotation& annotation, int index, CPoint center) {
    annotation.m_nIndex = index;
    annotation.m_bShowIndex = 1;
    annotation.SetIndexCenter(center);
  }
  static void showValue(CAnnotation& annotation, const char* text, CPoint center) {
    annotation.m_strValue = text;
    annotation.m_bShowValue = 1;
    annotation.SetValueCenter(center);
  }
  static void putInAlternateState(CAnnotation& annotation) {
    annotation.m_nState = 1;
    annotation.m_nStateKind = 1;
  }

  /// Calls with tracing on; every line but those about the font.
  std::string traceOf(const std::function<void()>& calls) {
    testing::internal::CaptureStdout();
    iVerbose = 1;
    calls();
    iVerbose = 0;
    std::fflush(stdout);
    std::istringstream all(testing::internal::GetCapturedStdout());
    std::string kept;
    for (std::string line; std::getline(all, line);) {
      if (line.rfind("Font Info:", 0) != 0) kept += line + "\n";
    }
    return kept;
  }
  std::string traceOf(CAnnotation& annotation, double scale = 1.0) {
    return traceOf([&] { annotation.PaintAnnotation(&dc, scale); });
  }

  /// The calls draw just what is expected: in these steps, and with these pixels.
  void expectPaints(const std::function<void()>& calls) {
    std::string wanted = expected.trace();
    if (!wanted.empty() && wanted.back() != '\n') wanted += '\n';
    EXPECT_EQ(traceOf(calls), wanted);
    EXPECT_TRUE(picture.pixels() == expected.picture().pixels()) << "the pictures differ";
  }
  void expectPaints(CAnnotation& annotation, double scale = 1.0) {
    expectPaints([&] { annotation.PaintAnnotation(&dc, scale); });
  }
  void expectPaintsNothing(CAnnotation& annotation) {
    EXPECT_EQ(traceOf(annotation), "");
    EXPECT_TRUE(picture.pixels() == Picture(kWidth, kHeight).pixels());
  }

  CAnnotationSet set;
  Picture picture{kWidth, kHeight};
  Expected expected{kWidth, kHeight};
  CDC dc{picture.image(), picture.info()};

 private:
  struct Tools {
    CPen* pen;
    CBrush* brush;
    unsigned int textColor;
  };
  Tools tools() {
    static CPen other(0, 1, 0);
    Tools now{};
    now.pen = dc.SelectObject(&other);
    dc.SelectObject(now.pen);
    now.brush = dc.SelectObject(static_cast<CBrush*>(nullptr));
    dc.SelectObject(now.brush);
    now.textColor = dc.SetTextColor(0);
    dc.SetTextColor(now.textColor);
    return now;
  }

  Tools atFirst{};
};

}  // namespace ei4::test
