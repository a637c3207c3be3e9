// The parts of a page of documentation that tests hold against the code: its fenced blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::test {

using Bytes = std::vector<unsigned char>;

/// "```kind name" and the lines up to the closing fence.
struct Block {
  std::string kind;
  std::string name;  ///< empty if there is none; may hold blanks
  std::vector<std::string> lines;
};

/// Columns stand two blanks or more apart, so that one blank may stand within them.
std::vector<std::string> columnsOf(std::string_view line);

/// The integers in a text that holds nothing else.
std::vector<int> numbersOf(const std::string& text);

class Page {
 public:
  explicit Page(const std::filesystem::path& file);

  std::vector<Block> ofKind(std::string_view kind) const;
  /// The only block of that kind and name. Throws std::runtime_error when there is none or more than one.
  const Block& only(std::string_view kind, std::string_view name) const;
  /// The columns of a "values" block, line by line.
  std::vector<std::vector<std::string>> table(std::string_view name) const;
  /// All integers of a "values" block.
  std::vector<int> numbers(std::string_view name) const;

 private:
  std::vector<Block> m_Blocks;
};

/// One line of a listing: "07C  02 00 00 00  N  2", or "008  00 * 116" for a byte that is repeated.
struct HexLine {
  std::size_t offset = 0;
  Bytes bytes;
  std::string field;    ///< empty where a line only goes on
  std::string meaning;  ///< what the bytes stand for
};
std::vector<HexLine> hexLines(const Block& block);
Bytes bytesOf(const std::vector<HexLine>& lines);

/// One line of a listing of bits, each a '0' or a '1', in groups.
struct BitLine {
  std::size_t offset = 0;
  std::vector<std::string> groups;
  std::string field;
  std::string meaning;

  std::string bits() const;
};
std::vector<BitLine> bitLines(const Block& block);

/// The value of bits whose first one is the least significant.
std::uint64_t valueOf(std::string_view bits);

std::filesystem::path docsFolder();
/// The whole file; throws std::runtime_error when it can't be read.
Bytes fileBytes(const std::filesystem::path& path);
const Page& formatsPage();

}  // namespace ei4::test
