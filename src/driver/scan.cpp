#include "driver/scan.h"

#include <cstdio>
#include <cstdlib>

namespace ei4 {

namespace {

// Base 10, where strtol takes and refuses what "%ld" does, but says what happens beyond long.
// Moves `text` behind the number.
bool takeLong(const char*& text, long& value) {
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  if (end == text) return false;
  text = end;
  value = number;
  return true;
}

}  // namespace

bool scanInt(const char* text, int& value) {
  long number = 0;
  if (text == nullptr || !takeLong(text, number)) return false;
  value = static_cast<int>(number);  // Quirk wide-int-keeps-low-word
  return true;
}

bool scanFloat(const char* text, float& value) {
  // strtof would not do: it takes the "inf" of "infi" and the 0 of "0x", where a scan finds no number.
  return text != nullptr && std::sscanf(text, "%f", &value) == 1;  // NOLINT(cert-err34-c)
}

bool scanGeometry(const char* text, CSize& size) {
  if (text == nullptr || !takeLong(text, size.cx)) return false;
  const char separator = *text;
  if (separator == '\0') return false;
  ++text;
  return takeLong(text, size.cy) && separator == 'x';
}

}  // namespace ei4
