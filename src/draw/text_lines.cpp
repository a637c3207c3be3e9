#include "draw/text_lines.h"

#include <algorithm>

namespace ei4 {

std::vector<std::string_view> textLines(std::string_view text) {
  const auto lineFeeds = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  std::vector<std::string_view> lines;
  lines.reserve(lineFeeds + 1);
  std::size_t at = 0;
  while (lines.size() <= lineFeeds && at <= text.size()) {
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + (end < text.size() && text[end] == '\r' ? 2 : 1);
  }
  return lines;
}

std::string_view boundedText(std::string_view text, std::size_t limit) {
  if (text.size() <= limit) return text;
  constexpr std::size_t kLongestTail = 3;  // continuation bytes of one character
  const auto continues = [text](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
  };
  std::size_t end = limit;
  while (end > 0 && limit - end < kLongestTail && continues(end)) --end;
  return text.substr(0, continues(end) ? limit : end);
}

}  // namespace ei4
