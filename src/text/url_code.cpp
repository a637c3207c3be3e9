#include "text/url_code.h"

#include "text/hex.h"

namespace {

bool standsForItself(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.';
}

// Writes decoded text. What it has written never overtakes what was read, so that both may share a buffer.
class DecodedText {
 public:
  explicit DecodedText(char* out) : m_out(out) {}

  void put(char c) {
    *m_out++ = c;
    m_lastLineEnd = kNone;
  }

  // A byte that was written as "%" and two digits.
  void putDecoded(char c) {
    if (c != '\r' && c != '\n') return put(c);
    // Quirk url-line-ends: the other half of an encoded pair has already written both.
    const bool completesPair = m_lastLineEnd != kNone && m_lastLineEnd != c;
    if (completesPair) {
      m_lastLineEnd = kNone;
      return;
    }
    put('\r');
    put('\n');
    m_lastLineEnd = c;
  }

  void terminate() { *m_out = '\0'; }

 private:
  static constexpr char kNone = '\0';

  char* m_out;
  char m_lastLineEnd = kNone;  // what the pair written just now was made from
};

int digitAt(const char* p) { return ByteToHex(static_cast<unsigned char>(*p)); }

}  // namespace

void EncodeURL(const char* in, char* out) {
  for (; *in != '\0'; ++in) {
    if (standsForItself(*in)) {
      *out++ = *in;
    } else if (*in == ' ') {
      *out++ = '+';
    } else {
      const int byte = static_cast<unsigned char>(*in);
      *out++ = '%';
      *out++ = HexToByte(byte >> 4);
      *out++ = HexToByte(byte);
    }
  }
  *out = '\0';
}

void DecodeURL(const char* in, char* out) {
  DecodedText text(out);
  while (*in != '\0') {
    const char c = *in++;
    if (c != '%') {
      text.put(c == '+' ? ' ' : c);
      continue;
    }
    const int high = digitAt(in);
    const int low = high < 0 ? -1 : digitAt(in + 1);  // a digit is no zero byte: the text goes on behind it
    if (low >= 0) {
      text.putDecoded(static_cast<char>(high * 16 + low));
      in += 2;
      continue;
    }
    // No code: the characters looked at stay as they are, a "%" or "+" among them too. The zero byte is left
    // for the loop to find.
    text.put(c);
    if (high >= 0) text.put(*in++);
    if (*in != '\0') text.put(*in++);
  }
  text.terminate();
}
