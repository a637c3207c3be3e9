#include "ei4make/picture.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string>

namespace ei4::tools {

namespace {

constexpr int kMostSide = 65535;
constexpr int kMostValue = 65535;

/// The header of a PGM or PPM: words apart by white space, with comments from "#" to the end of a line.
class PnmHeader {
 public:
  explicit PnmHeader(std::span<const unsigned char> file) : file_(file) {}

  /// A number of 1..most.
  int number(int most, const char* what) {
    skipBlanks();
    int value = 0;
    bool hasDigit = false;
    while (at_ < file_.size() && std::isdigit(file_[at_]) != 0) {
      value = std::min(most + 1, value * 10 + (file_[at_++] - '0'));  // a long number stays too large
      hasDigit = true;
    }
    if (!hasDigit) throw PictureError(std::string("the header has no ") + what);
    if (value < 1 || value > most) {
      throw PictureError(std::string("the ") + what + " is not 1 to " + std::to_string(most));
    }
    return value;
  }

  /// The samples, behind the single white space that ends the header.
  std::span<const unsigned char> samples() {
    if (at_ >= file_.size() || std::isspace(file_[at_]) == 0) throw PictureError("the header does not end");
    return file_.subspan(at_ + 1);
  }

 private:
  void skipBlanks() {
    while (at_ < file_.size() && (std::isspace(file_[at_]) != 0 || file_[at_] == '#')) {
      if (file_[at_] == '#') {
        while (at_ < file_.size() && file_[at_] != '\n' && file_[at_] != '\r') ++at_;
      } else {
        ++at_;
      }
    }
  }

  std::span<const unsigned char> file_;
  std::size_t at_ = 2;  // behind the magic
};

std::size_t sampleCount(const Picture& picture) {
  return picture.pixels.size() / (picture.bytesPerPixel == 2 ? 2 : 1);
}

int sampleAt(const Picture& picture, std::size_t i) {
  if (picture.bytesPerPixel != 2) return picture.pixels[i];
  std::uint16_t value = 0;
  std::memcpy(&value, picture.pixels.data() + 2 * i, 2);
  return value;
}

int largestSample(const Picture& picture) {
  int largest = 0;
  for (std::size_t i = 0; i < sampleCount(picture); ++i) largest = std::max(largest, sampleAt(picture, i));
  return largest;
}

std::size_t byteCount(const Picture& picture) {
  return static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
         static_cast<std::size_t>(picture.bytesPerPixel);
}

void highByteFirstToHost(std::vector<unsigned char>& pixels) {
  for (std::size_t i = 0; i + 1 < pixels.size(); i += 2) {
    const auto value = static_cast<std::uint16_t>(pixels[i] << 8 | pixels[i + 1]);
    std::memcpy(&pixels[i], &value, 2);
  }
}

int bitsOf(int value) { return std::max(1, static_cast<int>(std::bit_width(static_cast<unsigned>(value)))); }

}  // namespace

bool looksLikePnm(std::span<const unsigned char> file) {
  return file.size() >= 3 && file[0] == 'P' && (file[1] == '5' || file[1] == '6') &&
         (std::isspace(file[2]) != 0 || file[2] == '#');
}

Picture readPnm(std::span<const unsigned char> file) {
  if (!looksLikePnm(file)) throw PictureError("neither a binary PGM (P5) nor a binary PPM (P6)");
  const bool isColour = file[1] == '6';
  PnmHeader header(file);
  Picture picture;
  picture.width = header.number(kMostSide, "width");
  picture.height = header.number(kMostSide, "height");
  const int most = header.number(kMostValue, "largest value");
  if (isColour && most > 255) throw PictureError("colour has 8 bits a component: this PPM has more");
  picture.bytesPerPixel = isColour ? 3 : (most > 255 ? 2 : 1);
  picture.bitsPerPixel = bitsOf(most);

  const std::span<const unsigned char> samples = header.samples();
  const std::size_t bytes = byteCount(picture);
  if (samples.size() < bytes) throw PictureError("the file ends before its last pixel");
  picture.pixels.assign(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(bytes));
  if (picture.bytesPerPixel == 2) highByteFirstToHost(picture.pixels);
  if (largestSample(picture) > most) throw PictureError("a sample is above the largest value of the header");
  return picture;
}

Picture readRaw(std::span<const unsigned char> file, int width, int height, int bytesPerPixel) {
  Picture picture{width, height, bytesPerPixel, bytesPerPixel == 2 ? 16 : 8, {}};
  if (file.size() != byteCount(picture)) {
    throw PictureError("the file has " + std::to_string(file.size()) +
                       " bytes, a raw picture of this size has " + std::to_string(byteCount(picture)));
  }
  picture.pixels.assign(file.begin(), file.end());
  return picture;
}

void stateBits(Picture& picture, int bits) {
  if (bits < 1 || bits > (picture.bytesPerPixel == 2 ? 16 : 8)) {
    throw PictureError(std::to_string(bits) + " significant bits are not possible in this pixel format");
  }
  const int largest = largestSample(picture);
  if (bitsOf(largest) > bits) {
    throw PictureError("the value " + std::to_string(largest) + " does not fit " + std::to_string(bits) +
                       " bits");
  }
  picture.bitsPerPixel = bits;
}

}  // namespace ei4::tools
