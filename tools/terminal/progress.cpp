#include "terminal/progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <utility>

namespace ei4::tools {

namespace {

constexpr double kSilence = 0.5;   // seconds: shorter work shows nothing
constexpr double kInterval = 0.1;  // seconds between two drawings
constexpr int kUsualColumns = 80;
constexpr std::string_view kErase = "\r\x1b[K";  // back to the line's start, and erase to its end

double secondsNow() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

int columnsOfStderr() {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsualColumns;
}

// A bar that cannot be written is no reason to stop the work.
void writeToStderr(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

std::optional<ProgressTerminal> progressOnStderr() {
  const char* term = std::getenv("TERM");
  const std::string_view kind = term == nullptr ? "" : term;
  if (kind.empty() || kind == "dumb" || isatty(STDERR_FILENO) == 0) return std::nullopt;
  return ProgressTerminal{secondsNow, columnsOfStderr, writeToStderr};
}

Progress::Progress(std::optional<ProgressTerminal> terminal) : m_terminal(std::move(terminal)) {
  if (!m_terminal) return;
  m_began = m_terminal->seconds();
  m_nextDraw = m_began + kSilence;
}

Progress::~Progress() { hide(); }

void Progress::expect(std::int64_t items, std::int64_t bytes) {
  m_state.itemsInAll += items;
  m_state.bytesInAll += bytes;
}

void Progress::advance(std::int64_t items, std::int64_t bytes) {
  if (!m_terminal) return;
  m_state.items += items;
  m_state.bytes += bytes;
  const double now = m_terminal->seconds();
  if (now < m_nextDraw && !m_hidden) return;
  m_nextDraw = now + kInterval;
  m_state.seconds = now - m_began;
  // The last column stays free: a character in it may move the cursor to the next line.
  m_terminal->write(std::string(kErase) + progressLine(m_state, m_terminal->columns() - 1));
  m_visible = true;
  m_hidden = false;
}

void Progress::hide() {
  if (!m_visible) return;
  m_terminal->write(kErase);
  m_visible = false;
  m_hidden = true;
}

}  // namespace ei4::tools
