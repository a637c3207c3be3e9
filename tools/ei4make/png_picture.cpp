#include "ei4make/png_picture.h"

#include <png.h>

#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>

#include "driver/picture_limit.h"

namespace ei4::tools {

const bool kReadsPng = true;

namespace {

constexpr std::size_t kSidesOffset = 16;  // two 32-bit numbers in the first chunk, which has to be IHDR
constexpr std::uint32_t kMostSide = 65535;
constexpr png_alloc_size_t kMostChunkBytes = 1U << 20;  // of chunks other than the pixels

// libpng reports a failure by a jump. Everything that it may jump over is plain data, so that nothing is left undone: the
// jumps start and end in the functions named ...Step, which hold no objects and are called through guarded().
struct PngState {
  png_structp png = nullptr;
  png_infop info = nullptr;
  const unsigned char* data = nullptr;
  std::size_t size = 0;
  std::size_t at = 0;
  unsigned char* row = nullptr;
  char message[160] = "";
};

extern "C" {

[[noreturn]] static void onError(png_structp png, png_const_charp message) {
  auto* state = static_cast<PngState*>(png_get_error_ptr(png));
  std::strncpy(state->message, message, sizeof state->message - 1);
  png_longjmp(png, 1);
}

static void onWarning(png_structp, png_const_charp) {}

static void onRead(png_structp png, png_bytep out, size_t count) {
  auto* state = static_cast<PngState*>(png_get_io_ptr(png));
  if (state->size - state->at < count) png_error(png, "the file ends before its last pixel");
  std::memcpy(out, state->data + state->at, count);
  state->at += count;
}

}  // extern "C"

// Reads what stands in front of the pixels.
void headerStep(PngState& state) {
  png_set_read_fn(state.png, &state, onRead);
  png_set_user_limits(state.png, kMostSide, kMostSide);
  png_set_chunk_malloc_max(state.png, kMostChunkBytes);
  // All but what the pixels need is passed over: the library takes memory for what a chunk only claims to hold.
  png_set_keep_unknown_chunks(state.png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  const auto* const significantBits = reinterpret_cast<png_const_bytep>("sBIT");
  png_set_keep_unknown_chunks(state.png, PNG_HANDLE_CHUNK_AS_DEFAULT, significantBits, 1);
  png_read_info(state.png, state.info);
}

// Asks for samples of 8 or 16 bits, grey or red, green and blue, with alpha where there may be some.
void formatStep(PngState& state) {
  png_set_expand(state.png);  // palettes, few bits, transparent colours
  png_set_interlace_handling(state.png);
  png_read_update_info(state.png, state.info);
}

void rowStep(PngState& state) { png_read_row(state.png, state.row, nullptr); }

void endStep(PngState& state) { png_read_end(state.png, nullptr); }

bool succeeds(PngState& state, void (*step)(PngState&)) {
  if (setjmp(png_jmpbuf(state.png)) != 0) return false;
  step(state);
  return true;
}

class PngFile {
 public:
  explicit PngFile(std::span<const unsigned char> file) {
    state_.data = file.data();
    state_.size = file.size();
    state_.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &state_, onError, onWarning);
    if (state_.png != nullptr) state_.info = png_create_info_struct(state_.png);
    if (state_.info == nullptr) {
      png_destroy_read_struct(&state_.png, nullptr, nullptr);
      throw std::bad_alloc();
    }
  }
  PngFile(const PngFile&) = delete;
  PngFile& operator=(const PngFile&) = delete;
  ~PngFile() { png_destroy_read_struct(&state_.png, &state_.info, nullptr); }

  void perform(void (*step)(PngState&)) {
    if (!succeeds(state_, step)) throw PictureError(std::string("the PNG is damaged: ") + state_.message);
  }
  void readRow(unsigned char* row) {
    state_.row = row;
    perform(rowStep);
  }

  bool hasSides(int width, int height) const {
    return png_get_image_width(state_.png, state_.info) == static_cast<png_uint_32>(width) &&
           png_get_image_height(state_.png, state_.info) == static_cast<png_uint_32>(height);
  }
  std::size_t sampleBytes() const { return png_get_bit_depth(state_.png, state_.info) / 8U; }
  std::size_t channels() const { return png_get_channels(state_.png, state_.info); }
  bool isInterlaced() const { return png_get_interlace_type(state_.png, state_.info) != PNG_INTERLACE_NONE; }
  std::size_t rowBytes() const { return png_get_rowbytes(state_.png, state_.info); }

  /// 0 when the file does not say.
  int significantBits() const {
    png_color_8p bits = nullptr;
    const bool isGrey = (png_get_color_type(state_.png, state_.info) & PNG_COLOR_MASK_COLOR) == 0;
    if (png_get_sBIT(state_.png, state_.info, &bits) == 0 || !isGrey) return 0;
    return bits->gray;
  }

 private:
  PngState state_;
};

int sideAt(std::span<const unsigned char> file, std::size_t offset, const char* what) {
  std::uint32_t side = 0;
  for (std::size_t i = 0; i < 4; ++i) side = side << 8 | file[offset + i];
  if (side < 1 || side > kMostSide) throw PictureError(std::string("the ") + what + " is not 1 to 65535");
  return static_cast<int>(side);
}

std::uint16_t highByteFirst(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

// Appends one row, 16-bit samples as the host has them. `channels` counts the alpha channel too, which must be opaque.
void appendRow(Picture& picture, const unsigned char* row, std::size_t channels, std::size_t sampleBytes) {
  const std::size_t kept = channels >= 3 ? 3 : 1;
  const auto width = static_cast<std::size_t>(picture.width);
  if (kept == channels && sampleBytes == 1) {
    picture.pixels.insert(picture.pixels.end(), row, row + width * channels);
    return;
  }
  for (std::size_t x = 0; x < width; ++x, row += channels * sampleBytes) {
    if (sampleBytes == 1) {
      if (row[kept] != 0xFF) throw PictureError("it has transparent pixels");
      picture.pixels.insert(picture.pixels.end(), row, row + kept);
    } else {
      if (kept < channels && highByteFirst(row + 2) != 0xFFFF) {
        throw PictureError("it has transparent pixels");
      }
      const std::uint16_t sample = highByteFirst(row);
      unsigned char bytes[2];
      std::memcpy(bytes, &sample, 2);
      picture.pixels.insert(picture.pixels.end(), bytes, bytes + 2);
    }
  }
}

// A value of `bits` bits, 8 to 15, scaled up to 16 in one of the three ways that are in use.
bool isScaledUp(std::uint32_t sample, int bits) {
  const std::uint32_t value = sample >> (16 - bits);
  const std::uint32_t most = (1U << bits) - 1;
  const std::uint32_t zeros = value << (16 - bits);
  return sample == zeros || sample == (zeros | value >> (2 * bits - 16)) ||
         sample == (value * 65535 + most / 2) / most;
}

// Takes the samples back to their significant bits when that loses nothing.
void undoScaling(Picture& picture, int bits) {
  const auto forEachSample = [&picture](auto&& visit) {
    for (std::size_t i = 0; i + 1 < picture.pixels.size(); i += 2) {
      std::uint16_t sample = 0;
      std::memcpy(&sample, &picture.pixels[i], 2);
      if (!visit(sample)) return false;
      std::memcpy(&picture.pixels[i], &sample, 2);
    }
    return true;
  };
  if (!forEachSample([bits](std::uint16_t& sample) { return isScaledUp(sample, bits); })) return;
  forEachSample([bits](std::uint16_t& sample) {
    sample = static_cast<std::uint16_t>(sample >> (16 - bits));
    return true;
  });
  picture.bitsPerPixel = bits;
}

// The rows of an interlaced picture are complete with the last pass only; it is held whole from the second row on.
std::vector<unsigned char> readInterlaced(PngFile& png, int height) {
  constexpr int kPasses = 7;
  const std::size_t rowBytes = png.rowBytes();
  std::vector<unsigned char> rows;
  for (int pass = 0; pass < kPasses; ++pass) {
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
      if (pass == 0) rows.resize((y + 1) * rowBytes);
      png.readRow(&rows[y * rowBytes]);
    }
  }
  return rows;
}

}  // namespace

Picture readPng(std::span<const unsigned char> file) {
  if (file.size() < kSidesOffset + 8) throw PictureError("the PNG is damaged: it ends in its header");
  Picture picture;
  picture.width = sideAt(file, kSidesOffset, "width");
  picture.height = sideAt(file, kSidesOffset + 4, "height");
  if (!inputMayClaim(CSize(picture.width, picture.height), std::ssize(file))) {
    throw PictureError("the header claims more pixels than so short a file may");
  }
  PngFile png(file);
  png.perform(headerStep);
  // The library passes over unknown chunks in front of the header: then the sides above were not the header's.
  if (!png.hasSides(picture.width, picture.height)) {
    throw PictureError("the PNG is damaged: it does not begin with its header");
  }
  const int significantBits = png.significantBits();
  png.perform(formatStep);

  const std::size_t channels = png.channels();
  const std::size_t sampleBytes = png.sampleBytes();
  if (channels >= 3 && sampleBytes == 2) {
    throw PictureError("colour has 8 bits a component: this PNG has 16");
  }
  picture.bytesPerPixel = channels >= 3 ? 3 : static_cast<int>(sampleBytes);
  picture.bitsPerPixel = sampleBytes == 2 ? 16 : 8;

  if (png.isInterlaced()) {
    const std::vector<unsigned char> rows = readInterlaced(png, picture.height);
    for (std::size_t y = 0; y < static_cast<std::size_t>(picture.height); ++y) {
      appendRow(picture, &rows[y * png.rowBytes()], channels, sampleBytes);
    }
  } else {
    std::vector<unsigned char> row(png.rowBytes());
    for (int y = 0; y < picture.height; ++y) {
      png.readRow(row.data());
      appendRow(picture, row.data(), channels, sampleBytes);
    }
  }
  png.perform(endStep);
  if (sampleBytes == 2 && significantBits > 8 && significantBits < 16) undoScaling(picture, significantBits);
  return picture;
}

}  // namespace ei4::tools
