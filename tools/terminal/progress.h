// A progress bar on one line of the terminal, for work on many files.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "terminal/progress_line.h"

namespace ei4::tools {

/// What a bar is shown on, and its clock.
struct ProgressTerminal {
  std::function<double()> seconds;              ///< since any fixed time; never goes back
  std::function<int()> columns;                 ///< width of the terminal, which may change
  std::function<void(std::string_view)> write;  ///< at once, to the terminal
};

/// The terminal behind standard error. Nothing when that is no terminal or one that cannot erase (TERM is "dumb", empty
/// or not set).
std::optional<ProgressTerminal> progressOnStderr();

/// Shows how far the work is, from half a second after its own making on and at most ten times a second. Its line is
/// gone when it ends, also by an exception. Without a terminal it does nothing.
class Progress {
 public:
  explicit Progress(std::optional<ProgressTerminal> terminal);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// Whether anything can ever be shown: else there is no use in finding out how much there is to do.
  bool isShown() const { return m_terminal.has_value(); }

  /// There is so much more to do.
  void expect(std::int64_t items, std::int64_t bytes);

  /// So much more is done.
  void advance(std::int64_t items, std::int64_t bytes);

  /// Takes the line away, for somebody else to write on the terminal. The next advance brings it back at once.
  void hide();

 private:
  std::optional<ProgressTerminal> m_terminal;
  ProgressState m_state;
  double m_began = 0;
  double m_nextDraw = 0;
  bool m_visible = false;
  bool m_hidden = false;  ///< taken away, to be back with the next advance
};

}  // namespace ei4::tools
