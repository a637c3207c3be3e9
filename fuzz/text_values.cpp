#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "check.h"
#include "text/string_value.h"
#include "text_checks.h"

namespace ei4::fuzz {

namespace {

/// What a reader left behind.
struct Outcome {
  bool read;
  std::size_t end;  // position
};

/// Calls a reader from `start` on, on a copy whose end a sanitizer sees.
template <class Reader, class Value>
Outcome outcomeOf(Reader reader, const std::string& text, std::size_t start, Value& value) {
  const std::vector<char> exact(text.c_str() + start, text.c_str() + text.size() + 1);
  const char* at = exact.data();
  const bool read = reader(at, value);
  return {read, start + static_cast<std::size_t>(at - exact.data())};
}

std::size_t digitsEnd(const std::string& text, std::size_t at) {
  const std::size_t end = text.find_first_not_of("0123456789", at);
  return end == std::string::npos ? text.size() : end;
}

std::uint64_t wrappedNumber(const std::string& digits) {
  std::uint64_t value = 0;
  for (const char c : digits) value = value * 10 + static_cast<std::uint64_t>(c - '0');
  return value;
}

void checkInt(const std::string& text, std::size_t start) {
  int value = 7;
  const Outcome got = outcomeOf(CStringValue::ReadInt, text, start, value);
  const bool minus = start < text.size() && text[start] == '-';
  const std::size_t first = start + (minus ? 1 : 0);
  const std::size_t end = digitsEnd(text, first);
  const bool digits = end > first;
  const bool complete = digits && end < text.size() && text[end] == ' ';
  const auto number = static_cast<std::uint32_t>(wrappedNumber(text.substr(first, end - first)));
  require(got.read == complete && got.end == end + (complete ? 1 : 0), "where an int ends");
  require(value == (!digits ? 7 : static_cast<int>(complete && minus ? 0 - number : number)), "an int");

  unsigned long wide = 7;
  const Outcome unsignedGot = outcomeOf(CStringValue::ReadDWORD, text, start, wide);
  const std::size_t wideEnd = digitsEnd(text, start);
  const bool wideComplete = wideEnd > start && wideEnd < text.size() && text[wideEnd] == ' ';
  require(unsignedGot.read == wideComplete && unsignedGot.end == wideEnd + (wideComplete ? 1 : 0),
          "where a number ends");
  require(wide == (wideEnd > start ? wrappedNumber(text.substr(start, wideEnd - start)) : 7), "a number");
}

void checkTexts(const std::string& text, std::size_t start) {
  CString value("before");
  const Outcome word = outcomeOf(CStringValue::ReadWord, text, start, value);
  const std::string wanted = text.substr(start, text.find(' ', start) - start);
  require(wanted == static_cast<const char*>(value) && word.read == !wanted.empty(), "a word");
  require(word.end == start + (wanted.empty() ? 0 : wanted.size() + 1), "a word steps over its end");

  const Outcome line = outcomeOf(CStringValue::ReadLine, text, start, value);
  const std::size_t feed = text.find('\n', start);
  require(line.read == (start < text.size()) &&
              text.substr(start, feed - start) == static_cast<const char*>(value),
          "a line");
  require(line.end == (feed == std::string::npos ? text.size() : feed + 1), "where a line ends");

  const Outcome string = outcomeOf(CStringValue::ReadString, text, start, value);
  require(string.end <= text.size(), "a counted string stays within the text");
  require(!string.read || text.substr(0, string.end).ends_with(static_cast<const char*>(value)),
          "a counted string");

  int flag = 7;
  const Outcome yes = outcomeOf(CStringValue::ReadBOOL, text, start, flag);
  const char c = start < text.size() ? text[start] : '\0';
  require(yes.read == (c == 'y' || c == 'n') && flag == (c == 'y' ? 1 : c == 'n' ? 0 : 7), "yes or no");
}

void checkDouble(const std::string& text, std::size_t start) {
  double value = 7;
  double wanted = 7;
  const Outcome got = outcomeOf(CStringValue::ReadDouble, text, start, value);
  const bool scanned = std::sscanf(text.c_str() + start, "%lf", &wanted) == 1;  // NOLINT(cert-err34-c)
  const std::size_t space = text.find(' ', start);
  require(std::isnan(wanted) ? std::isnan(value) : value == wanted, "a number as sscanf reads it");
  require(got.read == (scanned && space != std::string::npos), "a number needs a space behind it");
  require(!scanned || got.end == (space == std::string::npos ? text.size() : space + 1),
          "where a number ends");
}

void checkWriters(std::int64_t number, const std::string& text) {
  const auto narrow = static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(number)));
  CString out;
  CStringValue::WriteInt(out, narrow);
  require(CStringValue::SavedLength(narrow) == out.GetLength(), "the length of a written int");
  const long before = out.GetLength();
  CStringValue::WriteString(out, text.c_str());
  require(CStringValue::SavedLength(CString(text.c_str())) == out.GetLength() - before,
          "the length of a written string");
  CStringValue::WriteDWORD(out, static_cast<unsigned long>(number));
  CStringValue::WriteBOOL(out, narrow & 1);

  const char* at = out;
  int readInt = 0;
  CString readText;
  unsigned long readWide = 0;
  int readFlag = 0;
  require(CStringValue::ReadInt(at, readInt) && readInt == narrow, "a written int is read back");
  require(CStringValue::ReadString(at, readText) && text == static_cast<const char*>(readText),
          "a written string, too");
  require(CStringValue::ReadDWORD(at, readWide) && readWide == static_cast<unsigned long>(number),
          "a written number, too");
  require(CStringValue::ReadBOOL(at, readFlag) && readFlag == (narrow & 1), "a written flag, too");
  require(CStringValue::IsEmpty(at), "nothing else was written");
}

}  // namespace

void checkValues(std::int64_t number, const std::string& text) {
  for (std::size_t start = 0; start <= text.size(); ++start) {
    checkInt(text, start);
    checkTexts(text, start);
    checkDouble(text, start);
  }
  checkWriters(number, text);
}

}  // namespace ei4::fuzz
