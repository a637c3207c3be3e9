#include "driver/options.h"

#include <cstdio>
#include <cstring>

#include "driver/scan.h"
#include "driver/settings.h"

namespace {

// What the words of one command line leave behind besides the settings.
struct Parse {
  bool window = false;  // the last "-window" held a number; likewise below
  bool level = false;
  bool slope = false;
  bool intercept = false;
  float lastReal = 0;  // of the last "-slope" or "-intercept" that held a number
};

// Quirk geometry-half-written: a refused geometry leaves its flag as it was, but the numbers read before the
// fault are already in the setting.
void readGeometry(const char* value, CSize& size, int& flag) {
  if (ei4::scanGeometry(value, size)) flag = 1;
}

// Quirk real-falls-back: "-slope" and "-intercept" share one variable, so one without a number assigns the
// number of the last that had one, of either option; 0 when none had. The result tells the two cases apart.
bool readReal(const char* value, float& lastReal, double& setting) {
  const bool parsed = ei4::scanFloat(value, lastReal);
  setting = static_cast<double>(lastReal);
  return parsed;
}

// Acts on one word. Returns how many words it takes up: 1 when it has no value, else 2.
// Quirk unknown-word-swallows: a word that is no option, "-h" and "-doAll" among them, takes the next one
// with it. Quirk help-swallows: so does "-help", although it has no value.
int readOption(const char* word, const char* value, Parse& parse) {
  const auto is = [word](const char* name) { return std::strcmp(word, name) == 0; };

  if (is("-ima")) {
    szReportFile = value;
  } else if (is("-in")) {
    szInFile = value;
  } else if (is("-out")) {
    szOutFile = value;
  } else if (is("-size")) {
    readGeometry(value, csSrc, bSrcSize);
  } else if (is("-geom")) {
    readGeometry(value, csDst, bDstSize);
  } else if (is("-incolor")) {
    bInColorType = 1;
    nInputColorType = String2Color(value);
  } else if (is("-outcolor")) {
    bOutColorType = 1;
    nOutputColorType = String2Color(value);
  } else if (is("-window")) {
    parse.window = ei4::scanInt(value, nWindow);
  } else if (is("-level")) {
    parse.level = ei4::scanInt(value, nLevel);
  } else if (is("-slope")) {
    parse.slope = readReal(value, parse.lastReal, dSlope);
  } else if (is("-intercept")) {
    parse.intercept = readReal(value, parse.lastReal, dIntercept);
  } else if (is("-invert")) {
    bInvert = 1;
    return 1;
  } else if (is("-jpgquality")) {
    // Quirk quality-flag-cleared: a later one without a number keeps the earlier
    // number and withdraws the flag.
    m_bHasJpgQuality = ei4::scanInt(value, m_nJpgQuality) ? 1 : 0;
  } else if (is("-blob")) {
    bBlob = true;
    return 1;
  } else if (is("-help")) {
    printusage();
    helpOnly = 1;
  }
  return 2;
}

}  // namespace

COLOR_TYPE String2Color(const char* name) {
  if (name == nullptr) return COLOR_TYPE_C08;
  if (std::strcmp(name, "M08") == 0) return COLOR_TYPE_M08;
  if (std::strcmp(name, "M16") == 0) return COLOR_TYPE_M16;
  return COLOR_TYPE_C08;
}

int Color2BitsUsed(COLOR_TYPE colorType) { return colorType == COLOR_TYPE_M16 ? 16 : 8; }

void ReadArgs(int count, const char* const* words) {
  bWL = 0;
  if (count <= 1) return;

  Parse parse;
  // Quirk last-word-is-null: behind the last word stands the null that ends the words.
  for (int index = 1; index < count;) index += readOption(words[index], words[index + 1], parse);

  // Quirk window-needs-all-four: and for each of the four it is the last occurrence that counts.
  bWL = parse.window && parse.level && parse.slope && parse.intercept ? 1 : 0;
}

void printusage() {
  // Quirk usage-names-no-options: "-doAll" and "-h" are none; the text is kept as its users know it.
  std::puts("   -in <inputfile> can be .ei4 or .erblb ");
  std::puts(
      "\tIf input files is erblb then it's required that the exact \n"
      "\tentry which you want to decompress is given as the file at the end of the path ");
  std::puts("   -out can .raw or .jpg in case of doAll the name will be inherited just the extension used ");
  std::puts("   -jpgquality 0-100 necessary if creating .jpg ");
  std::puts("   -blob processes specific image from blob ");
  std::puts("   -doAll same as -blob but processes all possible entries ");
  std::puts("   -h shows this print ");
}
