// Runs the converter on one report and compares its picture, pixel by pixel, with what `expected` describes.
// Usage: report_case PROGRAM INPUTS CASE MISMATCHES
// When they differ, both are left in the folder MISMATCHES.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "report/drawing.h"
#include "report/expected_picture.h"
#include "support/cli_temp_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::test::Raster;

constexpr std::size_t kPixelsNamed = 5;  // of those that differ

std::string readText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("no file " + path.string());
  std::string text(std::istreambuf_iterator<char>(file), {});
  return text.substr(0, text.find_last_not_of('\n') + 1);
}

// Quotes for a shell: paths of build folders may hold blanks.
std::string quoted(const fs::path& path) { return "'" + path.string() + "'"; }

// Converts in the folder `work`. Returns the picture's path there.
fs::path convert(const fs::path& program, const fs::path& cmd, const fs::path& work) {
  const std::string options = readText(cmd);
  const std::string line = "cd " + quoted(work) + " && " + quoted(program) + " " + options + " > stdout";
  const int status = std::system(line.c_str());  // NOLINT(cert-env33-c): our own words
  if (status != 0) throw std::runtime_error("wait status " + std::to_string(status) + " of: " + options);
  if (fs::file_size(work / "stdout") != 0) throw std::runtime_error("standard output is not empty");
  for (const char* const name : {"out.png", "out.jpg"}) {
    if (fs::exists(work / name)) return work / name;
  }
  throw std::runtime_error("no picture out.png or out.jpg was written");
}

std::string colourAt(const Raster& raster, std::size_t pixel) {
  const unsigned char* const rgb = &raster.bytes[3 * pixel];
  char name[8] = "";
  std::snprintf(name, sizeof(name), "#%02x%02x%02x", rgb[0], rgb[1], rgb[2]);
  return name;
}

bool isSame(const Raster& actual, const Raster& expected) {
  if (actual.width != expected.width || actual.height != expected.height) {
    std::fprintf(stderr, "%d x %d pixels, not %d x %d\n", actual.width, actual.height, expected.width,
                 expected.height);
    return false;
  }
  std::size_t different = 0;
  const std::size_t width = static_cast<std::size_t>(expected.width);
  for (std::size_t pixel = 0; pixel < expected.bytes.size() / 3; ++pixel) {
    const std::string shown = colourAt(actual, pixel);
    const std::string wanted = colourAt(expected, pixel);
    if (shown == wanted) continue;
    if (++different <= kPixelsNamed) {
      std::fprintf(stderr, "(%zu, %zu) is %s, not %s\n", pixel % width, pixel / width, shown.c_str(),
                   wanted.c_str());
    }
  }
  if (different > 0) std::fprintf(stderr, "%zu pixels differ\n", different);
  return different == 0;
}

bool isRight(const fs::path& program, const fs::path& inputs, const fs::path& folder,
             const fs::path& mismatches) {
  const ei4::test::TempFolder temp;
  const fs::path work = temp.path("work");
  fs::copy(inputs, work, fs::copy_options::recursive);
  fs::copy(folder / "report.txt", work);
  const fs::path picture = convert(program, folder / "cmd", work);

  ei4::test::startDrawing(REPORT_FONT_FOLDER);  // only now: the converter has to find its font by itself
  const Raster actual = ei4::test::readPicture(picture.string());
  const Raster expected = ei4::test::expectedPicture((folder / "expected").string());
  if (isSame(actual, expected)) return true;

  fs::create_directories(mismatches);
  const std::string stem = (mismatches / folder.filename()).string();
  ei4::test::writePicture(actual, stem + ".actual.png");
  ei4::test::writePicture(expected, stem + ".expected.png");
  std::fprintf(stderr, "see %s.*.png\n", stem.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 5) throw std::runtime_error("usage: report_case PROGRAM INPUTS CASE MISMATCHES");
  return isRight(fs::absolute(argv[1]), argv[2], fs::absolute(argv[3]), argv[4]) ? 0 : 1;
} catch (const std::exception& error) {
  std::fprintf(stderr, "report_case: %s\n", error.what());
  return 2;
}
