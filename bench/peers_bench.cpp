// Our decoder and others over the same pixels, memory to packed buffer, in one run on one processor:
//   peers_bench FOLDER [--only KEY,...] [--seconds S] [--memory kept|fresh] [--title TEXT] [--tsv FILE]
// Each cell is the time for a pixel, the least and the median; "ratio" is ours to OpenJPH.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <limits>
#include <stdexcept>
#include <string>

#include "gwav4/decompressor.h"
#include "input_files.h"
#include "interleaved.h"
#include "steady_process.h"

namespace {

using ei4::bench::Bytes;
using ei4::bench::Contestant;
using ei4::bench::Figures;
using ei4::bench::Memory;
using ei4::bench::Picture;
using Contestants = std::vector<std::unique_ptr<Contestant>>;

struct Options {
  std::string folder;
  std::string only;    // keys between commas; empty: all
  double seconds = 1;  // for each contestant and image
  Memory memory = Memory::kept;
  std::string title = "ours";
  std::string tsv;
};

struct Usage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

Options readOptions(int argc, char** argv) {
  if (argc < 2) throw Usage("no folder");
  Options options;
  options.folder = argv[1];
  for (int i = 2; i < argc; i += 2) {
    const std::string name = argv[i];
    if (i + 1 == argc) throw Usage(name + " without a value");
    const std::string value = argv[i + 1];
    if (name == "--only") {
      options.only = value;
    } else if (name == "--seconds") {
      options.seconds = std::strtod(value.c_str(), nullptr);
      if (!(options.seconds > 0)) throw Usage("--seconds " + value);
    } else if (name == "--memory") {
      if (value != "kept" && value != "fresh") throw Usage("--memory " + value);
      options.memory = value == "kept" ? Memory::kept : Memory::fresh;
    } else if (name == "--title") {
      options.title = value;
    } else if (name == "--tsv") {
      options.tsv = value;
    } else {
      throw Usage("no option " + name);
    }
  }
  return options;
}

bool isWanted(const std::string& key, const std::string& only) {
  return only.empty() || ("," + only + ",").find("," + key + ",") != std::string::npos;
}

Contestants chooseContestants(const Options& options) {
  Contestants chosen;
  const auto add = [&](std::unique_ptr<Contestant> contestant, const char* key, const char* library) {
    if (!isWanted(key, options.only)) return;
    if (contestant) {
      chosen.push_back(std::move(contestant));
    } else {
      std::printf("%s is left out: the build found no %s.\n", key, library);
    }
  };
  add(ei4::bench::makeOurs(options.title), "ours", "");
  add(ei4::bench::makeOpenJph(), "openjph", "libopenjph-dev");
  add(ei4::bench::makeOpenJpeg(), "openjpeg", "libopenjp2-7-dev");
  add(ei4::bench::makeCopy(), "copy", "");
  if (chosen.empty()) throw Usage("nothing to compare");
  return chosen;
}

int bitsOfLargest(const Bytes& pixels, int bytesPerPixel) {
  unsigned all = 0;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    all |= static_cast<unsigned>(pixels[i]) << (bytesPerPixel == 2 && i % 2 == 1 ? 8 : 0);
  }
  return std::max(1, static_cast<int>(std::bit_width(all)));
}

Picture readPicture(const std::filesystem::path& path) {
  const Bytes file = ei4::bench::readFile(path, std::numeric_limits<std::size_t>::max());
  Picture picture;
  picture.name = path.stem().string();
  picture.stream.assign(file.begin() + ei4::bench::kPreambleBytes, file.end());
  zel::gwav4::CGWavDecompressor decoder(picture.stream.data(), file.size() - ei4::bench::kHeadBytes, 0, 0);
  picture.width = decoder.getXSize();
  picture.height = decoder.getYSize();
  picture.bytesPerPixel = decoder.getBytesPerPixel();
  picture.pixels.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
                        static_cast<std::size_t>(picture.bytesPerPixel));
  if (decoder.decompress(picture.pixels.data(), picture.pixels.size(), 0) != zel::gwav4::kComplete) {
    throw std::runtime_error(path.string() + ": not decoded whole");
  }
  const int stated = picture.bytesPerPixel == 3 ? 8 : decoder.getBitsPerPixel();
  picture.bitsPerSample = std::max(stated, bitsOfLargest(picture.pixels, picture.bytesPerPixel));
  return picture;
}

