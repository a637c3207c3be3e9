#include "draw/pen_brush.h"

#include <cstdio>

// Quirk color-takes-leading-digits: a value beyond 24 bits prints seven or eight digits, and the first six count.
void SetColor_(unsigned int colour, char* out) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%6.6x", colour);
  std::snprintf(out, kColorNameBytes, "#%.2s%.2s%.2s", digits + 4, digits + 2, digits);
}

CPen::CPen(int /*style*/, int /*width*/, unsigned int colour) { SetColor_(colour, m_szColor); }

CBrush::CBrush(unsigned int colour) { SetColor_(colour, m_szColor); }
