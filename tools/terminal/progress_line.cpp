#include "terminal/progress_line.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <vector>

namespace ei4::tools {

namespace {

template <class... Values>
std::string text(const char* format, Values... values) {
  std::array<char, 64> line{};
  const int length = std::snprintf(line.data(), line.size(), format, values...);
  return {line.data(), static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(line.size()) - 1))};
}

// A number of bytes in the unit in which `scale` bytes are written, powers of 1000.
struct Unit {
  double bytes;
  const char* name;
};

Unit unitFor(double scale) {
  constexpr std::array kUnits = {Unit{1e12, "TB"}, Unit{1e9, "GB"}, Unit{1e6, "MB"}, Unit{1e3, "kB"}};
  for (const Unit& unit : kUnits) {
    if (scale >= unit.bytes) return unit;
  }
  return {1, "B"};
}

std::string figure(double value, const Unit& unit) {
  const double number = value / unit.bytes;
  return text(unit.bytes > 1 && number < 100 ? "%.1f" : "%.0f", number);
}

std::string time(double seconds) {
  constexpr double kLongest = 99 * 3600;
  const int whole = static_cast<int>(std::clamp(seconds, 0.0, kLongest));
  const int minutes = whole / 60;
  return minutes < 60 ? text("%d:%02d", minutes, whole % 60)
                      : text("%d:%02d:%02d", minutes / 60, minutes % 60, whole % 60);
}

double shareDone(const ProgressState& state) {
  const bool byBytes = state.bytesInAll > 0;
  const auto done = static_cast<double>(byBytes ? state.bytes : state.items);
  const auto all = static_cast<double>(byBytes ? state.bytesInAll : state.itemsInAll);
  return all > 0 ? std::clamp(done / all, 0.0, 1.0) : 0;
}

std::string bar(double share, int width) {
  const int inside = width - 2;
  const int full = static_cast<int>(share * inside);
  std::string text = "[" + std::string(static_cast<std::size_t>(full), '=');
  if (full < inside) text += '>' + std::string(static_cast<std::size_t>(inside - full - 1), ' ');
  return text + "]";
}

// The most wanted first; each begins with the blanks that part it from the one before.
std::vector<std::string> figuresOf(const ProgressState& state, double share) {
  std::vector<std::string> figures;
  figures.push_back(text("%3d%%", static_cast<int>(share * 100)));
  figures.push_back(
      text(" %lld/%lld", static_cast<long long>(state.items), static_cast<long long>(state.itemsInAll)));
  if (state.bytesInAll > 0) {
    const auto all = static_cast<double>(state.bytesInAll);
    const Unit unit = unitFor(all);
    figures.push_back("  " + figure(static_cast<double>(state.bytes), unit) + "/" + figure(all, unit) + " " +
                      unit.name);
  }
  if (state.seconds > 0) {
    if (state.bytesInAll > 0) {
      const double rate = static_cast<double>(state.bytes) / state.seconds;
      const Unit unit = unitFor(rate);
      figures.push_back("  " + figure(rate, unit) + " " + unit.name + "/s");
    } else {
      figures.push_back("  " + text("%.0f/s", static_cast<double>(state.items) / state.seconds));
    }
    if (share > 0) figures.push_back("  " + time(state.seconds * (1 - share) / share) + " left");
  }
  return figures;
}

}  // namespace

std::string progressLine(const ProgressState& state, int columns) {
  constexpr int kNarrowestBar = 10;
  constexpr int kWidestBar = 32;
  const double share = shareDone(state);
  std::string figures;
  for (const std::string& next : figuresOf(state, share)) {
    if (static_cast<int>(figures.size() + next.size()) > columns) break;
    figures += next;
  }
  const int room = std::min(columns - static_cast<int>(figures.size()), kWidestBar);
  return room < kNarrowestBar || figures.empty() ? figures : bar(share, room) + figures;
}

}  // namespace ei4::tools
