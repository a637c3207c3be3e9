// CDC: a drawing context over one MagickCore image, with which figures and labels are put on a picture.
//
// Coordinates are pixels from the top left, and may lie anywhere: what falls outside is cut off. Lines and
// outlines are one pixel wide and antialiased. No call fails: what MagickCore cannot draw is left out.
// With iVerbose set (draw/drawing_globals.h), most calls print a line about themselves on standard output.
#pragma once

#include <memory>

#include "draw/pen_brush.h"
#include "types/cstring.h"
#include "types/types.h"

// MagickCore's own types, by their own names, so that its header stays out of this one.
typedef struct _Image Image;          // NOLINT(bugprone-reserved-identifier)
typedef struct _ImageInfo ImageInfo;  // NOLINT(bugprone-reserved-identifier)
typedef struct _DrawInfo DrawInfo;    // NOLINT(bugprone-reserved-identifier)

namespace ei4 {
class Outline;
}

/// Flags for CDC::DrawText. Those of a desktop system that are not here (1, 2, 32, 64 and above) count for nothing.
inline constexpr unsigned int kTextCentered = 4;     ///< in the middle of the rectangle's width
inline constexpr unsigned int kTextMiddle = 8;       ///< in the middle of the rectangle's height
inline constexpr unsigned int kTextLeftOfEdge = 16;  ///< ends at the rectangle's left edge
inline constexpr unsigned int kTextMeasured = 128;   ///< sets the rectangle, draws nothing

class CDC {
 public:
  /// Neither argument is null; the image outlives the context, the info does not have to. Measures the
  /// character cell (FONT_WIDTH, FONT_HEIGHT). Starts at (0, 0) with a black pen, black text and, mind, a black
  /// brush: figures are filled unless a null brush is selected.
  CDC(Image* image, ImageInfo* info);
  virtual ~CDC();
  CDC(const CDC&) = delete;
  CDC& operator=(const CDC&) = delete;

  /// Each returns what was selected before. Pens and brushes stay the caller's and live as long as they are
  /// selected. A null brush leaves figures unfilled; a pen is never null; a font has no effect and null comes back.
  CBrush* SelectObject(CBrush* brush);
  CPen* SelectObject(CPen* pen);
  CFont* SelectObject(CFont* font);

  /// Takes a packed colour (draw/pen_brush.h) and returns the one before.
  unsigned int SetTextColor(unsigned int colour);

  /// Both return the new position. Quirk move-returns-new: not the one before, as elsewhere.
  CPoint MoveTo(int x, int y);
  CPoint MoveTo(tagPOINT point);
  CPoint GetCurrentPosition() const { return m_ptCurrent; }
  CSize GetImageSize() const;  ///< of the picture that is drawn on, pixels

  /// Bounds what is drawn from here on: the figure or text that takes more than what is left of `work`, and all
  /// behind it, are left out wholly or in part, which HasLeftOut then tells. The unit is about a tenth of a
  /// microsecond: a point or a pixel of an outline takes one, a byte of text 150. Without this call nothing is
  /// left out.
  void LimitWork(long work) { m_nWork = work; }
  bool HasLeftOut() const { return m_nWork < 0; }

  /// A line from the current position in the pen's colour; its end becomes current. Of 64-bit coordinates the
  /// low 32 bits are drawn. Returns 1, as do all that draw.
  int LineTo(int x, int y);
  int LineTo(tagPOINT point);

  /// A line through n points in the pen's colour. Nothing is drawn for n < 1, but the call is traced; points may
  /// then be null.
  int Polyline(const tagPOINT* points, int n);

  /// A closed outline in the pen's colour, first filled with the brush if there is one. MagickCore draws none of
  /// fewer than 3 points; they may be null for n < 1, which goes for Polygon_ too.
  int Polygon(const tagPOINT* points, int n);

  /// A closed outline in a colour of its own ("#rrggbb", never null), filled with it when `fill` is non-zero.
  int Polygon_(const tagPOINT* points, int n, const char* colour, int fill);

  /// A rectangle (never null) as Polygon draws it, with 2 pixels cut off each corner whatever `corner` says.
  int RoundRect(const tagRECT* rect, CPoint corner);

  /// An ellipse in the rectangle, outlined with the pen, filled with the brush if there is one, turned clockwise
  /// about its centre by `angle` degrees. Centre and radii are halves truncated toward zero. Nothing when a
  /// radius is negative; the time goes with the radii. The rectangle is never null; low 32 bits of its edges.
  int Ellipse(int l, int t, int r, int b, double angle);
  int Ellipse(const tagRECT* rect, double angle);

  /// Text in the text colour, its baseline beginning at (x, y); line feeds begin further lines below it. Text
  /// that begins left of the picture is moved right by whole cells until it begins inside, if that is possible
  /// within its length. Quirk shifted-text-is-whole: it keeps its first characters although it has been moved.
  int TextOut(int x, int y, const CString& text);

  /// Places a text of FONT_WIDTH * length by FONT_HEIGHT pixels by the flags above and draws it with TextOut at
  /// the rectangle's (left, bottom). `rect`, never null, becomes the text's place as far as the flags set it:
  /// without kTextMiddle its top and bottom stay. Sums wrap. Returns its height, low 32 bits.
  int DrawText(const CString& text, tagRECT* rect, unsigned int format);

  /// Draws one MVG primitive, unfilled, in a colour ("#rrggbb", never null). The primitive begins with a fixed
  /// word and holds numbers, never a text from outside: MagickCore would act upon it.
  int DrawPrimitive(const CString& primitive, const char* colour);

 private:
  struct Free {
    void operator()(DrawInfo* info) const noexcept;
  };

  static constexpr double kTextStrokeWidth = 0.01;  ///< between texts; nothing is stroked

  void MeasureCell();
  bool TakeWork(long work);  ///< false when there was not as much left
  /// An outline of the primitive, when there is one, saves the library the work, which else takes libraryWork.
  int Stroke(const char* primitive, const char* colour, ei4::Outline* outline, long libraryWork);
  void StrokeAndFill(const char* primitive, const char* stroke, const char* fill, ei4::Outline* outline,
                     long libraryWork);
  void AnnotateLines(long x, long y, const char* text);

  CBrush m_defaultBrush;
  CPen m_defaultPen;
  unsigned int m_nTextColor;
  CBrush* m_pBrush;  ///< null: figures are not filled
  CPen* m_pPen;      ///< never null
  char m_szTextColor[kColorNameBytes];
  Image* m_pImage;
  std::unique_ptr<DrawInfo, Free> m_pDrawInfo;
  CPoint m_ptCurrent;
  long m_nLineHeight;  ///< pixels from one line of a text to the next
  long m_nWork;        ///< that may still be done; below 0 once something has been left out
};
