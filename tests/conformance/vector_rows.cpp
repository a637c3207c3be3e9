#include "conformance/vector_rows.h"

#include <charconv>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace ei4::test {
namespace {

using Columns = std::vector<std::string>;

Columns splitAtTabs(const std::string& line) {
  Columns columns(1);
  for (const char c : line) {
    if (c == '\t') {
      columns.emplace_back();
    } else {
      columns.back() += c;
    }
  }
  return columns;
}

template <class Number = int>
Number toNumber(std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) {
    throw std::runtime_error("not a number: " + std::string(text));
  }
  return number;
}

// What stands in `text` between `before` and `after`, or nothing when it reads differently.
std::optional<std::string_view> between(std::string_view text, std::string_view before,
                                        std::string_view after) {
  if (text.size() < before.size() + after.size()) return std::nullopt;
  if (!text.starts_with(before) || !text.ends_with(after)) return std::nullopt;
  return text.substr(before.size(), text.size() - before.size() - after.size());
}

VectorRow streamRow(const std::filesystem::path& folder, const Columns& columns) {
  VectorRow row;
  row.title = columns.at(0) + ", " + columns.at(1) + " bytes, factor " + columns.at(2);
  row.file = folder / columns.at(0);
  row.bytesGiven = toNumber<std::uint64_t>(columns.at(1));
  row.factor = toNumber(columns.at(2));
  row.status = toNumber(columns.at(3));
  row.width = toNumber(columns.at(4));
  row.height = toNumber(columns.at(5));
  row.bytesPerPixel = toNumber(columns.at(6));
  row.outputBytes = toNumber<std::uint64_t>(columns.at(7));
  row.sha256 = columns.at(8);
  row.pixels = folder / (row.file.stem().string() + "." + columns.at(1) + "." + columns.at(2) + ".raw");
  return row;
}

VectorRow realRow(const std::filesystem::path& folder, const Columns& columns) {
  VectorRow row;
  row.title = columns.at(0) + ", " + columns.at(1) + ", " + columns.at(2);
  row.file = folder / columns.at(0);
  row.isEi4 = true;
  if (const auto bytes = between(columns.at(1), "", " stream bytes read")) {
    row.bytesGiven = toNumber<std::uint64_t>(*bytes);
  } else if (columns.at(1) != "whole stream") {
    throw std::runtime_error("unknown input: " + columns.at(1));
  }
  if (const auto width = between(columns.at(2), "wanted width ", "")) {
    row.wantedWidth = toNumber(*width);
  } else if (const auto factor = between(columns.at(2), "factor ", "")) {
    row.factor = toNumber(*factor);
  } else {
    throw std::runtime_error("unknown request: " + columns.at(2));
  }
  row.status = toNumber(columns.at(3));
  row.width = toNumber(columns.at(4));
  row.height = toNumber(columns.at(5));
  row.sha256 = columns.at(6);
  return row;
}

using RowReader = std::function<VectorRow(const std::filesystem::path&, const Columns&)>;

void addTable(const std::filesystem::path& table, const RowReader& readRow, std::vector<VectorRow>& rows) {
  std::ifstream in(table);
  std::string line;
  if (!std::getline(in, line)) throw std::runtime_error(table.string() + ": cannot be read or is empty");
  for (int number = 2; std::getline(in, line); ++number) {
    try {
      rows.push_back(readRow(table.parent_path(), splitAtTabs(line)));
    } catch (const std::exception& error) {
      throw std::runtime_error(table.string() + ":" + std::to_string(number) + ": " + error.what());
    }
  }
}

}  // namespace

std::vector<VectorRow> readVectorRows(const std::filesystem::path& folder) {
  std::vector<VectorRow> rows;
  addTable(folder / "streams" / "vectors.tsv", streamRow, rows);
  addTable(folder / "real" / "real.tsv", realRow, rows);
  return rows;
}

}  // namespace ei4::test
