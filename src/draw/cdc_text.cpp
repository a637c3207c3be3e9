#include <magick/MagickCore.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "draw/cdc.h"
#include "draw/drawing_globals.h"
#include "draw/magick_owners.h"
#include "draw/text_face.h"
#include "draw/text_lines.h"
#include "types/clamping.h"
#include "types/wrapping.h"

namespace {

// No glyph reaches further than this from the point where it is placed, pixels: four times the point size.
constexpr long kReach = 48;

// The most that is drawn of one text, bytes: what runs out of every picture costs time all the same.
constexpr std::size_t kLongestText = 4000;

// What a line of text takes, in units of LimitWork: the font is opened for it.
long workOf(std::string_view line) { return 1500 + 150 * static_cast<long>(line.size()); }

// Where something of this extent begins when it is centred between two edges.
long centred(long from, long to, long extent) {
  return wrappingSubtract(wrappingAdd(from, to) / 2, extent / 2);
}

const char* printable(const char* text) { return text != nullptr ? text : "(null)"; }

void traceFont(const DrawInfo& info) {
  std::printf(
      "Font Info: Face: %lu Font: %s Metrics: %s Family: %s Weight: %lu PointSize: %g StrokeWidth: %g\n",
      info.face, printable(info.font), printable(info.metrics), printable(info.family), info.weight,
      info.pointsize, info.stroke_width);
}

}  // namespace

int CDC::TextOut(int x, int y, const CString& text) {
  const char* const whole = text;
  long left = x;
  long hidden = 0;
  if (x < 0 && FONT_WIDTH > 0) {
    const long cells = (FONT_WIDTH - 1 - left) / FONT_WIDTH;
    if (cells < text.GetLength()) {
      // Quirk shifted-text-is-whole: the characters that make room are missing from the trace only.
      left += cells * FONT_WIDTH;
      hidden = cells;
    }
  }
  if (iVerbose != 0) std::printf("TextOut-string %ld %d %s\n", left, y, whole + hidden);

  const ei4::OwnedException exception(AcquireExceptionInfo());
  DrawInfo& info = *m_pDrawInfo;
  info.stroke_width = kTextStrokeWidth;
  QueryColorDatabase("none", &info.stroke, exception.get());
  QueryColorDatabase(m_szTextColor, &info.fill, exception.get());
  AnnotateLines(left, y, whole);
  return 1;
}

// MagickCore could be given the text as a whole, but it opens the font anew for each line, one that lies
// outside the picture as well, and a label may have come with thousands of them.
void CDC::AnnotateLines(long x, long y, const char* text) {
  const auto columns = static_cast<long>(m_pImage->columns);
  const auto rows = static_cast<long>(m_pImage->rows);
  DrawInfo& info = *m_pDrawInfo;
  const ei4::TextFace face(info);

  long baseline = y;
  for (const std::string_view line : ei4::textLines(ei4::boundedText(text, kLongestText))) {
    const long farthest = x + kReach * (static_cast<long>(line.size()) + 1);
    if (!line.empty() && baseline >= -kReach && baseline <= rows + kReach && x <= columns + kReach &&
        farthest >= 0) {
      if (!TakeWork(workOf(line))) return;
      std::string content(line);
      std::array<char, 64> geometry{};
      std::snprintf(geometry.data(), geometry.size(), "+%ld+%ld", x, baseline);
      const ei4::Lent lentText(info.text, content.data());
      const ei4::Lent lentGeometry(info.geometry, geometry.data());
      AnnotateImage(m_pImage, &info);
    }
    baseline += m_nLineHeight;
  }
}

int CDC::DrawText(const CString& text, tagRECT* rect, unsigned int format) {
  const long width = text.GetLength() * FONT_WIDTH;
  const long height = FONT_HEIGHT;
  const bool measureOnly = (format & kTextMeasured) != 0;
  if (measureOnly) {
    *rect = {0, 0, width, height};
  } else {
    if ((format & kTextCentered) != 0) {
      rect->left = centred(rect->left, rect->right, width);
      rect->right = wrappingAdd(rect->left, width);
    }
    if ((format & kTextMiddle) != 0) {
      rect->top = centred(rect->top, rect->bottom, height);
      rect->bottom = wrappingAdd(rect->top, height);
    }
    if ((format & kTextLeftOfEdge) != 0) {
      rect->right = rect->left;
      rect->left = wrappingSubtract(rect->left, width);
    }
  }

  if (iVerbose != 0) {
    std::printf("DrawText-%s %ld %ld \"%s\"\n", measureOnly ? "calc" : "draw",
                measureOnly ? width : rect->left, measureOnly ? height : rect->bottom,
                static_cast<const char*>(text));
    traceFont(*m_pDrawInfo);
  }
  if (!measureOnly) TextOut(clampedToInt(rect->left), clampedToInt(rect->bottom), text);
  return low32(wrappingSubtract(rect->bottom, rect->top));
}