/// Ours to OpenJPH over the images so far.
class Ratios {
 public:
  explicit Ratios(const Contestants& contestants) {
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      if (contestants[i]->key() == "ours") ours = static_cast<int>(i);
      if (contestants[i]->key() == "openjph") theirs = static_cast<int>(i);
    }
  }
  bool exist() const { return ours >= 0 && theirs >= 0; }

  void add(const std::vector<Figures>& figures) {
    if (!exist()) return;
    const auto& us = figures[static_cast<std::size_t>(ours)];
    const auto& them = figures[static_cast<std::size_t>(theirs)];
    ofMinima.push_back(us.minimum / them.minimum);
    ofMedians.push_back(us.median / them.median);
    std::printf("  %6.2f %6.2f", ofMinima.back(), ofMedians.back());
  }

  void printSummary() const {
    if (ofMinima.empty()) return;
    std::printf("\nours to OpenJPH      of the least   of the medians\n");
    std::printf("geometric mean %18.3f %16.3f\n", geometricMean(ofMinima), geometricMean(ofMedians));
    std::printf("largest        %18.3f %16.3f\n", *std::max_element(ofMinima.begin(), ofMinima.end()),
                *std::max_element(ofMedians.begin(), ofMedians.end()));
  }

 private:
  static double geometricMean(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values) sum += std::log(value);
    return std::exp(sum / static_cast<double>(values.size()));
  }

  int ours = -1;
  int theirs = -1;
  std::vector<double> ofMinima;
  std::vector<double> ofMedians;
};

void printHeadings(const Contestants& contestants, const Ratios& ratios) {
  std::printf("%-16s %6s", "", "");
  for (const auto& contestant : contestants) std::printf("  %25s", contestant->title().c_str());
  if (ratios.exist()) std::printf("  %13s", "ratio");
  std::printf("\n%-16s %6s", "image", "Mpx");
  for (std::size_t i = 0; i < contestants.size(); ++i)
    std::printf("  %7s %8s %8s", "bits/px", "least ns", "median");
  if (ratios.exist()) std::printf("  %6s %6s", "least", "median");
  std::printf("\n");
}

void compare(const Options& options) {
  const auto contestants = chooseContestants(options);
  std::ofstream table;
  if (!options.tsv.empty()) {
    table.open(options.tsv);
    if (!table) throw std::runtime_error(options.tsv + ": can't be written");
    table << "image\tpixels\tcodec\ttitle\tcoded_bits_per_pixel\tleast_ns_per_pixel\tmedian_ns_per_"
             "pixel\tdecodes\n";
  }
  Ratios ratios(contestants);
  printHeadings(contestants, ratios);
  for (const auto& path : ei4::bench::imagesIn(options.folder)) {
    const Picture picture = readPicture(path);
    const std::int64_t pixels = std::int64_t{picture.width} * picture.height;
    const auto figures = ei4::bench::measureInTurns(contestants, picture, options.seconds);
    std::printf("%-16s %6.2f", picture.name.c_str(), static_cast<double>(pixels) / 1e6);
    for (std::size_t i = 0; i < figures.size(); ++i) {
      const auto& [bits, minimum, median, decodes] = figures[i];
      std::printf("  %7.2f %8.3f %8.3f", bits, minimum, median);
      table << picture.name << '\t' << pixels << '\t' << contestants[i]->key() << '\t'
            << contestants[i]->title() << '\t' << bits << '\t' << minimum << '\t' << median << '\t' << decodes
            << '\n';
    }
    ratios.add(figures);
    std::printf("\n");
    std::fflush(stdout);
  }
  ratios.printSummary();
  if (!options.tsv.empty() && !table.flush()) throw std::runtime_error(options.tsv + ": not written");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = readOptions(argc, argv);
    ei4::bench::stayOnOneProcessor();
    ei4::bench::takeMemory(options.memory);
    compare(options);
  } catch (const Usage& fault) {
    std::fprintf(stderr, "peers_bench: %s\n", fault.what());
    std::fprintf(stderr, "usage: peers_bench FOLDER [--only ours,openjph,openjpeg,copy] [--seconds S]\n");
    std::fprintf(stderr, "                   [--memory kept|fresh] [--title TEXT] [--tsv FILE]\n");
    return 2;
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "peers_bench: %s\n", fault.what());
    return 1;
  }
  return 0;
}
