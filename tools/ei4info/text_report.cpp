#include "ei4info/text_report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "terminal/shown.h"

namespace ei4::info {

namespace {

// The shortest digits that mean this number; "nan" and "inf" for what is none.
std::string text(float number) {
  std::array<char, 64> digits{};
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  return {digits.data(), written.ptr};
}

std::string counted(std::int64_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// Rows of cells, each column as wide as it must be. The first line is the heading.
class Table {
 public:
  using Row = std::vector<std::string>;
  void add(Row row) { m_rows.push_back(std::move(row)); }

  std::string lines() const {
    std::vector<std::size_t> widths;
    for (const Row& row : m_rows) {
      widths.resize(std::max(widths.size(), row.size()));
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    std::string out;
    for (const Row& row : m_rows) {
      out += " ";
      for (std::size_t i = 0; i < row.size(); ++i)
        out += std::string(widths[i] - row[i].size() + 2, ' ') + row[i];
      out += '\n';
    }
    return out;
  }

 private:
  std::vector<Row> m_rows;
};

std::string line(std::string_view name, const std::string& value) {
  constexpr std::size_t kNameWidth = 11;
  return "  " + std::string(name) + std::string(kNameWidth - name.size(), ' ') + value + "\n";
}

std::string preambleLine(const Preamble& preamble) {
  return line("preamble", counted(preamble.length, "byte") + ": intercept " + text(preamble.intercept) +
                              ", slope " + text(preamble.slope) + ", window " + text(preamble.window) +
                              ", level " + text(preamble.level));
}

std::string headerLine(const zel::gwav4::GWHeader& header) {
  return line("header", tools::shown({header.magic.data(), header.magic.size()}) + ", " +
                            std::to_string(header.xSize) + " x " + std::to_string(header.ySize) +
                            " pixels, " + counted(header.bytesPerPixel, "byte") + " a pixel, " +
                            counted(header.bitsPerPixel, "bit") + " a sample");
}

std::string codingLine(const StreamDirectory& directory) {
  if (!directory.levels) return "";
  const std::string top =
      *directory.top < 0 ? ", no coefficients but 0" : ", top bit " + std::to_string(*directory.top);
  return line("coding", counted(*directory.levels, "level") + top);
}

std::string directoryLine(const StreamDirectory& directory, const ChunkSums& all) {
  std::string state(nameOf(directory.state));
  if (directory.state == DirectoryState::open) state = "ends behind a whole chunk, without an end code";
  return line("directory", state + "; " + counted(all.chunks, "chunk") + " of " + counted(all.bits, "bit") +
                               " in " + counted(directory.codedBytes, "byte") + " of coded data" +
                               (directory.trailingBytes > 0
                                    ? ", " + counted(directory.trailingBytes, "byte") + " behind the end"
                                    : ""));
}

std::string directoryLines(const StreamDirectory& directory) {
  Table table;
  table.add({"plane", "order", "signif.", "bits", "refinem.", "bits", "all bits"});
  ChunkSums significance;
  ChunkSums refinement;
  const auto add = [](ChunkSums& sums, const ChunkSums& more) {
    sums.chunks += more.chunks;
    sums.bits += more.bits;
  };
  const auto row = [&table](const std::string& plane, const std::string& order, const ChunkSums& first,
                            const ChunkSums& second) {
    table.add({plane, order, std::to_string(first.chunks), std::to_string(first.bits),
               std::to_string(second.chunks), std::to_string(second.bits),
               std::to_string(first.bits + second.bits)});
  };
  for (const OrderSums& sums : directory.orders) {
    row(std::to_string(sums.plane), std::to_string(sums.order), sums.significance, sums.refinement);
    add(significance, sums.significance);
    add(refinement, sums.refinement);
  }
  row("all", "", significance, refinement);
  const ChunkSums all = {significance.chunks + refinement.chunks, significance.bits + refinement.bits};
  return codingLine(directory) + directoryLine(directory, all) +
         (directory.orders.empty() ? "" : table.lines());
}

std::string sizeLines(const std::vector<ReadSize>& sizes) {
  Table table;
  table.add({"factor", "size", "-geom width", "bytes read"});
  for (const ReadSize& size : sizes) {
    const std::string from = std::to_string(size.wantedFrom);
    std::string wish = from + " and wider, or none";
    if (size.wantedTo)
      wish = *size.wantedTo == size.wantedFrom ? from : from + " to " + std::to_string(*size.wantedTo);
    Table::Row row = {std::to_string(size.factor),
                      std::to_string(size.width) + " x " + std::to_string(size.height), wish,
                      std::to_string(size.bytesRead)};
    if (!size.mayClaim) row.emplace_back("refused: too many pixels for the input");
    table.add(std::move(row));
  }
  return table.lines();
}

}  // namespace

std::string_view nameOf(Decodes decodes) {
  switch (decodes) {
    case Decodes::completely:
      return "completely";
    case Decodes::partly:
      return "partly";
    default:
      return "no";
  }
}

std::string_view nameOf(DirectoryState state) {
  switch (state) {
    case DirectoryState::complete:
      return "complete";
    case DirectoryState::open:
      return "open";
    case DirectoryState::cut:
      return "cut";
    default:
      return "bad";
  }
}

std::string textReport(std::string_view path, const ImageFacts& facts) {
  std::string out =
      tools::shown(path) + ": " + counted(facts.length, "byte") + ", " +
      (facts.decodes == Decodes::no ? "does not decode" : "decodes " + std::string(nameOf(facts.decodes))) +
      "\n";
  for (const std::string& fault : facts.faults) out += line("fault", fault);
  if (facts.preamble) out += preambleLine(*facts.preamble);
  if (facts.header) out += headerLine(*facts.header);
  if (facts.directory) out += directoryLines(*facts.directory);
  if (!facts.sizes.empty()) out += sizeLines(facts.sizes);
  return out;
}

}  // namespace ei4::info
