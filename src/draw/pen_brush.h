// What is selected into a drawing context: pens, brushes, fonts. Colours are packed values with red in the low
// byte, green above it, blue above that: 0x0000FF is red.
#pragma once

/// A colour as MagickCore reads it: "#rrggbb", six lower-case hex digits, and its terminator.
inline constexpr int kColorNameBytes = 8;

/// Writes the name of `colour` to `out`, which has room for kColorNameBytes. Of a value beyond 24 bits the six
/// leading hex digits count: 0x12345678 is "#563412", as 0x123456 is.
void SetColor_(unsigned int colour, char* out);

/// The colour of lines and outlines.
class CPen {
 public:
  /// Style and width mean nothing: every line is solid and one pixel wide.
  CPen(int style, int width, unsigned int colour);

  const char* GetColorName() const { return m_szColor; }  ///< "#rrggbb", never null

 private:
  char m_szColor[kColorNameBytes];
};

/// The colour that figures are filled with.
class CBrush {
 public:
  explicit CBrush(unsigned int colour);

  const char* GetColorName() const { return m_szColor; }  ///< "#rrggbb", never null

 private:
  char m_szColor[kColorNameBytes];
};

/// Stands for a font where one is asked for. It describes none: all text is in the drawing context's own face.
class CFont {};
