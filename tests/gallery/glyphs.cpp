#include "gallery/glyphs.h"

#include "report/canvas.h"
#include "report/drawing.h"

namespace ei4::test {

namespace {

// As samples/gallery.sh writes it: every character that the gallery shows.
constexpr const char* kCharacters = "0123456789. abcdehilmnrtu ACDFHLPRUV \xc2\xb0\xc2\xb2";
constexpr Point kBaseline{4, 14};

}  // namespace

bool glyphsAreThoseOf(const std::string& path) {
  const Raster known = readPicture(path);
  Drawing drawing{Canvas(known.width, known.height)};
  drawing.text("#ffffff", kBaseline, kCharacters);
  return drawing.raster().bytes == known.bytes;
}

}  // namespace ei4::test
