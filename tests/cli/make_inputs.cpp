// Makes the inputs of the golden runs, and the pictures that their outputs are compared with.
// Usage: cli_inputs FOLDER

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "encoder/ei4_writer.h"
#include "encoder/gw_encoder.h"

namespace {

using Bytes = std::vector<unsigned char>;
using ei4::tools::Ei4Preamble;
using Sample = std::function<int(int x, int y)>;

std::filesystem::path folder;

void save(const std::string& name, const Bytes& bytes) {
  const auto path = folder / name;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

void saveText(const std::string& name, const std::string& text) {
  save(name, Bytes(text.begin(), text.end()));
}

// Pixels of `width` bytes each, little-endian.
Bytes picture(int columns, int rows, int width, const Sample& sample) {
  Bytes bytes;
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) {
      for (int byte = 0; byte < width; ++byte)
        bytes.push_back(static_cast<unsigned char>(sample(x, y) >> (8 * byte)));
    }
  }
  return bytes;
}

Bytes coded(const Bytes& pixels, int columns, int rows, int bytesPerPixel, int bits,
            const Ei4Preamble& preamble) {
  ei4::tools::EncodeOptions options;
  options.bytesPerPixel = bytesPerPixel;
  options.bitsPerPixel = bits;
  return ei4::tools::writeEi4(preamble, ei4::tools::encode(pixels, columns, rows, options));
}

void append(Bytes& bytes, std::uint64_t value, int width) {
  for (int i = 0; i < width; ++i) bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

// A container of one entry.
Bytes container(const std::string& name, const Bytes& payload) {
  Bytes bytes = {'E', 'R', 'B', 'L', 1, 0, 0, 0};
  bytes.resize(124);
  append(bytes, 1, 4);
  append(bytes, name.size(), 2);
  bytes.insert(bytes.end(), name.begin(), name.end());
  append(bytes, payload.size(), 4);
  append(bytes, 0, 8);
  bytes.insert(bytes.end(), payload.begin(), payload.end());
  return bytes;
}

Bytes part(const Bytes& bytes, std::size_t from, std::size_t to) {
  return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from),
               bytes.begin() + static_cast<std::ptrdiff_t>(to));
}

// The window/level mapping, in whole numbers that do not overflow.
int windowed(int value, int lo, int hi, int top) {
  if (value < lo) return 0;
  return value >= hi ? top : (value - lo) * top / (hi - lo);
}

constexpr Ei4Preamble kFull8{.window = 256, .level = 128};

// grey: 64 x 48, 8 bits, 0 to 236.
void makeGrey() {
  const Sample grey = [](int x, int y) { return 3 * x + y; };
  const Bytes pixels = picture(64, 48, 1, grey);
  save("grey.raw", pixels);
  save("grey_short.raw", part(pixels, 0, 100));
  Bytes padded = part(pixels, 0, 100);
  padded.resize(pixels.size());
  save("grey_padded.raw", padded);
  Bytes several = pixels;
  for (int i = 0; i < 2; ++i) several.insert(several.end(), pixels.begin(), pixels.end());
  save("grey_three_times.raw", several);

  save("grey_windowed.raw",
       picture(64, 48, 1, [&](int x, int y) { return windowed(grey(x, y), 0, 256, 255); }));
  save("grey_inverted.raw",
       picture(64, 48, 1, [&](int x, int y) { return 255 - windowed(grey(x, y), 0, 256, 255); }));
  save("grey_as_colour.raw",
       picture(64, 48, 3, [&](int x, int y) { return windowed(grey(x, y), 0, 256, 255) * 0x010101; }));

  const Bytes file = coded(pixels, 64, 48, 1, 8, kFull8);
  save("grey.ei4", file);
  save("GREY.EI4", file);
  save("GREY_first_64.raw", part(file, 0, 64));
  save("forty.ei4", part(file, 0, 40));
  Bytes foreign = file;
  foreign[24 + 3] = '2';
  save("foreign.ei4", foreign);
  Bytes undecodable = file;
  undecodable[24 + 4] = 9;  // bytes per pixel
  save("undecodable.ei4", undecodable);
  undecodable.resize(3 * pixels.size());  // its size in colour, the format of every strange byte count
  for (auto& byte : undecodable) byte = static_cast<unsigned char>(windowed(byte, 0, 256, 255));
  save("undecodable_as_raw.raw", undecodable);

  Bytes huge = part(file, 0, 300);
  for (std::size_t i = 6; i < 10; ++i) huge[24 + i] = 0xFF;  // 65535 x 65535
  save("huge.ei4", huge);

  Ei4Preamble longPreamble = kFull8;
  longPreamble.length = 32;
  const Bytes longFile = coded(pixels, 64, 48, 1, 8, longPreamble);
  save("long_preamble.ei4", longFile);
  save("study/full.erblb", container("img.ei4", longFile));
  save("split/initial.erblb", container("img.t.ei4", part(file, 0, 100)));
  save("split/full.erblb", container("img.f.ei4", part(file, 100, file.size())));
}

