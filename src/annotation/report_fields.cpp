#include "annotation/report_fields.h"

#include <cstdlib>

#include "text/extract.h"
#include "text/hex.h"
#include "text/scanner.h"
#include "text/url_code.h"

int ReportFields::TakeInt() { return static_cast<int>(std::strtol(TakeWord(), nullptr, 10)); }
unsigned int ReportFields::TakeColor() { return static_cast<unsigned int>(StrToHex(TakeWord())); }
double ReportFields::TakeReal() { return std::strtod(TakeWord(), nullptr); }
CPoint ReportFields::TakePoint() { return {TakeInt(), TakeInt()}; }

CString ReportFields::TakeWord() {
  char* const word = Rest();
  if (word == nullptr) {
    m_bMissing = true;
    return {};
  }
  CString copy = GetWord(word);
  m_pEnd = word + copy.GetLength();
  return copy;
}

CString ReportFields::TakeText() {
  CString text = TakeWord();
  DecodeURL(text, text.GetBuffer());
  return text;
}

bool ReportFields::MoreOnLine() const {
  return NextWordInLine(m_pEnd) != nullptr;  // from behind the word: what is left of it is empty
}

char* ReportFields::Rest() {
  m_pEnd = SkipWhiteSpaces(m_pEnd);
  return m_pEnd == nullptr || *m_pEnd == '\0' ? nullptr : m_pEnd;
}
