#include "raw_parts.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <stdexcept>
#include <vector>

#include "gwav4/decompressor.h"
#include "gwav4/status.h"
#include "input_files.h"

namespace ei4::bench {
namespace {

double processorMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

template <class Work>
double leastMilliseconds(int runs, const Work& work) {
  double least = std::numeric_limits<double>::infinity();
  for (int i = 0; i < runs; ++i) {
    const double start = processorMilliseconds();
    work();
    least = std::min(least, processorMilliseconds() - start);
  }
  return least;
}

}  // namespace

double decodeMilliseconds(const std::filesystem::path& image, int runs) {
  using zel::gwav4::CGWavDecompressor;
  const auto file = readFile(image, std::numeric_limits<std::size_t>::max());
  const unsigned char* stream = file.data() + kPreambleBytes;
  const std::size_t coded = file.size() - kHeadBytes;
  const CGWavDecompressor sizes(stream, coded, 0, 0);
  std::vector<unsigned char> pixels(static_cast<std::size_t>(sizes.getXSize()) *
                                    static_cast<std::size_t>(sizes.getYSize()) *
                                    static_cast<std::size_t>(sizes.getBytesPerPixel()));
  return leastMilliseconds(runs, [&] {
    CGWavDecompressor decoder(stream, coded, 0, 0);
    if (decoder.decompress(pixels.data(), pixels.size(), 0) != zel::gwav4::kComplete) {
      throw std::runtime_error("not decoded: " + image.string());
    }
  });
}

double writeMilliseconds(const std::filesystem::path& path, std::size_t bytes, int runs) {
  const std::vector<unsigned char> pixels(bytes, 0x40);
  return leastMilliseconds(runs, [&] {
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) throw std::runtime_error("not written: " + path.string());
    const std::size_t written = std::fwrite(pixels.data(), 1, pixels.size(), file);
    if (std::fclose(file) != 0 || written != bytes) throw std::runtime_error("not written: " + path.string());
  });
}

}  // namespace ei4::bench
