#include "docs/page.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace ei4::test {
namespace {

constexpr std::string_view kFence = "```";

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::string>(words), {}};
}

std::string columnOr(const std::vector<std::string>& columns, std::size_t index) {
  return index < columns.size() ? columns[index] : std::string();
}

/// "0C 00", or "00 * 116".
Bytes listedBytes(const std::string& text) {
  const std::vector<std::string> words = wordsOf(text);
  const auto byteOf = [](const std::string& word) {
    return static_cast<unsigned char>(std::stoul(word, nullptr, 16));
  };
  if (words.size() == 3 && words[1] == "*") return Bytes(std::stoul(words[2]), byteOf(words[0]));
  Bytes bytes;
  for (const std::string& word : words) bytes.push_back(byteOf(word));
  return bytes;
}

}  // namespace

std::vector<std::string> columnsOf(std::string_view line) {
  std::vector<std::string> columns;
  std::size_t at = line.find_first_not_of(' ');
  while (at != std::string_view::npos) {
    const std::size_t end = std::min(line.find("  ", at), line.size());
    columns.emplace_back(line.substr(at, end - at));
    at = line.find_first_not_of(' ', end);
  }
  return columns;
}

std::vector<int> numbersOf(const std::string& text) {
  std::vector<int> numbers;
  for (const std::string& word : wordsOf(text)) {
    std::size_t used = 0;
    numbers.push_back(std::stoi(word, &used));
    if (used != word.size()) throw std::runtime_error("no number: " + word);
  }
  return numbers;
}

Page::Page(const std::filesystem::path& file) {
  std::ifstream in(file);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  bool inside = false;
  for (std::string line; std::getline(in, line);) {
    const bool isFence = line.starts_with(kFence);
    if (isFence && inside) {
      inside = false;
    } else if (isFence) {
      const std::string info = line.substr(kFence.size());
      const std::size_t blank = std::min(info.find(' '), info.size());
      m_Blocks.push_back({info.substr(0, blank), info.substr(std::min(blank + 1, info.size())), {}});
      inside = true;
    } else if (inside) {
      m_Blocks.back().lines.push_back(line);
    }
  }
}

std::vector<Block> Page::ofKind(std::string_view kind) const {
  std::vector<Block> found;
  std::copy_if(m_Blocks.begin(), m_Blocks.end(), std::back_inserter(found),
               [kind](const Block& block) { return block.kind == kind; });
  return found;
}

const Block& Page::only(std::string_view kind, std::string_view name) const {
  const auto isIt = [&](const Block& block) { return block.kind == kind && block.name == name; };
  if (std::count_if(m_Blocks.begin(), m_Blocks.end(), isIt) != 1)
    throw std::runtime_error("not just one block: " + std::string(kind) + " " + std::string(name));
  return *std::find_if(m_Blocks.begin(), m_Blocks.end(), isIt);
}

std::vector<std::vector<std::string>> Page::table(std::string_view name) const {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : only("values", name).lines) rows.push_back(columnsOf(line));
  return rows;
}

std::vector<int> Page::numbers(std::string_view name) const {
  std::vector<int> all;
  for (const std::string& line : only("values", name).lines) {
    const std::vector<int> row = numbersOf(line);
    all.insert(all.end(), row.begin(), row.end());
  }
  return all;
}

std::vector<HexLine> hexLines(const Block& block) {
  std::vector<HexLine> lines;
  for (const std::string& line : block.lines) {
    const std::vector<std::string> columns = columnsOf(line);
    lines.push_back({std::stoul(columns.at(0), nullptr, 16), listedBytes(columns.at(1)), columnOr(columns, 2),
                     columnOr(columns, 3)});
  }
  return lines;
}

Bytes bytesOf(const std::vector<HexLine>& lines) {
  Bytes all;
  for (const HexLine& line : lines) all.insert(all.end(), line.bytes.begin(), line.bytes.end());
  return all;
}

std::string BitLine::bits() const {
  std::string all;
  for (const std::string& group : groups) all += group;
  return all;
}

std::vector<BitLine> bitLines(const Block& block) {
  std::vector<BitLine> lines;
  for (const std::string& line : block.lines) {
    const std::vector<std::string> columns = columnsOf(line);
    lines.push_back(
        {std::stoul(columns.at(0)), wordsOf(columns.at(1)), columnOr(columns, 2), columnOr(columns, 3)});
  }
  return lines;
}

std::uint64_t valueOf(std::string_view bits) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (bits[i] == '1') value |= std::uint64_t{1} << i;
  }
  return value;
}

std::filesystem::path docsFolder() { return EI4_DOCS_FOLDER; }

Bytes fileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

const Page& formatsPage() {
  static const Page page(docsFolder() / "formats.md");
  return page;
}

}  // namespace ei4::test
