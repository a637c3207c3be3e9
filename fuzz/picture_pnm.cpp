// Pictures of any origin, and a reading of PNM through a stream of characters.
#include <cctype>
#include <cstring>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "check.h"
#include "picture_checks.h"

namespace ei4::fuzz {

namespace {

using tools::Picture;
using tools::PictureError;
using Bytes = std::span<const std::uint8_t>;

std::size_t sampleCount(const Picture& picture) {
  return picture.pixels.size() / (picture.bytesPerPixel == 2 ? 2 : 1);
}

/// The header's next number; 0 stands for none and for those above 65535.
int plainNumber(std::istream& in) {
  while ((in >> std::ws).peek() == '#') {
    while (in && in.peek() != '\n' && in.peek() != '\r') in.get();
  }
  std::string digits;
  while (std::isdigit(in.peek()) != 0) digits += static_cast<char>(in.get());
  digits.erase(0, digits.find_first_not_of('0'));
  if (digits.empty() || digits.size() > 5) return 0;
  const int value = std::stoi(digits);
  return value <= 65535 ? value : 0;
}

struct PlainPnm {
  int width = 0;
  int height = 0;
  int most = 0;
  bool isColour = false;
  std::vector<int> samples;
};

std::optional<PlainPnm> plainReading(Bytes file) {
  std::istringstream in(std::string(file.begin(), file.end()));
  PlainPnm pnm;
  const int p = in.get();
  const int kind = in.get();
  if (p != 'P' || (kind != '5' && kind != '6') || (std::isspace(in.peek()) == 0 && in.peek() != '#'))
    return {};
  pnm.isColour = kind == '6';
  pnm.width = plainNumber(in);
  pnm.height = plainNumber(in);
  pnm.most = plainNumber(in);
  if (pnm.width == 0 || pnm.height == 0 || pnm.most == 0 || (pnm.isColour && pnm.most > 255)) return {};
  if (std::isspace(in.get()) == 0) return {};
  const std::size_t count =
      static_cast<std::size_t>(pnm.width) * static_cast<std::size_t>(pnm.height) * (pnm.isColour ? 3 : 1);
  while (pnm.samples.size() < count) {
    int sample = in.get();
    if (pnm.most > 255) sample = sample * 256 + in.get();
    if (!in || sample > pnm.most) return {};
    pnm.samples.push_back(sample);
  }
  return pnm;
}

bool canStateBits(Picture picture, int bits) {
  try {
    stateBits(picture, bits);
    return picture.bitsPerPixel == bits;
  } catch (const PictureError&) {
    return false;
  }
}

}  // namespace

int sampleAt(const Picture& picture, std::size_t i) {
  if (picture.bytesPerPixel != 2) return picture.pixels[i];
  std::uint16_t sample = 0;
  std::memcpy(&sample, &picture.pixels[2 * i], 2);
  return sample;
}

void checkPicture(const Picture& picture) {
  require(picture.width >= 1 && picture.width <= 65535 && picture.height >= 1 && picture.height <= 65535,
          "sides are 1 to 65535");
  require(picture.bytesPerPixel >= 1 && picture.bytesPerPixel <= 3 && picture.bitsPerPixel >= 1 &&
              picture.bitsPerPixel <= (picture.bytesPerPixel == 2 ? 16 : 8),
          "a format is 1 to 3 bytes, and has bits for these");
  require(picture.pixels.size() == static_cast<std::size_t>(picture.width) *
                                       static_cast<std::size_t>(picture.height) *
                                       static_cast<std::size_t>(picture.bytesPerPixel),
          "a picture has the bytes that its sides and format make");
  int all = 0;
  for (std::size_t i = 0; i < sampleCount(picture); ++i) all |= sampleAt(picture, i);
  require(all >> picture.bitsPerPixel == 0, "no sample is beyond the bits");
  for (int bits = 0; bits <= 17; ++bits) {
    const bool isPossible = bits >= 1 && bits <= (picture.bytesPerPixel == 2 ? 16 : 8);
    require(canStateBits(picture, bits) == (isPossible && all >> bits == 0),
            "the bits that can be stated are those that samples fit");
  }
  const Picture raw = tools::readRaw(picture.pixels, picture.width, picture.height, picture.bytesPerPixel);
  require(raw.pixels == picture.pixels, "raw pixels are taken as they are");
}

void tryPnm(Bytes file) {
  const auto plain = plainReading(file);
  Picture picture;
  try {
    picture = tools::readPnm(file);
  } catch (const PictureError&) {
    require(!plain, "what the plain reading takes is taken");
    return;
  }
  require(plain.has_value(), "what the plain reading refuses is refused");
  checkPicture(picture);
  require(picture.width == plain->width && picture.height == plain->height, "the sides of the plain reading");
  require(picture.bytesPerPixel == (plain->isColour     ? 3
                                    : plain->most > 255 ? 2
                                                        : 1),
          "the format of the plain reading");
  require(plain->most >> picture.bitsPerPixel == 0 && plain->most >> (picture.bitsPerPixel - 1) == 1,
          "as many bits as the largest value has");
  require(plain->samples.size() == sampleCount(picture), "the samples of the plain reading");
  for (std::size_t i = 0; i < plain->samples.size(); ++i) {
    require(sampleAt(picture, i) == plain->samples[i], "the samples of the plain reading");
  }
}

}  // namespace ei4::fuzz
