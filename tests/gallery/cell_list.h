// What samples/gallery/cells.awk says about the pictures of one kind.
#pragma once

#include <string>
#include <vector>

#include "report/canvas.h"

namespace ei4::test {

struct Cell {
  std::string name;        ///< of the report, without ".txt"
  std::string input;       ///< relative to the root of the project
  Box place{};             ///< on the sheet
  std::vector<Box> texts;  ///< where glyphs lie in the picture
};

/// A report that is wrong on purpose: its picture must not pass for the cell's.
struct WrongReport {
  std::string name;
  std::string cell;
  bool onlyExactly = false;  ///< differs only in a text that is moved or a little different
};

struct CellList {
  std::vector<Cell> cells;
  std::vector<WrongReport> wrong;

  /// Throws std::out_of_range when there is none of this name.
  const Cell& cell(const std::string& name) const;
};

/// Reads a file "cells". Throws std::runtime_error when there is none, or when a line of it makes no sense.
CellList readCellList(const std::string& path);

}  // namespace ei4::test
