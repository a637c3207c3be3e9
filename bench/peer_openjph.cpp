// Reversible HTJ2K by OpenJPH: 5 decompositions, blocks of 64 x 64, one tile, one layer.
#include "contestant.h"

#if EI4_HAVE_OPENJPH
#include <openjph/ojph_arch.h>
#include <openjph/ojph_codestream.h>
#include <openjph/ojph_file.h>
#include <openjph/ojph_mem.h>
#include <openjph/ojph_params.h>
#include <openjph/ojph_version.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "sample_lines.h"

namespace ei4::bench {
namespace {

using ojph::ui32;

constexpr ui32 kColours = 3;

void describe(const Picture& picture, ojph::codestream& stream) {
  const ui32 components = picture.bytesPerPixel == 3 ? kColours : 1;
  auto sizes = stream.access_siz();
  sizes.set_image_extent(ojph::point(static_cast<ui32>(picture.width), static_cast<ui32>(picture.height)));
  sizes.set_num_components(components);
  for (ui32 i = 0; i < components; ++i) {
    sizes.set_component(i, ojph::point(1, 1), static_cast<ui32>(picture.bitsPerSample), false);
  }
  auto style = stream.access_cod();
  style.set_num_decomposition(5);
  style.set_block_dims(64, 64);
  style.set_reversible(true);
  style.set_color_transform(components == kColours);
  stream.set_planar(false);
}

/// Hands line after line of each component to the library, which says which component it wants next.
void giveLines(const Picture& picture, ojph::codestream& stream) {
  const auto width = static_cast<std::size_t>(picture.width);
  const ui32 components = picture.bytesPerPixel == 3 ? kColours : 1;
  const unsigned char* row = picture.pixels.data();
  ui32 component = 0;
  auto* line = stream.exchange(nullptr, component);
  for (int y = 0; y < picture.height; ++y) {
    for (ui32 i = 0; i < components; ++i) {
      if (picture.bytesPerPixel == 2) {
        unpackWords(row, width, line->i32);
      } else {
        unpackBytes(row + component, components, width, line->i32);
      }
      line = stream.exchange(line, component);
    }
    row += width * static_cast<std::size_t>(picture.bytesPerPixel);
  }
}

void takeGrey(ojph::codestream& stream, std::size_t width, std::size_t height, std::span<unsigned char> out) {
  const bool words = out.size() == 2 * width * height;
  unsigned char* row = out.data();
  for (std::size_t y = 0; y < height; ++y) {
    ui32 component = 0;
    const auto* line = stream.pull(component);
    if (words) {
      packWords(line->i32, width, row);
      row += 2 * width;
    } else {
      packBytes(line->i32, width, row);
      row += width;
    }
  }
}

void takeColour(ojph::codestream& stream, std::size_t width, std::size_t height, unsigned char* row) {
  // The three lines of a row stand beside one another in the library until the next row is asked for.
  for (std::size_t y = 0; y < height; ++y, row += kColours * width) {
    std::array<const std::int32_t*, kColours> lines{};
    for (ui32 i = 0; i < kColours; ++i) {
      ui32 component = 0;
      const auto* line = stream.pull(component);
      lines.at(component) = line->i32;
    }
    packColours(lines[0], lines[1], lines[2], width, row);
  }
}

/// Coded bytes in memory. The library's own class for it calls a virtual function in its constructor.
class Source final : public ojph::infile_base {
 public:
  explicit Source(const Bytes& coded) : bytes(coded) {}

  std::size_t read(void* to, std::size_t most) override {
    const std::size_t count = std::min(most, bytes.size() - at);
    std::memcpy(to, bytes.data() + at, count);
    at += count;
    return count;
  }

  int seek(ojph::si64 offset, enum seek origin) override {
    const auto size = static_cast<ojph::si64>(bytes.size());
    const ojph::si64 base = origin == OJPH_SEEK_SET ? 0 : origin == OJPH_SEEK_END ? size : tell();
    if (base + offset < 0 || base + offset > size) return -1;
    at = static_cast<std::size_t>(base + offset);
    return 0;
  }

  ojph::si64 tell() override { return static_cast<ojph::si64>(at); }
  bool eof() override { return at >= bytes.size(); }

 private:
  const Bytes& bytes;
  std::size_t at = 0;
};

class OpenJph final : public Contestant {
 public:
  std::string key() const override { return "openjph"; }
  std::string title() const override {
    return "OpenJPH " + std::to_string(OPENJPH_VERSION_MAJOR) + "." + std::to_string(OPENJPH_VERSION_MINOR) +
           "." + std::to_string(OPENJPH_VERSION_PATCH);
  }

  Bytes code(const Picture& picture) const override {
    ojph::codestream stream;
    describe(picture, stream);
    ojph::mem_outfile file;
    file.open();
    stream.write_headers(&file);
    giveLines(picture, stream);
    stream.flush();
    const auto* coded = file.get_data();
    Bytes bytes(coded, coded + file.tell());
    stream.close();
    return bytes;
  }

  void decode(const Bytes& coded, std::span<unsigned char> out) const override {
    Source file(coded);
    ojph::codestream stream;
    stream.read_headers(&file);
    stream.set_planar(false);
    stream.create();
    const auto sizes = stream.access_siz();
    const std::size_t width = sizes.get_recon_width(0);
    const std::size_t height = sizes.get_recon_height(0);
    if (sizes.get_num_components() == kColours) {
      takeColour(stream, width, height, out.data());
    } else {
      takeGrey(stream, width, height, out);
    }
    stream.close();
  }
};

}  // namespace

std::unique_ptr<Contestant> makeOpenJph() { return std::make_unique<OpenJph>(); }

}  // namespace ei4::bench

#else

std::unique_ptr<ei4::bench::Contestant> ei4::bench::makeOpenJph() { return nullptr; }

#endif
