#include "text/string_value.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "types/wrapping.h"

namespace {

// Loops of their own: the checked builds' strspn and strcspn measure the whole text in each call.
std::size_t lengthUpTo(const char* text, char separator) {
  std::size_t length = 0;
  while (text[length] != separator && text[length] != '\0') ++length;
  return length;
}

std::size_t lengthOver(const char* text, const char* characters) {
  std::size_t length = 0;
  while (text[length] != '\0' && std::strchr(characters, text[length]) != nullptr) ++length;
  return length;
}

CString firstOf(const char* text, std::size_t length) {
  return {text, static_cast<int>(std::min<std::size_t>(length, INT_MAX))};
}

// At least one digit; `value` wraps.
template <class UNSIGNED>
bool readDigits(const char*& text, UNSIGNED& value) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (!isDigit(*text)) return false;
  value = 0;
  for (; isDigit(*text); ++text) {
    const auto digit = static_cast<UNSIGNED>(*text - '0');
    value = wrappedSum<UNSIGNED>(wrappedProduct<UNSIGNED>(value, 10), digit);
  }
  return true;
}

bool readSpace(const char*& text) {
  if (*text != ' ') return false;
  ++text;
  return true;
}

void write(char*& out, const char* text) { out = stpcpy(out, text); }

CString intText(int value) {
  CString text;
  text.Format("%d ", value);
  return text;
}

CString stringText(const CString& value) {
  CString text = intText(value.GetLength());
  text += value;
  return text;
}

// "%lf". The library sees no more than the letters that numbers have: of the text itself it would measure all
// that follows, for each number.
bool scanDouble(const char* text, double& value) {
  const char* const start = text + lengthOver(text, " \t\n\v\f\r");
  const std::string number(start, lengthOver(start, "+-.0123456789ABCDEFINPTXYabcdefinptxy"));
  return std::sscanf(number.c_str(), "%lf", &value) == 1;  // NOLINT(cert-err34-c)
}

}  // namespace

bool CStringValue::ReadInt(const char*& text, int& value) {
  const bool isNegative = *text == '-';
  if (isNegative) ++text;
  unsigned int number = 0;
  if (!readDigits(text, number)) return false;
  value = static_cast<int>(number);  // Quirk int-without-its-space
  if (!readSpace(text)) return false;
  if (isNegative) value = static_cast<int>(wrappedDifference<unsigned int>(0, number));
  return true;
}

void CStringValue::WriteInt(CString& out, int value) { out += intText(value); }
void CStringValue::WriteInt(char*& out, int value) { write(out, intText(value)); }

bool CStringValue::ReadDWORD(const char*& text, unsigned long& value) {
  return readDigits(text, value) && readSpace(text);
}

void CStringValue::WriteDWORD(CString& out, unsigned long value) {
  CString text;
  text.Format("%lu ", value);
  out += text;
}

bool CStringValue::ReadChar(const char*& text, char& value) {
  if (*text == '\0') return false;
  value = *text++;
  return true;
}

void CStringValue::WriteChar(CString& out, char value) { out += value; }

void CStringValue::WriteChar(char*& out, char value) {
  *out++ = value;
  *out = '\0';
}

bool CStringValue::ReadString(const char*& text, CString& value) {
  int length = 0;
  if (!ReadInt(text, length) || length < 0) return false;
  const auto wanted = static_cast<std::size_t>(length);
  if (strnlen(text, wanted) < wanted) return false;
  value = CString(text, length);
  text += wanted;
  return true;
}

void CStringValue::WriteString(CString& out, const CString& value) { out += stringText(value); }
void CStringValue::WriteString(char*& out, const CString& value) { write(out, stringText(value)); }

bool CStringValue::ReadWord(const char*& text, CString& value) {
  const std::size_t length = lengthUpTo(text, ' ');
  value = firstOf(text, length);
  if (length == 0) return false;
  text += length + 1;  // Quirk word-steps-over-its-end
  return true;
}

void CStringValue::WriteWord(char*& out, const CString& word) {
  write(out, word);
  write(out, " ");
}

void CStringValue::WriteWord(CString& out, const CString& word) {
  constexpr int kLost =
      ' ';  // Quirk word-loses-32: the space is added to the word's address, not to the word
  if (word.GetLength() > kLost) out += static_cast<const char*>(word) + kLost;
}

bool CStringValue::ReadLine(const char*& text, CString& value) {
  CString line;
  const bool any = text != nullptr && *text != '\0';
  if (any) {
    const std::size_t length = lengthUpTo(text, '\n');
    line = firstOf(text, length);
    text += length;
    if (*text == '\n') ++text;
  }
  value = std::move(line);  // only now: the text may be that of the old value
  return any;
}

bool CStringValue::ReadBOOL(const char*& text, int& value) {
  if (*text != 'y' && *text != 'n') return false;
  value = *text++ == 'y' ? 1 : 0;
  return true;
}

void CStringValue::WriteBOOL(CString& out, int value) { out += value != 0 ? 'y' : 'n'; }

bool CStringValue::ReadDouble(const char*& text, double& value) {
  if (!scanDouble(text, value)) return false;
  text += lengthUpTo(text, ' ');  // Quirk double-skips-from-the-start
  return readSpace(text);
}

void CStringValue::WriteDouble(CString& out, double value) {
  CString text;
  text.Format("%f ", value);
  out += text;
}

long CStringValue::SavedLength(int value) { return intText(value).GetLength(); }
long CStringValue::SavedLength(char) { return 1; }

long CStringValue::SavedLength(const CString& value) {
  const int length = value.GetLength();
  return SavedLength(length) + length;
}

long CStringValue::SavedLengthOfWord(const CString& word) { return word.GetLength() + 1L; }

bool CStringValue::IsEmpty(const char* text) { return *text == '\0'; }
