#include "text/extract.h"

#include <algorithm>
#include <climits>
#include <cstddef>

#include "text/character_class.h"
#include "text/scanner.h"

namespace {

using ei4::isLineEnd;
using ei4::isWhiteSpace;

CString copyOf(const char* begin, const char* end) {
  return {begin, static_cast<int>(std::min<std::ptrdiff_t>(end - begin, INT_MAX))};
}

const char* lineEnd(const char* p) {
  while (*p != '\0' && !isLineEnd(*p)) ++p;
  return p;
}

// The value behind "# name:" when that is how the line begins; null otherwise.
char* valueInComment(char* line, const char* name) {
  if (*line != '#') return nullptr;
  char* p = SkipWhiteSpacesInLine(line + 1);
  for (; *name != '\0'; ++name, ++p) {
    if (*p != *name) return nullptr;  // also where the text ends
  }
  return *p == ':' ? SkipWhiteSpacesInLine(p + 1) : nullptr;
}

}  // namespace

CString GetWord(const char* p) {
  if (p == nullptr) return {};
  const char* end = p;
  while (*end != '\0' && !isWhiteSpace(*end)) ++end;
  return copyOf(p, end);
}

CString GetLine(const char* p) {
  if (p == nullptr) return {};
  return copyOf(p, lineEnd(p));
}

CString GetPureLine(const char* p) {
  if (p == nullptr) return {};
  const char* end = std::find(p, lineEnd(p), '#');
  while (p != end && isWhiteSpace(*p)) ++p;
  while (p != end && isWhiteSpace(end[-1])) --end;
  return copyOf(p, end);
}

CString GetCommentField(char* text, const char* name, char** next) {
  if (next != nullptr) *next = nullptr;
  for (char* line = SkipWhiteSpaces(text); line != nullptr; line = NextLine(line)) {
    char* value = valueInComment(line, name);
    if (value == nullptr) continue;
    if (next != nullptr) *next = NextLine(value);
    return GetLine(value);
  }
  return {};
}
