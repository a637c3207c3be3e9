// Writes the inputs of the report runs: NAME.raw for each source, some of them coded, and one in a container.
// Usage: report_inputs FOLDER

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "encoder/ei4_writer.h"
#include "encoder/gw_encoder.h"
#include "report/sources.h"
#include "support/blob_builder.h"

namespace {

using Bytes = std::vector<unsigned char>;
using ei4::test::Source;
using ei4::tools::Ei4Preamble;

void save(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

Bytes rawBytes(const Source& source) {
  Bytes bytes;
  for (int y = 0; y < source.height; ++y) {
    for (int x = 0; x < source.width; ++x) {
      for (int component = 0; component < source.components; ++component) {
        const int value = source.sample(x, y, component);
        for (int byte = 0; byte < source.bytesPerSample; ++byte) {
          bytes.push_back(static_cast<unsigned char>(value >> (8 * byte)));
        }
      }
    }
  }
  return bytes;
}

Bytes codedBytes(const Source& source, int bits, const Ei4Preamble& preamble) {
  ei4::tools::EncodeOptions options;
  options.bytesPerPixel = source.components * source.bytesPerSample;
  options.bitsPerPixel = bits;
  return ei4::tools::writeEi4(preamble,
                              ei4::tools::encode(rawBytes(source), source.width, source.height, options));
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 2) throw std::runtime_error("usage: report_inputs FOLDER");
  const std::filesystem::path folder = argv[1];
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  const auto& sources = ei4::test::sources();
  for (const auto& [name, source] : sources) save(folder / (name + ".raw"), rawBytes(source));
  const Bytes grey = codedBytes(sources.at("grey"), 8, {.window = 256, .level = 128});
  save(folder / "grey.ei4", grey);
  save(folder / "colour.ei4", codedBytes(sources.at("colour"), 8, {.window = 256, .level = 128}));
  save(folder / "deep.ei4",
       codedBytes(sources.at("deep"), 12, {.intercept = -1000, .window = 400, .level = 40}));

  ei4::test::BlobBuilder container;
  container.entry("grey.ei4", static_cast<std::int32_t>(grey.size()), 0).bytes(grey);
  std::filesystem::create_directory(folder / "study");
  save(folder / "study" / "full.erblb", container.build());
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "report_inputs: %s\n", error.what());
  return 2;
}
