// The fields of one report line, taken word by word from the text.
#pragma once

#include "types/cstring.h"
#include "types/types.h"

/// A field that is missing, because the text ends, reads as 0 or as an empty text, and so do all behind it. Each
/// costs its own length. Quirk fields-cross-lines: a line that has too few fields takes them from the lines
/// below it, whatever these are.
class ReportFields {
 public:
  /// text  zero-terminated, not changed, must outlive this object; null counts as empty.
  explicit ReportFields(char* text) : m_pEnd(text) {}

  int TakeInt();  ///< decimal, low 32 bits; 0 for what is no number
  unsigned int TakeColor();
  double TakeReal();  ///< 0 for what is no number
  CPoint TakePoint();
  CString TakeWord();
  CString TakeText();  ///< URL-decoded

  bool Missing() const { return m_bMissing; }  ///< has a field been asked for in vain?
  bool MoreOnLine() const;                     ///< does another one follow on the line of the last one?
  char* Rest();                                ///< where the next one begins, null when there is none
  const char* End() const { return m_pEnd; }   ///< how far the text has been looked at; null for a null text

 private:
  char* m_pEnd;  ///< behind the last field
  bool m_bMissing = false;
};