// ct: 512 x 512, 12 bits; the preamble's window shows the stored values 864 to 1264.
void makeCt() {
  const Sample ct = [](int x, int y) { return 600 + x + y / 2; };
  const Bytes pixels = picture(512, 512, 2, ct);
  const Ei4Preamble preamble{.intercept = -1024, .slope = 1, .window = 400, .level = 40};
  save("ct.raw", pixels);
  save("ct.ei4", coded(pixels, 512, 512, 2, 12, preamble));
  save("ct_wide.raw",
       picture(512, 512, 2, [&](int x, int y) { return windowed(ct(x, y), 864, 1264, 65535); }));
  save("ct_8.raw", picture(512, 512, 1, [&](int x, int y) { return windowed(ct(x, y), 864, 1264, 255); }));
  save("ct_8_inverted.raw",
       picture(512, 512, 1, [&](int x, int y) { return 255 - windowed(ct(x, y), 864, 1264, 255); }));
}

// flat: 256 x 200, 8 bits, 100 everywhere, so at every size. Through the table 100 * 255 / 256 = 99.
void makeFlat() {
  const Bytes pixels = picture(256, 200, 1, [](int, int) { return 100; });
  save("flat.raw", pixels);
  save("flat.ei4", coded(pixels, 256, 200, 1, 8, kFull8));
}

// columns: 64 x 64, 8 bits, 0 and 200 in turn: halved by averaging it is 100 everywhere.
void makeColumns() {
  save("columns.raw", picture(64, 64, 1, [](int x, int) { return x % 2 * 200; }));
}

// colour: 96 x 64, three components that differ.
void makeColour() {
  Bytes pixels;
  Bytes mapped;
  for (int y = 0; y < 64; ++y) {
    for (int x = 0; x < 96; ++x) {
      for (const int component : {2 * x, 3 * y, 250 - x - y}) {
        pixels.push_back(static_cast<unsigned char>(component));
        mapped.push_back(static_cast<unsigned char>(windowed(component, 0, 256, 255)));
      }
    }
  }
  save("colour.raw", pixels);
  save("colour_windowed.raw", mapped);
  save("colour.ei4", coded(pixels, 96, 64, 3, 8, kFull8));
}

// Reports that show each of the images above as it is, but for the window.
void makeReports() {
  saveText("report.txt", "sized 64 48 0 0\nlight 256 128 0 0\nclip 1 0 0 64 48\n");
  saveText("report_ct.txt", "sized 512 512 0 0\nlight 400 40 0 0\nclip 1 0 0 512 512\n");
  saveText("report_ct_inverted.txt", "sized 512 512 0 0\nlight 400 40 1 0\nclip 1 0 0 512 512\n");
  saveText("report_colour.txt", "sized 96 64 0 0\nlight 256 128 0 0\nclip 1 0 0 96 64\n");
  saveText("report_flat.txt", "sized 256 200 0 0\nlight 256 128 0 0\nclip 1 0 0 256 200\n");
  saveText("report_flat_without_a_clip.txt", "sized 256 200 0 0\nlight 256 128 0 0\n");
  saveText(
      "report_ruler.txt",
      "sized 64 48 0 0\nlight 256 128 0 0\nclip 1 0 0 64 48\nruler 1 ff 10 20 0 0 0 0 0 0 | 50 20 4cm\n");
  saveText("report_of_no_view.txt", "clip 1 0 0 64 48\n");
  saveText("report_of_no_orientation.txt", "sized 64 48 0 8\nlight 256 128 0 0\nclip 1 0 0 64 48\n");
  saveText("report_huge.txt", "sized 64 48 0 0\nlight 256 128 0 0\nclip 1 0 0 2000000000 2000000000\n");
  saveText("report_wide.txt", "sized 10000 10000 0 0\nlight 256 128 0 0\nclip 1 0 0 10000 10000\n");
  saveText("report_empty.txt", "");
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 2) throw std::runtime_error("usage: cli_inputs FOLDER");
  folder = argv[1];
  std::filesystem::remove_all(folder);
  makeGrey();
  makeCt();
  makeFlat();
  makeColumns();
  makeColour();
  makeReports();
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "cli_inputs: %s\n", error.what());
  return 2;
}
