#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

#include "check.h"
#include "text/binary_code.h"
#include "text/hex.h"
#include "text/url_code.h"
#include "text_checks.h"

namespace ei4::fuzz {

namespace {

constexpr char kUntouched = '\x5A';

int digitOf(char c) {
  const std::size_t at = std::string("0123456789abcdefABCDEF").find(c);
  return at == std::string::npos ? -1 : static_cast<int>(at < 16 ? at : at - 6);
}

std::string plainlyDecoded(const std::string& in) {
  std::string out;
  char pairOf = 0;  // the coded line end that the pair at the end of `out` was made from
  const auto at = [&](std::size_t i) { return i < in.size() ? in[i] : '\0'; };
  for (std::size_t i = 0; i < in.size();) {
    if (in[i] == '%' && digitOf(at(i + 1)) >= 0 && digitOf(at(i + 2)) >= 0) {
      const char c = static_cast<char>(digitOf(in[i + 1]) * 16 + digitOf(in[i + 2]));
      i += 3;
      if (c != '\r' && c != '\n') {
        out += c;
        pairOf = 0;
      } else if (pairOf != 0 && pairOf != c) {
        pairOf = 0;
      } else {
        out += "\r\n";
        pairOf = c;
      }
      continue;
    }
    // A percent sign that begins no code takes the characters looked at with it.
    const std::size_t taken = in[i] != '%' ? 1 : digitOf(at(i + 1)) < 0 ? 2 : 3;
    out += in[i] == '+' ? std::string(" ") : in.substr(i, taken);
    pairOf = 0;
    i += taken;
  }
  return out;
}

void checkUrl(const std::string& text) {
  std::vector<char> encoded(3 * text.size() + 1);
  EncodeURL(text.c_str(), encoded.data());
  const std::string code = encoded.data();
  require(std::all_of(code.begin(), code.end(),
                      [](char c) {
                        return std::isalnum(static_cast<unsigned char>(c)) || c == '.' || c == '+' ||
                               c == '%';
                      }),
          "a URL code is one word");
  std::vector<char> decoded(code.size() + 1);
  DecodeURL(code.c_str(), decoded.data());
  if (text.find_first_of("\r\n") == std::string::npos)
    require(text == decoded.data(), "a URL code decodes to its text");

  std::vector<char> out(text.size() + 1, kUntouched);
  DecodeURL(text.c_str(), out.data());
  std::vector<char> wanted(text.size() + 1, kUntouched);
  const std::string plain = plainlyDecoded(text);
  require(plain.size() <= text.size(), "a text does not grow");
  std::copy_n(plain.c_str(), plain.size() + 1, wanted.begin());
  require(out == wanted, "a URL text decodes as the plain reading has it");

  std::vector<char> inPlace(text.c_str(), text.c_str() + text.size() + 1);
  DecodeURL(inPlace.data(), inPlace.data());
  require(std::equal(plain.c_str(), plain.c_str() + plain.size() + 1, inPlace.begin()), "in place, too");
}

void checkBinary(const std::string& bytes) {
  const std::size_t groups = std::max<std::size_t>(1, (bytes.size() + 2) / 3);
  std::vector<char> code(4 * groups + 2);
  require(EncodeBinary(bytes.data(), bytes.size(), code.data()) == 4 * groups + 1,
          "the length of a binary code");
  std::vector<char> back(3 * groups);
  const unsigned long count = DecodeBinary(code.data(), 4 * groups + 1, back.data());
  require(std::string(back.data(), count) == bytes, "a binary code decodes to its bytes");

  const std::size_t whole = bytes.size() / 4;
  std::vector<unsigned char> out(3 * whole);
  const unsigned long got = DecodeBinary(bytes.data(), bytes.size(), out.data());
  const unsigned long filling =
      bytes.size() % 4 == 1 && whole > 0 ? static_cast<unsigned char>(bytes.back()) & 3U : 0;
  require(got == 3 * whole - filling, "the bytes of any binary text");
  for (std::size_t i = 0; i < out.size(); ++i) {
    unsigned bits = 0;  // of the group, character by character
    for (std::size_t c = 0; c < 4; ++c)
      bits += (static_cast<unsigned char>(bytes[i / 3 * 4 + c]) % 64U) << 6 * c;
    require(out[i] == static_cast<unsigned char>(bits >> 8 * (i % 3)), "each byte of a binary text");
  }
}

void checkHex(const std::string& text) {
  std::uint64_t value = 0;
  for (const char c : text) {
    const int digit = digitOf(c);
    require(ByteToHex(static_cast<unsigned char>(c)) == digit, "the value of a digit");
    if (digit < 0) continue;
    require(digitOf(HexToByte(digit)) == digit, "the digit of a value");
    value = value * 16 + static_cast<std::uint64_t>(digit);
  }
  require(StrToHex(text.c_str()) == static_cast<int>(static_cast<std::uint32_t>(value)),
          "a hexadecimal number");
}

}  // namespace

void checkCodes(const std::string& bytes) {
  const std::string text = bytes.substr(0, bytes.find('\0'));
  checkUrl(text);
  checkBinary(bytes);
  checkHex(text);
}

}  // namespace ei4::fuzz
