#include "case_files.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "support/cli_jpg.h"

namespace ei4::test {

namespace {

namespace fs = std::filesystem;

bool isNear(const Jpg& jpg, const std::string& raw, int tolerance) {
  const std::size_t count = jpg.width * jpg.height;
  if (count == 0 || (raw.size() != count && raw.size() != 3 * count)) return false;
  const std::size_t share = 3 * count / raw.size();
  for (std::size_t i = 0; i < jpg.pixels.size(); ++i) {
    const int wanted = static_cast<unsigned char>(raw[i / share]);
    if (std::abs(int{jpg.pixels[i]} - wanted) > tolerance) return false;
  }
  return true;
}

bool isRight(std::istringstream& line, const std::string& kind, const fs::path& file,
             const fs::path& inputs) {
  if (kind == "same") {
    std::string input;
    line >> input;
    return fs::exists(inputs / input) && readText(file) == readText(inputs / input);
  }
  if (kind == "bytes") {
    std::uintmax_t count = 0;
    line >> count;
    return fs::file_size(file) == count;
  }
  if (kind == "all") {
    std::size_t count = 0;
    int value = 0;
    line >> count >> value;
    return readText(file) == std::string(count, static_cast<char>(value));
  }
  if (kind == "jpg") {
    unsigned long width = 0;
    unsigned long height = 0;
    int components = 0;
    line >> width >> height >> components;
    const Jpg jpg = decodeJpg(file.string());
    return jpg.width == width && jpg.height == height && jpg.components == components && width > 0;
  }
  if (kind == "near") {
    std::string input;
    int tolerance = 0;
    line >> input >> tolerance;
    return isNear(decodeJpg(file.string()), readText(inputs / input), tolerance);
  }
  return false;
}

}  // namespace

std::string readText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string checkFile(const std::string& line, const fs::path& work, const fs::path& inputs,
                      std::vector<std::string>& faults) {
  std::istringstream words(line);
  std::string name;
  std::string kind;
  words >> name >> kind;
  if (!fs::exists(work / name)) {
    faults.push_back(name + " is missing");
  } else if (!isRight(words, kind, work / name, inputs) || !words) {
    faults.push_back("not so: " + line);
  }
  return name;
}

}  // namespace ei4::test
