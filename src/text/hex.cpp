#include "text/hex.h"

#include <cstdint>

int ByteToHex(unsigned char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const int lower = digit | 0x20;  // maps no other character to a letter
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

char HexToByte(int value) { return "0123456789abcdef"[value & 15]; }

int StrToHex(const char* text) {
  if (text == nullptr) return 0;
  std::uint32_t value = 0;
  for (; *text != '\0'; ++text) {
    const int digit = ByteToHex(static_cast<unsigned char>(*text));
    if (digit < 0) continue;                                 // Quirk hex-skips-non-digits
    value = value << 4 | static_cast<std::uint32_t>(digit);  // the last eight digits stay
  }
  return static_cast<int>(value);
}
