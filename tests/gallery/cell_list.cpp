#include "gallery/cell_list.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace ei4::test {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& line) {
  std::ostringstream message;
  message << path << ": what does this mean: " << line;
  throw std::runtime_error(message.str());
}

}  // namespace

const Cell& CellList::cell(const std::string& name) const {
  const auto found = std::find_if(cells.begin(), cells.end(), [&](const Cell& c) { return c.name == name; });
  if (found == cells.end()) throw std::out_of_range("no cell " + name);
  return *found;
}

CellList readCellList(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("no file " + path);
  CellList list;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string what;
    words >> what;
    if (what == "cell") {
      Cell cell;
      int width = 0;
      int height = 0;
      words >> cell.name >> cell.input >> cell.place.left >> cell.place.top >> width >> height;
      cell.place.right = cell.place.left + width;
      cell.place.bottom = cell.place.top + height;
      list.cells.push_back(cell);
    } else if (what == "text" && !list.cells.empty()) {
      Box box{};
      words >> box.left >> box.top >> box.right >> box.bottom;
      list.cells.back().texts.push_back(box);
    } else if (what == "wrong") {
      WrongReport wrong;
      std::string how;
      words >> wrong.name >> wrong.cell >> how;
      wrong.onlyExactly = how == "exactly";
      list.wrong.push_back(wrong);
    } else {
      fail(path, line);
    }
    if (!words) fail(path, line);
  }
  return list;
}

}  // namespace ei4::test
