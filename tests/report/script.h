// Reads a line of an `expected` file word by word.
#pragma once

#include <stdexcept>
#include <string>

namespace ei4::test {

/// A line that says something that cannot be meant. Its text names the fault, not the line.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Words stand between blanks; a word "#" begins a comment. Reading beyond the last word, or a word of
/// another kind than asked for, throws ScriptError.
class ScriptLine {
 public:
  explicit ScriptLine(std::string line);

  bool atEnd() const { return m_next == m_line.size(); }
  std::string word();
  int number();
  std::string colour();  ///< "#rrggbb", in small letters

  /// A text in double quotes, with the escapes \r \n \" \\ and \xHH, any byte.
  std::string text();

  void expectEnd() const;

 private:
  void skipBlanks();

  std::string m_line;
  std::size_t m_next = 0;
};

}  // namespace ei4::test
