// PNG, against the library's own reading of a whole picture.
#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstring>
#include <vector>

#include "check.h"
#include "driver/picture_limit.h"
#include "ei4make/png_picture.h"
#include "picture_checks.h"

namespace ei4::fuzz {

namespace {

using tools::Picture;
using tools::PictureError;
using Bytes = std::span<const std::uint8_t>;

/// What is left to read.
struct Rest {
  const std::uint8_t* data;
  std::size_t size;
};

extern "C" {

[[noreturn]] static void leave(png_structp png, png_const_charp) { png_longjmp(png, 1); }

static void ignore(png_structp, png_const_charp) {}

static void take(png_structp png, png_bytep out, size_t count) {
  auto* rest = static_cast<Rest*>(png_get_io_ptr(png));
  if (rest->size < count) png_error(png, "");
  std::memcpy(out, rest->data, count);
  rest->data += count;
  rest->size -= count;
}

}  // extern "C"

// Holds nothing that a jump would leave undone. No sides but these will do. Of other chunks it takes what
// the code under test does: others may claim gigabytes, and get them.
bool readWhole(png_structp png, png_infop info, png_uint_32 width, png_uint_32 height) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  png_set_user_limits(png, width, height);
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_AS_DEFAULT, reinterpret_cast<png_const_bytep>("sBIT"), 1);
  png_read_png(png, info, PNG_TRANSFORM_EXPAND, nullptr);
  return png_get_image_width(png, info) == width && png_get_image_height(png, info) == height;
}

/// All samples, with the alpha channel where there is one.
class WholePng {
 public:
  WholePng(Bytes file, std::size_t width, std::size_t height)
      : m_rest{file.data(), file.size()},
        m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore)),
        m_info(png_create_info_struct(m_png)) {
    png_set_read_fn(m_png, &m_rest, take);
    m_isRead = readWhole(m_png, m_info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height));
    if (!m_isRead) return;
    m_channels = png_get_channels(m_png, m_info);
    m_sampleBytes = png_get_bit_depth(m_png, m_info) / 8U;
    m_colours = m_channels >= 3 ? 3 : 1;
  }
  WholePng(const WholePng&) = delete;
  WholePng& operator=(const WholePng&) = delete;
  ~WholePng() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

  bool isRead() const { return m_isRead; }
  std::size_t width() const { return png_get_image_width(m_png, m_info); }
  std::size_t height() const { return png_get_image_height(m_png, m_info); }
  std::size_t sampleBytes() const { return m_sampleBytes; }
  std::size_t colours() const { return m_colours; }

  /// Of grey; 0 when the file does not say.
  int statedBits() const {
    png_color_8p bits = nullptr;
    return m_colours == 1 && png_get_sBIT(m_png, m_info, &bits) != 0 ? bits->gray : 0;
  }

  int sample(std::size_t x, std::size_t y, std::size_t channel) const {
    const std::uint8_t* at = png_get_rows(m_png, m_info)[y] + (x * m_channels + channel) * m_sampleBytes;
    return m_sampleBytes == 1 ? at[0] : at[0] * 256 + at[1];
  }
  bool isOpaque() const {
    if (m_colours == m_channels) return true;
    for (std::size_t y = 0; y < height(); ++y) {
      for (std::size_t x = 0; x < width(); ++x) {
        if (sample(x, y, m_colours) != (m_sampleBytes == 1 ? 0xFF : 0xFFFF)) return false;
      }
    }
    return true;
  }

 private:
  Rest m_rest;
  png_structp m_png;
  png_infop m_info;
  bool m_isRead = false;
  std::size_t m_channels = 0;
  std::size_t m_sampleBytes = 0;
  std::size_t m_colours = 0;
};

/// What stands where a PNG has its width and height.
struct ClaimedSides {
  std::size_t width = 0;
  std::size_t height = 0;
};

ClaimedSides claimedSides(Bytes file) {
  std::size_t sides[2] = {0, 0};
  for (std::size_t i = 0; i < 8 && 16 + i < file.size(); ++i) sides[i / 4] = sides[i / 4] << 8 | file[16 + i];
  return {sides[0], sides[1]};
}

bool mayClaim(ClaimedSides sides, std::size_t bytes) {
  return sides.width <= 65535 && sides.height <= 65535 &&
         ei4::inputMayClaim(CSize(static_cast<int>(sides.width), static_cast<int>(sides.height)),
                            static_cast<std::int64_t>(bytes));
}

/// In one of the three ways to make 16 bits of fewer.
bool isScaledUp(int sample, int bits) {
  const int value = sample >> (16 - bits);
  const int zerosBehind = value << (16 - bits);
  const int repeated = zerosBehind + (value >> (2 * bits - 16));
  const auto inProportion = static_cast<int>(std::lround(value * 65535.0 / ((1 << bits) - 1)));
  return sample == zerosBehind || sample == repeated || sample == inProportion;
}

/// Of a sample: those that the file states for 16-bit grey, unless some sample is not one of so many bits scaled up.
int significantBits(const WholePng& whole) {
  if (whole.sampleBytes() == 1) return 8;
  const int stated = whole.statedBits();
  if (stated <= 8 || stated >= 16) return 16;
  for (std::size_t y = 0; y < whole.height(); ++y) {
    for (std::size_t x = 0; x < whole.width(); ++x) {
      if (!isScaledUp(whole.sample(x, y, 0), stated)) return 16;
    }
  }
  return stated;
}

void compare(const Picture& picture, const WholePng& whole) {
  require(whole.isRead(), "what the library refuses is refused");
  require(whole.isOpaque(), "transparent pixels are refused");
  require(static_cast<std::size_t>(picture.width) == whole.width() &&
              static_cast<std::size_t>(picture.height) == whole.height(),
          "the sides are the library's");
  require(static_cast<std::size_t>(picture.bytesPerPixel) == whole.colours() * whole.sampleBytes(),
          "the format is the library's");
  const int bits = significantBits(whole);
  require(picture.bitsPerPixel == bits, "as many bits as the file states truthfully");
  const int scale = picture.bytesPerPixel == 2 ? 16 - bits : 0;
  std::size_t i = 0;
  for (std::size_t y = 0; y < whole.height(); ++y) {
    for (std::size_t x = 0; x < whole.width(); ++x) {
      for (std::size_t c = 0; c < whole.colours(); ++c) {
        const int sample = whole.sample(x, y, c);
        require(sampleAt(picture, i++) == sample >> scale, "the samples are the library's");
      }
    }
  }
}

}  // namespace

void tryPng(Bytes file) {
  const ClaimedSides sides = claimedSides(file);
  const bool isAllowed = mayClaim(sides, file.size());
  if (isAllowed && sides.width * sides.height > kMostFuzzedPixels) return;
  Picture picture;
  try {
    picture = tools::readPng(file);
  } catch (const PictureError&) {
    if (!isAllowed) return;
    const WholePng whole(file, sides.width, sides.height);
    require(!whole.isRead() || !whole.isOpaque() || (whole.colours() == 3 && whole.sampleBytes() == 2),
            "what is refused is damaged, transparent, or colour with 16 bits");
    return;
  }
  checkPicture(picture);
  compare(picture, WholePng(file, sides.width, sides.height));
}

}  // namespace ei4::fuzz
