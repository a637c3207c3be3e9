#include "draw/cdc.h"

#include <magick/MagickCore.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <new>
#include <utility>

#include "draw/drawing_globals.h"
#include "draw/magick_owners.h"
#include "draw/text_face.h"

namespace {

constexpr double kPointSize = 12.0;

void clear(char*& text) {
  if (text != nullptr) text = DestroyString(text);
}

}  // namespace

void CDC::Free::operator()(DrawInfo* info) const noexcept { DestroyDrawInfo(info); }

CDC::CDC(Image* image, ImageInfo* info)
    : m_defaultBrush(0),
      m_defaultPen(0, 1, 0),
      m_nTextColor(0),
      m_pBrush(&m_defaultBrush),
      m_pPen(&m_defaultPen),
      m_szTextColor{},
      m_pImage(image),
      m_pDrawInfo(CloneDrawInfo(info, nullptr)),
      m_ptCurrent(0, 0),
      m_nLineHeight(static_cast<long>(kPointSize)),
      m_nWork(std::numeric_limits<long>::max()) {
  if (!m_pDrawInfo) throw std::bad_alloc();
  clear(m_pDrawInfo->primitive);
  clear(m_pDrawInfo->text);
  clear(m_pDrawInfo->geometry);
  CloneString(&m_pDrawInfo->font, FONT_NAME);
  m_pDrawInfo->pointsize = kPointSize;
  m_pDrawInfo->stroke_width = kTextStrokeWidth;
  MeasureCell();
  SetTextColor(0);
}

CDC::~CDC() = default;

void CDC::MeasureCell() {
  char text[] = "Q";
  TypeMetric metrics{};
  {
    const ei4::TextFace face(*m_pDrawInfo);
    const ei4::Lent lent(m_pDrawInfo->text, text);
    GetMultilineTypeMetrics(m_pImage, m_pDrawInfo.get(), &metrics);
  }
  FONT_WIDTH = static_cast<long>(std::ceil(metrics.bounds.x2 - metrics.bounds.x1));
  FONT_HEIGHT = static_cast<long>(std::ceil(metrics.bounds.y2 - metrics.bounds.y1));
  const auto height = static_cast<long>(std::floor(metrics.ascent - metrics.descent + 0.5));
  if (height > 0) m_nLineHeight = height;
}

bool CDC::TakeWork(long work) {
  if (HasLeftOut()) return false;
  m_nWork = work <= m_nWork ? m_nWork - work : -1;
  return !HasLeftOut();
}

CBrush* CDC::SelectObject(CBrush* brush) { return std::exchange(m_pBrush, brush); }

CPen* CDC::SelectObject(CPen* pen) { return std::exchange(m_pPen, pen); }

CFont* CDC::SelectObject(CFont* /*font*/) { return nullptr; }

unsigned int CDC::SetTextColor(unsigned int colour) {
  SetColor_(colour, m_szTextColor);
  return std::exchange(m_nTextColor, colour);
}

// Quirk move-returns-new
CPoint CDC::MoveTo(int x, int y) {
  m_ptCurrent = CPoint(x, y);
  if (iVerbose != 0) std::printf("MoveTo-int %d %d\n", x, y);
  return m_ptCurrent;
}

CPoint CDC::MoveTo(tagPOINT point) {
  m_ptCurrent = point;
  if (iVerbose != 0) std::printf("MoveTo-point %ld %ld\n", point.x, point.y);
  return m_ptCurrent;
}

CSize CDC::GetImageSize() const {
  return tagSIZE{static_cast<long>(m_pImage->columns), static_cast<long>(m_pImage->rows)};
}
