#include "types/cstring.h"

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

// A terminated buffer of its own for `length` bytes, the first `copied` of them taken from `text`.
char* newBuffer(const char* text, std::size_t copied, std::size_t length) {
  char* const buffer = new char[length + 1];
  std::copy_n(text, copied, buffer);
  std::fill(buffer + copied, buffer + length + 1, '\0');
  return buffer;
}

char* newBuffer(const char* text, std::size_t length) { return newBuffer(text, length, length); }

int toCount(std::size_t count) { return static_cast<int>(std::min<std::size_t>(count, INT_MAX)); }

std::size_t toSize(int n) { return static_cast<std::size_t>(std::max(n, 0)); }

}  // namespace

CString::CString() : m_pText(newBuffer("", 0)) {}

CString::CString(const char* text) : m_pText(newBuffer(text, std::strlen(text))) {}

// strnlen: the text behind the first n bytes may be very long, and this is how its words are cut out.
CString::CString(const char* text, int n)
    : m_pText(text == nullptr ? newBuffer("", 0) : newBuffer(text, strnlen(text, toSize(n)))) {}

CString::CString(const CString& other) : CString(other.m_pText) {}

CString& CString::operator=(const CString& other) {
  CString copy(other);
  std::swap(m_pText, copy.m_pText);
  return *this;
}

CString& CString::operator=(CString&& other) noexcept {
  std::swap(m_pText, other.m_pText);
  return *this;
}

CString::~CString() { delete[] m_pText; }

void CString::Adopt(char* buffer) {
  delete[] m_pText;
  m_pText = buffer;
}

void CString::Init() { Adopt(newBuffer("", 0)); }
void CString::Empty() { Init(); }

char* CString::GetBuffer(int n) {
  const std::size_t wanted = toSize(n);
  const std::size_t length = std::strlen(m_pText);
  if (wanted != length) Adopt(newBuffer(m_pText, std::min(wanted, length), wanted));
  return m_pText;
}

int CString::GetLength() const { return toCount(std::strlen(m_pText)); }
int CString::Compare(const char* text) const { return std::strcmp(m_pText, text); }

CString& CString::operator+=(const char* text) {
  if (text == nullptr) return *this;
  const std::size_t length = std::strlen(m_pText);
  const std::size_t added = std::strlen(text);
  char* const joined = newBuffer(m_pText, length, length + added);
  std::copy_n(text, added, joined + length);
  Adopt(joined);  // only now: the text may lie in the old buffer
  return *this;
}

CString& CString::operator+=(char character) {
  const char text[] = {character, '\0'};
  return *this += text;
}

int CString::Replace(char old, char replacement) {
  if (old == replacement || old == '\0') return 0;
  char* const end = m_pText + std::strlen(m_pText);
  const auto found = std::count(m_pText, end, old);
  std::replace(m_pText, end, old, replacement);
  return toCount(static_cast<std::size_t>(found));
}

void CString::TrimLeft() {
  const std::size_t blanks = std::strspn(m_pText, " ");
  if (blanks > 0) Adopt(newBuffer(m_pText + blanks, std::strlen(m_pText + blanks)));
}

void CString::TrimRight() {
  char* end = m_pText + std::strlen(m_pText);
  while (end != m_pText && end[-1] == ' ') *--end = '\0';
}

void CString::Format(const char* format, ...) {
  char result[4000];
  std::va_list arguments;
  va_start(arguments, format);
  const int printed = std::vsnprintf(result, sizeof(result), format, arguments);
  va_end(arguments);
  Adopt(newBuffer(result, printed < 0 ? 0 : std::strlen(result)));
}

void CString::EncodeBuffer_() {
  const auto isEscaped = [](char c) { return c == '"' || c == '\\'; };
  const std::size_t length = std::strlen(m_pText);
  const auto escapes = std::count_if(m_pText, m_pText + length, isEscaped);
  char* const encoded = newBuffer("", 0, length + static_cast<std::size_t>(escapes));
  char* out = encoded;
  for (const char* in = m_pText; *in != '\0'; ++in) {
    if (isEscaped(*in)) *out++ = '\\';
    *out++ = *in;
  }
  Adopt(encoded);
}
