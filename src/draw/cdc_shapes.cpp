#include <magick/MagickCore.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <span>
#include <string>

#include "draw/cdc.h"
#include "draw/drawing_globals.h"
#include "draw/magick_owners.h"
#include "draw/outline.h"
#include "draw/outline_painter.h"
#include "types/wrapping.h"

namespace {

constexpr double kLineWidth = 1.0;
const char* const kNoColor = "none";

// A buffer that holds each primitive of a fixed number of numbers, however long they print.
using Primitive = std::array<char, 256>;

// "word x y x y ... ", in time that grows with n alone.
std::string pointList(const char* word, const tagPOINT* points, int n) {
  std::string list(word);
  for (int i = 0; i < n; ++i) {
    list += std::to_string(points[i].x);
    list += ' ';
    list += std::to_string(points[i].y);
    list += ' ';
  }
  return list;
}

ei4::Outline* orNull(std::optional<ei4::Outline>& outline) { return outline ? &*outline : nullptr; }

// What figures take, in units of LimitWork: each, and each that is left to the library.
constexpr long kFigureWork = 150;
constexpr long kLibraryWork = 2000;

// What points take the library on top of that.
long workOfLibrary(std::span<const tagPOINT> points, tagSIZE picture) {
  constexpr double kQuestionsOfAUnit = 25;
  return static_cast<long>(ei4::libraryQuestions(points, picture) / kQuestionsOfAUnit);
}

int halfOfSum(int a, int b) { return low32(long{a} + b) / 2; }
int halfOfDifference(int a, int b) { return low32(long{a} - b) / 2; }

}  // namespace

void CDC::StrokeAndFill(const char* primitive, const char* stroke, const char* fill, ei4::Outline* outline,
                        long libraryWork) {
  if (!TakeWork(kFigureWork + (outline != nullptr ? outline->pointCount() : 0))) return;
  const ei4::OwnedException exception(AcquireExceptionInfo());
  DrawInfo& info = *m_pDrawInfo;
  // The library only reads it: DrawImage works on a copy.
  const ei4::Lent lent(info.primitive, const_cast<char*>(primitive));
  info.stroke_width = kLineWidth;
  QueryColorDatabase(stroke, &info.stroke, exception.get());
  QueryColorDatabase(fill, &info.fill, exception.get());
  if (outline != nullptr && ei4::paintOutline(*m_pImage, info, *outline, m_nWork)) return;
  if (TakeWork(kLibraryWork + libraryWork)) DrawImage(m_pImage, &info);
}

int CDC::DrawPrimitive(const CString& primitive, const char* colour) {
  return Stroke(primitive, colour, nullptr, 0);
}

int CDC::Stroke(const char* primitive, const char* colour, ei4::Outline* outline, long libraryWork) {
  // Quirk trace-misspelt: readers of traces know the line by this word.
  if (iVerbose != 0) std::printf("Draing Primitive: '%s'\n", primitive);
  StrokeAndFill(primitive, colour, kNoColor, outline, libraryWork);
  return 1;
}

int CDC::LineTo(int x, int y) {
  const int x1 = low32(m_ptCurrent.x);
  const int y1 = low32(m_ptCurrent.y);
  m_ptCurrent = CPoint(x, y);
  if (HasLeftOut()) return 1;
  Primitive text{};
  std::snprintf(text.data(), text.size(), "line %d %d %d %d", x1, y1, x, y);
  auto outline = ei4::Outline::line(x1, y1, x, y);
  Stroke(text.data(), m_pPen->GetColorName(), orNull(outline), 0);
  if (iVerbose != 0) std::printf("LineTo %d %d\n", x, y);
  return 1;
}

int CDC::LineTo(tagPOINT point) { return LineTo(low32(point.x), low32(point.y)); }

int CDC::Polyline(const tagPOINT* points, int n) {
  if (HasLeftOut()) return 1;
  const std::span all(points, static_cast<std::size_t>(std::max(n, 0)));
  auto outline = ei4::Outline::polyline(all);
  return Stroke(pointList("polyline ", points, n).c_str(), m_pPen->GetColorName(), orNull(outline),
                workOfLibrary(all, GetImageSize()));
}

