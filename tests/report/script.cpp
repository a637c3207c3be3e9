#include "report/script.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace ei4::test {

namespace {

constexpr const char* kHexDigits = "0123456789abcdef";

}  // namespace

ScriptLine::ScriptLine(std::string line) : m_line(std::move(line)) { skipBlanks(); }

void ScriptLine::skipBlanks() {
  m_next = std::min(m_line.find_first_not_of(' ', m_next), m_line.size());
  if (m_line.compare(m_next, 2, "# ") == 0 || m_line.substr(m_next) == "#") m_next = m_line.size();
}

std::string ScriptLine::word() {
  if (atEnd()) throw ScriptError("a word is missing");
  const std::size_t end = std::min(m_line.find(' ', m_next), m_line.size());
  std::string found = m_line.substr(m_next, end - m_next);
  m_next = end;
  skipBlanks();
  return found;
}

int ScriptLine::number() {
  const std::string digits = word();
  int value = 0;
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) throw ScriptError(digits + " is no number");
  return value;
}

std::string ScriptLine::colour() {
  std::string name = word();
  if (name.size() != 7 || name[0] != '#' || name.find_first_not_of(kHexDigits, 1) != std::string::npos) {
    throw ScriptError(name + " is no colour");
  }
  return name;
}

std::string ScriptLine::text() {
  if (atEnd() || m_line[m_next] != '"') throw ScriptError("a text in quotes is missing");
  std::string found;
  for (++m_next; m_next < m_line.size() && m_line[m_next] != '"'; ++m_next) {
    if (m_line[m_next] != '\\') {
      found += m_line[m_next];
      continue;
    }
    const char escape = ++m_next < m_line.size() ? m_line[m_next] : '\0';
    if (escape == 'r') {
      found += '\r';
    } else if (escape == 'n') {
      found += '\n';
    } else if (escape == '"' || escape == '\\') {
      found += escape;
    } else if (escape == 'x' && m_next + 2 < m_line.size()) {
      found += static_cast<char>(std::stoi(m_line.substr(m_next + 1, 2), nullptr, 16));
      m_next += 2;
    } else {
      throw ScriptError("an escape that is none");
    }
  }
  if (m_next == m_line.size()) throw ScriptError("a text without its closing quote");
  ++m_next;
  skipBlanks();
  return found;
}

void ScriptLine::expectEnd() const {
  if (!atEnd()) throw ScriptError("more words than expected: " + m_line.substr(m_next));
}

}  // namespace ei4::test
