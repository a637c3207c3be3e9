#include "text/scanner.h"

#include "text/character_class.h"

namespace {

using ei4::isBlank;
using ei4::isLineEnd;
using ei4::isWhiteSpace;

// None of the classes holds the zero byte, so that it ends every loop.
char* wordEnd(char* p) {
  while (*p != '\0' && !isWhiteSpace(*p)) ++p;
  return p;
}

char* lineEnd(char* p) {
  while (*p != '\0' && !isLineEnd(*p)) ++p;
  return p;
}

char* nullAtTheEnd(char* p) { return *p == '\0' ? nullptr : p; }

}  // namespace

char* SkipWhiteSpaces(char* p) {
  if (p == nullptr) return nullptr;
  while (isWhiteSpace(*p)) ++p;
  return p;
}

char* SkipWhiteSpacesInLine(char* p) {
  if (p == nullptr) return nullptr;
  while (isBlank(*p)) ++p;
  return p;
}

char* NextWord(char* p) {
  if (p == nullptr) return nullptr;
  return nullAtTheEnd(SkipWhiteSpaces(wordEnd(p)));  // Quirk next-word-crosses-lines
}

char* NextWordInLine(char* p) {
  if (p == nullptr) return nullptr;
  p = SkipWhiteSpacesInLine(wordEnd(p));
  return isLineEnd(*p) ? nullptr : nullAtTheEnd(p);
}

char* NextLine(char* p) {
  if (p == nullptr) return nullptr;
  return nullAtTheEnd(SkipWhiteSpaces(lineEnd(p)));
}

char* SkipCommentLines(char* p) {
  if (p == nullptr) return nullptr;
  p = nullAtTheEnd(SkipWhiteSpaces(p));
  while (p != nullptr && *p == '#') p = NextLine(p);
  return p;
}
