// Command lines: the converter's options against the library's own scanning, and those of the companion tools.
//
// Input   the words behind the program's name, each ended by a zero byte.
// Limits  At most 64 words.
// Holds   Each number is read as sscanf reads it, all settings are those of the plain reading of the options' table,
//         and the tools refuse a command line by their own exception only.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "check.h"
#include "driver/options.h"
#include "driver/paths.h"
#include "driver/scan.h"
#include "driver/settings.h"
#include "ei4make/request.h"
#include "erblb/command_line.h"
#include "input.h"
#include "quiet.h"
#include "target.h"

namespace {

using ei4::fuzz::require;
using Word = const char*;

constexpr std::size_t kMostWords = 64;

struct Settings {
  Word in = nullptr, out = nullptr, report = nullptr;
  long srcX = 0, srcY = 0, dstX = 0, dstY = 0;
  int hasSrc = 0, hasDst = 0;
  int inColor = 0, hasInColor = 0, outColor = 0, hasOutColor = 0;
  int window = 0, level = 0, quality = 0;
  double slope = 0, intercept = 0;
  int isWL = 0, invert = 0, hasQuality = 0, help = 0;
  bool blob = false;
};

bool sameNumber(double a, double b) { return std::isnan(a) ? std::isnan(b) : a == b; }

bool operator==(const Settings& a, const Settings& b) {
  return a.in == b.in && a.out == b.out && a.report == b.report && a.srcX == b.srcX && a.srcY == b.srcY &&
         a.dstX == b.dstX && a.dstY == b.dstY && a.hasSrc == b.hasSrc && a.hasDst == b.hasDst &&
         a.inColor == b.inColor && a.hasInColor == b.hasInColor && a.outColor == b.outColor &&
         a.hasOutColor == b.hasOutColor && a.window == b.window && a.level == b.level &&
         a.quality == b.quality && sameNumber(a.slope, b.slope) && sameNumber(a.intercept, b.intercept) &&
         a.isWL == b.isWL && a.invert == b.invert && a.hasQuality == b.hasQuality && a.help == b.help &&
         a.blob == b.blob;
}

// NOLINTBEGIN(cert-err34-c): sscanf is the definition
bool plainInt(Word text, int& value) { return text != nullptr && std::sscanf(text, "%d", &value) == 1; }
bool plainFloat(Word text, float& value) { return text != nullptr && std::sscanf(text, "%f", &value) == 1; }
bool plainGeometry(Word text, long& x, long& y) {
  char separator = 0;
  return text != nullptr && std::sscanf(text, "%ld%c%ld", &x, &separator, &y) == 3 && separator == 'x';
}
// NOLINTEND(cert-err34-c)

int plainColor(Word text) {
  const std::string_view name = text == nullptr ? "" : text;
  return name == "M08" ? 1 : name == "M16" ? 2 : 0;
}

Settings plainReading(const std::vector<Word>& words) {
  Settings s;
  bool window = false, level = false, slope = false, intercept = false;
  float real = 0;
  for (std::size_t i = 1; i + 1 < words.size();) {
    const std::string_view option = words[i];
    Word const value = words[i + 1];
    i += option == "-invert" || option == "-blob" ? 1 : 2;
    if (option == "-ima") s.report = value;
    if (option == "-in") s.in = value;
    if (option == "-out") s.out = value;
    if (option == "-size" && plainGeometry(value, s.srcX, s.srcY)) s.hasSrc = 1;
    if (option == "-geom" && plainGeometry(value, s.dstX, s.dstY)) s.hasDst = 1;
    if (option == "-incolor") s.hasInColor = 1, s.inColor = plainColor(value);
    if (option == "-outcolor") s.hasOutColor = 1, s.outColor = plainColor(value);
    if (option == "-window") window = plainInt(value, s.window);
    if (option == "-level") level = plainInt(value, s.level);
    if (option == "-slope") slope = plainFloat(value, real), s.slope = static_cast<double>(real);
    if (option == "-intercept") intercept = plainFloat(value, real), s.intercept = static_cast<double>(real);
    if (option == "-invert") s.invert = 1;
    if (option == "-jpgquality") s.hasQuality = plainInt(value, s.quality) ? 1 : 0;
    if (option == "-blob") s.blob = true;
    if (option == "-help") s.help = 1;
  }
  s.isWL = window && level && slope && intercept ? 1 : 0;
  return s;
}

Settings programReading(const std::vector<Word>& words) {
  szInFile = szOutFile = szReportFile = nullptr;
  csSrc = csDst = CSize(0, 0);
  bSrcSize = bDstSize = bInColorType = bOutColorType = 0;
  nInputColorType = nOutputColorType = COLOR_TYPE_C08;
  nWindow = nLevel = bWL = bInvert = m_nJpgQuality = m_bHasJpgQuality = helpOnly = 0;
  dSlope = dIntercept = 0.0;
  bBlob = false;
  ReadArgs(static_cast<int>(words.size()) - 1, words.data());
  return {.in = szInFile,
          .out = szOutFile,
          .report = szReportFile,
          .srcX = csSrc.cx,
          .srcY = csSrc.cy,
          .dstX = csDst.cx,
          .dstY = csDst.cy,
          .hasSrc = bSrcSize,
          .hasDst = bDstSize,
          .inColor = nInputColorType,
          .hasInColor = bInColorType,
          .outColor = nOutputColorType,
          .hasOutColor = bOutColorType,
          .window = nWindow,
          .level = nLevel,
          .quality = m_nJpgQuality,
          .slope = dSlope,
          .intercept = dIntercept,
          .isWL = bWL,
          .invert = bInvert,
          .hasQuality = m_bHasJpgQuality,
          .help = helpOnly,
          .blob = bBlob};
}

void checkNumbers(Word word) {
  int wantedInt = 7, gotInt = 7;
  require(ei4::scanInt(word, gotInt) == plainInt(word, wantedInt) && gotInt == wantedInt,
          "ints as sscanf reads them");
  float wantedFloat = 7, gotFloat = 7;
  require(ei4::scanFloat(word, gotFloat) == plainFloat(word, wantedFloat) &&
              sameNumber(static_cast<double>(gotFloat), static_cast<double>(wantedFloat)),
          "reals as sscanf reads them");
  long x = 7, y = 7;
  CSize size(7, 7);
  require(ei4::scanGeometry(word, size) == plainGeometry(word, x, y) && size == tagSIZE{x, y},
          "geometries as sscanf reads them");
}

void checkPath(Word word) {
  const std::string_view path = word;
  const std::size_t dot = path.rfind('.');
  const std::string_view extension = dot == std::string_view::npos ? "" : path.substr(dot);
  require((IsJpg(word) != 0) == (extension == ".jpg") && (IsEI4(word) != 0) == (extension == ".ei4") &&
              (IsRAW(word) != 0) == (extension == ".raw"),
          "a path's kind is that of its extension");
}

void tryTools(const std::vector<std::string_view>& words) {
  try {
    const auto request = ei4::erblb::parseCommandLine(words);
    const bool needsContainer =
        request.command != ei4::erblb::Command::help && request.command != ei4::erblb::Command::version;
    require(!needsContainer || words.size() >= 2, "a job names its container");
  } catch (const ei4::erblb::UsageError&) {
  }
  try {
    ei4::tools::parseRequest(words);
  } catch (const ei4::tools::UsageError&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::silence();
  const std::string text = ei4::fuzz::Input(data, size).text();
  std::vector<std::string> texts;
  for (std::size_t start = 0; start < text.size() && texts.size() < kMostWords;) {
    const std::size_t end = std::min(text.find('\0', start), text.size());
    texts.push_back(text.substr(start, end - start));
    start = end + 1;
  }

  std::vector<Word> words = {"ei4convert"};
  for (const std::string& word : texts) {
    checkNumbers(word.c_str());
    checkPath(word.c_str());
    words.push_back(word.c_str());
  }
  words.push_back(nullptr);
  require(programReading(words) == plainReading(words), "all settings are those of the plain reading");
  tryTools({texts.begin(), texts.end()});
  return 0;
}
