// Draws the pictures of one kind of the gallery with the built converter and compares them with the committed sheet.
// Usage: gallery_case PROGRAM ROOT REPORTS SHEET MISMATCHES HOW, in which HOW is one of
//   all           every cell, and then that each wrong report is found
//   FIRST EVERY   one cell in EVERY, beginning with the number FIRST
//   other_glyphs  as all, and it is an error when the glyphs are those of the gallery
// Where the glyphs are those of the gallery, every pixel has to be the same; else texts need only be similar.
// Each picture that differs is left in MISMATCHES: expected, drawn, and where they differ.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "gallery/cell_list.h"
#include "gallery/comparison.h"
#include "gallery/glyphs.h"
#include "report/drawing.h"
#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::Cell;
using ei4::test::CellList;
using ei4::test::Difference;
using ei4::test::Raster;

// Quotes for a shell: paths of build folders may hold blanks.
std::string shellWord(const fs::path& path) { return "'" + path.string() + "'"; }

class Kind {
 public:
  Kind(const fs::path& program, const fs::path& root, const fs::path& reports, const fs::path& sheet,
       const fs::path& mismatches, bool exactly)
      : m_program(program),
        m_root(root),
        m_reports(reports),
        m_mismatches(mismatches),
        m_exactly(exactly),
        m_list(ei4::test::readCellList((reports / "cells").string())),
        m_sheet(ei4::test::readPicture(sheet.string())) {}

  const CellList& list() const { return m_list; }
  bool isExact() const { return m_exactly; }

  Difference differenceOf(const std::string& report, const Cell& cell) const {
    return ei4::test::compare(drawn(report, cell), ei4::test::cutOut(m_sheet, cell.place),
                              m_exactly ? std::vector<ei4::test::Box>() : cell.texts);
  }

  bool isRight(const Cell& cell) const {
    const Difference difference = differenceOf(cell.name, cell);
    if (!difference.any()) return true;
    fs::create_directories(m_mismatches);
    const std::string kind = m_reports.filename().string();
    const fs::path shown = m_mismatches / (kind + "_" + cell.name + ".png");
    ei4::test::writePicture(difference.shown, shown.string());
    std::fprintf(stderr, "%s: %zu pixels differ, and %zu texts; see %s\n", cell.name.c_str(),
                 difference.pixels, difference.texts, shown.c_str());
    return false;
  }

 private:
  Raster drawn(const std::string& report, const Cell& cell) const {
    const ei4::test::TempFolder temp;
    const std::string picture = temp.path("out.ppm");
    // The converter has to find its font by itself: `env` hides from it what startDrawing() has set.
    const std::string line = "cd " + shellWord(m_root) + " && env -u MAGICK_CONFIGURE_PATH " +
                             shellWord(m_program) + " -in " + cell.input + " -ima " +
                             shellWord(m_reports / (report + ".txt")) + " -out " + shellWord(picture);
    const int status = std::system(line.c_str());  // NOLINT(cert-env33-c): our own words
    if (status != 0) throw std::runtime_error("wait status " + std::to_string(status) + " of: " + line);
    return ei4::test::readPicture(picture);
  }

  fs::path m_program;
  fs::path m_root;
  fs::path m_reports;
  fs::path m_mismatches;
  bool m_exactly;
  CellList m_list;
  Raster m_sheet;
};

bool areRight(const Kind& kind, std::size_t first, std::size_t every) {
  bool right = true;
  for (std::size_t i = first; i < kind.list().cells.size(); i += every) {
    if (!kind.isRight(kind.list().cells[i])) right = false;
  }
  return right;
}

// A comparison that lets these through would let anything through.
bool wrongOnesAreFound(const Kind& kind) {
  if (kind.list().wrong.empty()) throw std::runtime_error("there is no wrong report");
  bool found = true;
  for (const auto& wrong : kind.list().wrong) {
    if (wrong.onlyExactly && !kind.isExact()) continue;
    if (kind.differenceOf(wrong.name, kind.list().cell(wrong.cell)).any()) continue;
    std::fprintf(stderr, "the wrong report %s passes for %s\n", wrong.name.c_str(), wrong.cell.c_str());
    found = false;
  }
  return found;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 7) throw std::runtime_error("usage: gallery_case PROGRAM ROOT REPORTS SHEET MISMATCHES HOW");
  ei4::test::startDrawing(GALLERY_FONT_FOLDER);
  const bool sameGlyphs = ei4::test::glyphsAreThoseOf(GALLERY_GLYPHS);
  const Kind kind(fs::absolute(argv[1]), argv[2], fs::absolute(argv[3]), argv[4], argv[5], sameGlyphs);
  if (!sameGlyphs) std::puts("The glyphs are not those of the gallery: texts need only be similar.");
  const std::string how = argv[6];
  if (how == "other_glyphs" && sameGlyphs) throw std::runtime_error("the glyphs are those of the gallery");
  if (how == "all" || how == "other_glyphs") return areRight(kind, 0, 1) && wrongOnesAreFound(kind) ? 0 : 1;
  if (argc != 8) throw std::runtime_error("FIRST and EVERY are missing");
  return areRight(kind, std::stoul(how), std::stoul(argv[7])) ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "gallery_case: %s\n", error.what());
  return 2;
}
