#include <algorithm>
#include <string>
#include <vector>

#include "check.h"
#include "text/extract.h"
#include "text/scanner.h"
#include "text_checks.h"

namespace ei4::fuzz {

namespace {

constexpr const char* kBlanks = " \t";
constexpr const char* kLineEnds = "\r\n";
constexpr const char* kWhite = " \t\r\n";
constexpr std::size_t kNone = std::string::npos;

/// Positions in a text, kNone for null.
class PlainText {
 public:
  explicit PlainText(const std::string& text) : m_text(text) {}

  std::size_t to(const char* any, std::size_t at) const {
    return std::min(m_text.find_first_of(any, at), m_text.size());
  }
  std::size_t over(const char* any, std::size_t at) const {
    return std::min(m_text.find_first_not_of(any, at), m_text.size());
  }
  std::size_t orNone(std::size_t at) const { return at == m_text.size() ? kNone : at; }

  std::size_t nextWord(std::size_t at) const { return orNone(over(kWhite, to(kWhite, at))); }
  std::size_t nextWordInLine(std::size_t at) const {
    const std::size_t next = orNone(over(kBlanks, to(kWhite, at)));
    return next != kNone && isLineEnd(next) ? kNone : next;
  }
  std::size_t nextLine(std::size_t at) const { return orNone(over(kWhite, to(kLineEnds, at))); }
  std::size_t skipComments(std::size_t at) const {
    at = orNone(over(kWhite, at));
    while (at != kNone && m_text[at] == '#') at = nextLine(at);
    return at;
  }
  std::string line(std::size_t at) const { return m_text.substr(at, to(kLineEnds, at) - at); }

 private:
  bool isLineEnd(std::size_t at) const { return m_text[at] == '\r' || m_text[at] == '\n'; }

  const std::string& m_text;
};

std::string trimmed(std::string line) {
  line = line.substr(0, line.find('#'));
  const std::size_t first = line.find_first_not_of(kWhite);
  return first == kNone ? std::string() : line.substr(first, line.find_last_not_of(kWhite) + 1 - first);
}

bool is(const CString& got, const std::string& wanted) { return wanted == static_cast<const char*>(got); }

void checkFrom(const PlainText& plain, const std::string& text, char* base, std::size_t at) {
  const auto position = [base](const char* p) {
    return p == nullptr ? kNone : static_cast<std::size_t>(p - base);
  };
  char* const p = base + at;
  require(position(SkipWhiteSpaces(p)) == plain.over(kWhite, at), "white space is skipped");
  require(position(SkipWhiteSpacesInLine(p)) == plain.over(kBlanks, at), "blanks are skipped");
  require(position(NextWord(p)) == plain.nextWord(at), "the next word");
  require(position(NextWordInLine(p)) == plain.nextWordInLine(at), "the next word of the line");
  require(position(NextLine(p)) == plain.nextLine(at), "the next line");
  require(position(SkipCommentLines(p)) == plain.skipComments(at), "comments are skipped");
  require(is(GetWord(p), text.substr(at, plain.to(kWhite, at) - at)), "a word");
  require(is(GetLine(p), plain.line(at)), "a line");
  require(is(GetPureLine(p), trimmed(plain.line(at))), "a line without its comment");
}

/// Looks for a field whose name the text itself gives: what stands in front of its first colon.
void checkCommentField(const PlainText& plain, const std::string& text, char* base) {
  const std::string name = text.substr(0, text.find(':'));
  char* next = base;
  const CString got = GetCommentField(base, name.c_str(), &next);
  for (std::size_t at = plain.over(kWhite, 0); at < text.size(); at = plain.nextLine(at)) {
    if (text[at] != '#') continue;
    const std::size_t label = plain.over(kBlanks, at + 1);
    if (text.compare(label, name.size() + 1, name + ":") != 0) continue;
    const std::size_t value = plain.over(kBlanks, label + name.size() + 1);
    const std::size_t behind = plain.nextLine(value);
    require(is(got, plain.line(value)), "the value of a comment");
    require(next == (behind == kNone ? nullptr : base + behind), "the line behind a comment");
    return;
  }
  require(is(got, "") && next == nullptr, "no such comment");
}

}  // namespace

void checkWalks(const std::string& text) {
  std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);
  const PlainText plain(text);
  for (std::size_t at = 0; at <= text.size(); ++at) checkFrom(plain, text, exact.data(), at);
  checkCommentField(plain, text, exact.data());
  require(std::equal(exact.begin(), exact.end() - 1, text.begin()), "the text is only read");
}

}  // namespace ei4::fuzz
