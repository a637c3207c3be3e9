#include "terminal/shown.h"

#include <array>
#include <cstdint>

namespace ei4::tools {

namespace {

// Bytes of the character that `text` starts with; 0 when it is a control character or no UTF-8.
std::size_t printableLength(std::string_view text) {
  const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byteAt(0);
  if (lead < 0x80) return lead >= 0x20 && lead != 0x7F ? 1 : 0;
  const std::size_t length = lead >= 0xF0 ? 4 : (lead >= 0xE0 ? 3 : 2);
  if (lead < 0xC0 || lead > 0xF7 || text.size() < length) return 0;
  std::uint32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80) return 0;
    code = code << 6U | (byteAt(i) & 0x3FU);
  }
  // The least code of 2, 3 and 4 bytes. The C1 controls lie below.
  constexpr std::array<std::uint32_t, 3> kLeast = {0xA0, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code >= kLeast[length - 2] && code <= 0x10FFFF && !isSurrogate ? length : 0;
}

}  // namespace

std::string shown(std::string_view name) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < name.size();) {
    const std::size_t length = name[i] == '\\' ? 0 : printableLength(name.substr(i));
    if (length > 0) {
      text += name.substr(i, length);
      i += length;
    } else {
      const auto byte = static_cast<unsigned char>(name[i++]);
      text += "\\x";
      text += digits[byte >> 4U];
      text += digits[byte & 15U];
    }
  }
  return text;
}

}  // namespace ei4::tools
