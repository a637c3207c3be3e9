// Decodes the picture of a plain .ei4 file into a PGM or PPM: ei4_to_pnm IN.ei4 OUT
#include <gwav4/decompressor.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace gw = zel::gwav4;

int main(int argc, char** argv) try {
  if (argc != 3) throw std::runtime_error("usage: ei4_to_pnm IN.ei4 OUT");
  std::ifstream in(argv[1], std::ios::binary);
  const std::vector<unsigned char> file{std::istreambuf_iterator<char>(in), {}};

  // In front of the stream: a preamble with the window, whose bytes 6 and 7 hold its length, lowest byte first.
  const std::size_t preamble = file.size() > 40 ? file[6] + 256U * file[7] : 0;
  if (preamble < 24 || preamble + gw::kHeaderBytes > file.size()) throw std::runtime_error("no .ei4 file");

  // 0: not reduced. getBestFactor of gwav4/header.h finds the number of halvings for a width that is wanted.
  gw::CGWavDecompressor decoder(file.data() + preamble, file.size() - preamble - gw::kHeaderBytes, 0, 0);
  const int bytes = decoder.getBytesPerPixel();
  const int bits = decoder.getBitsPerPixel();
  if (bytes < 1 || bytes > 3 || bits < 1 || bits > (bytes == 2 ? 16 : 8))
    throw std::runtime_error("no pixels");
  // The sizes are only a claim: beyond 64 megapixels the file must have some bytes to show for them.
  const std::size_t count = std::size_t(decoder.getXSize()) * std::size_t(decoder.getYSize());
  if (count < 1 || (count > 1 << 26 && count / 256 > file.size())) throw std::runtime_error("no such size");

  std::vector<unsigned char> pixels(count * std::size_t(bytes));
  const int status = decoder.decompress(pixels.data(), pixels.size(), 0);
  if (status != gw::kComplete && status != gw::kPartial) throw std::runtime_error("damaged");
  if (status == gw::kPartial) std::fputs("ei4_to_pnm: note: the file is cut, detail is missing\n", stderr);

  if (bytes == 2)  // 16-bit samples come in the machine's byte order, a PGM has the highest byte first
    for (std::size_t i = 0; i < pixels.size(); i += 2) {
      std::uint16_t sample = 0;
      std::memcpy(&sample, &pixels[i], sizeof sample);
      pixels[i] = static_cast<unsigned char>(sample >> 8);
      pixels[i + 1] = static_cast<unsigned char>(sample);
    }
  std::ofstream out(argv[2], std::ios::binary);
  out << (bytes == 3 ? "P6\n" : "P5\n") << decoder.getXSize() << ' ' << decoder.getYSize() << '\n';
  out << (1 << bits) - 1 << '\n';
  out.write(reinterpret_cast<const char*>(pixels.data()), static_cast<std::streamsize>(pixels.size()));
  if (!out.flush()) throw std::runtime_error("the picture could not be written");
} catch (const std::exception& error) {
  return std::fprintf(stderr, "ei4_to_pnm: %s\n", error.what()), 1;
}
