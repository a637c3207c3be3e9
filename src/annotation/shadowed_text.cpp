#include "annotation/shadowed_text.h"

#include "annotation/paint_style.h"
#include "annotation/selected.h"

namespace {

constexpr long kFontSize = 12;

void drawIn(CDC* dc, const CString& text, CRect place, unsigned int color, unsigned int format) {
  dc->SetTextColor(color);
  dc->DrawText(text, place, format);
}

}  // namespace

void DrawShadowedText(CDC* dc, const CString& text, const CRect& place, unsigned int color,
                      unsigned int format, double scale) {
  CFont font = GetProportionFont(kFontSize, scale);
  const Selected<CFont> selectedFont(dc, &font);
  const unsigned int shadow = GetShadowColor(color);
  const SelectedTextColor selectedColor(dc, shadow);
  drawIn(dc, text, place + CSize(1, 1), shadow, format);
  drawIn(dc, text, place, color, format);
}
