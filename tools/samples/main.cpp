// make_samples: writes the sample pictures and the container pair. The same bytes come out on every machine.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "blob/blob_writer.h"
#include "encoder/ei4_writer.h"
#include "encoder/gw_encoder.h"
#include "samples/sample_pictures.h"

namespace {

namespace fs = std::filesystem;
using namespace ei4::samples;
using File = std::vector<unsigned char>;

constexpr const char* kUsage =
    "Usage: make_samples FOLDER\nWrites the sample pictures and the container pair into FOLDER.\n";

// A preamble and what a converter reads for a thumbnail of at most 128 pixels: twice the least read budget.
constexpr std::size_t kInitialPart = ei4::tools::kShortestPreamble + 2 * 8192;

File ei4FileOf(const SamplePicture& picture) {
  ei4::tools::EncodeOptions options;
  options.bytesPerPixel = picture.bytesPerPixel;
  options.bitsPerPixel = picture.bitsPerPixel;
  return ei4::tools::writeEi4(picture.preamble,
                              ei4::tools::encode(picture.pixels, picture.width, picture.height, options));
}

void write(const fs::path& path, const File& file) {
  std::ofstream out(path, std::ios::binary);
  for (const unsigned char byte : file) out.put(static_cast<char>(byte));
  if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
  std::printf("%-28s %8zu bytes\n", path.c_str(), file.size());
}

/// One picture split over both containers, as an archive that sends thumbnails first keeps it; one kept
/// whole.
void writeArchive(const fs::path& folder, const File& split, const File& whole) {
  const auto cut = split.begin() + static_cast<std::ptrdiff_t>(std::min(kInitialPart, split.size()));
  fs::create_directories(folder);
  write(folder / "initial.erblb",
        ei4::tools::BlobWriter().entry("radiograph.t.ei4", File(split.begin(), cut)).bytes());
  write(folder / "full.erblb", ei4::tools::BlobWriter()
                                   .entry("radiograph.f.ei4", File(cut, split.end()))
                                   .entry("mr.ei4", whole)
                                   .bytes());
}

void writeSamples(const fs::path& folder) {
  fs::create_directories(folder);
  File radiograph;
  File mr;
  for (const auto make :
       {makeCtSlice, makeRadiograph, makeMrSlice, makeUltrasound, makeAngiogram, makeSpine, makeFetus}) {
    const SamplePicture picture = make();
    const File file = ei4FileOf(picture);
    write(folder / (picture.name + ".ei4"), file);
    if (picture.name == "radiograph") radiograph = file;
    if (picture.name == "mr") mr = file;
  }
  writeArchive(folder / "archive", radiograph, mr);
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::string_view word = argc == 2 ? argv[1] : "";
  const bool wantsHelp = word == "--help" || word == "-h";
  if (!wantsHelp && (word.empty() || word[0] == '-')) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  try {
    if (wantsHelp) {
      std::fputs(kUsage, stdout);
    } else {
      writeSamples(word);
    }
    if (std::fflush(stdout) != 0) throw std::runtime_error("standard output cannot be written");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_samples: %s\n", error.what());
    return 1;
  }
  return 0;
}