int CDC::Polygon_(const tagPOINT* points, int n, const char* colour, int fill) {
  if (iVerbose != 0) std::printf("Polygon_");  // Quirk trace-without-line-end
  if (n < 1 || HasLeftOut()) return 1;
  std::optional<ei4::Outline> outline;
  const std::span all(points, static_cast<std::size_t>(n));
  if (fill == 0) outline = ei4::Outline::polygon(all, GetImageSize());
  StrokeAndFill(pointList("polygon ", points, n).c_str(), colour, fill != 0 ? colour : kNoColor,
                orNull(outline), workOfLibrary(all, GetImageSize()));
  return 1;
}

int CDC::Polygon(const tagPOINT* points, int n) {
  if (m_pBrush != nullptr) Polygon_(points, n, m_pBrush->GetColorName(), 1);
  return Polygon_(points, n, m_pPen->GetColorName(), 0);
}

int CDC::RoundRect(const tagRECT* rect, CPoint corner) {
  const long l = rect->left;
  const long t = rect->top;
  const long r = rect->right;
  const long b = rect->bottom;
  if (iVerbose != 0) std::printf("RoundRect %ld %ld %ld %ld, %ld %ld\n", l, t, r, b, corner.x, corner.y);

  // Quirk corners-cut-by-2: whatever the corner's size.
  constexpr long kCut = 2;
  const long nearLeft = wrappingAdd(l, kCut);
  const long nearTop = wrappingAdd(t, kCut);
  const long nearRight = wrappingSubtract(r, kCut);
  const long nearBottom = wrappingSubtract(b, kCut);
  const std::array<tagPOINT, 8> outline{{{r, nearTop},
                                         {nearRight, t},
                                         {nearLeft, t},
                                         {l, nearTop},
                                         {l, nearBottom},
                                         {nearLeft, b},
                                         {nearRight, b},
                                         {r, nearBottom}}};
  return Polygon(outline.data(), outline.size());
}

int CDC::Ellipse(int l, int t, int r, int b, double angle) {
  if (iVerbose != 0) std::printf("Ellipse %d %d %d %d\n", l, t, r, b);
  const int cx = halfOfSum(l, r);
  const int cy = halfOfSum(t, b);
  const int rx = halfOfDifference(r, l);
  const int ry = halfOfDifference(b, t);

  Primitive text{};
  if (angle != 0.0) {
    std::snprintf(
        text.data(), text.size(),
        "push graphic-context translate %d,%d rotate %g ellipse 0,0,%d,%d,0,360 pop graphic-context", cx, cy,
        angle, rx, ry);
  } else {
    std::snprintf(text.data(), text.size(), "ellipse %d %d %d %d 0 360", cx, cy, rx, ry);
  }

  const char* stroke = m_pPen->GetColorName();
  const char* fill = m_pBrush != nullptr ? m_pBrush->GetColorName() : kNoColor;
  if (iVerbose != 0) {
    std::printf("Primitive: %s\n", text.data());
    std::printf("Pen color: %s\n", stroke);
    std::printf("Brush color: %s\n", fill);
  }
  if (HasLeftOut()) return 1;
  std::optional<ei4::Outline> outline;
  if (angle == 0.0 && m_pBrush == nullptr) outline = ei4::Outline::ellipse(cx, cy, rx, ry);
  constexpr long kWorkOfAPixelOfRadius = 100;
  StrokeAndFill(text.data(), stroke, fill, orNull(outline),
                rx > 0 && ry > 0 ? kWorkOfAPixelOfRadius * std::max(rx, ry) : 0);
  return 1;
}

int CDC::Ellipse(const tagRECT* rect, double angle) {
  return Ellipse(low32(rect->left), low32(rect->top), low32(rect->right), low32(rect->bottom), angle);
}
