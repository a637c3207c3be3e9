// make_seeds FOLDER: writes the first inputs of each fuzz target into FOLDER/TARGET. What else lies there stays.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

#include "seeds.h"

namespace {

constexpr std::size_t kMostBytes = 2048;

void write(const std::filesystem::path& folder, const ei4::fuzz::Seeds& seeds) {
  std::filesystem::create_directories(folder);
  for (const auto& [name, bytes] : seeds) {
    if (bytes.size() > kMostBytes) std::printf("%s is large: %zu bytes\n", name.c_str(), bytes.size());
    std::ofstream file(folder / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::filesystem::filesystem_error("cannot write", folder / name, {});
  }
  std::printf("%s: %zu seeds\n", folder.c_str(), seeds.size());
}

}  // namespace

int main(int argc, char* argv[]) try {
  if (argc != 2) {
    std::fputs("Usage: make_seeds FOLDER\n", stderr);
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  write(folder / "stream", ei4::fuzz::streamSeeds());
  write(folder / "best_factor", ei4::fuzz::bestFactorSeeds());
  write(folder / "prep", ei4::fuzz::prepSeeds());
  write(folder / "blob", ei4::fuzz::blobSeeds());
  write(folder / "options", ei4::fuzz::optionsSeeds());
  write(folder / "picture", ei4::fuzz::pictureSeeds());
  write(folder / "report", ei4::fuzz::reportSeeds());
  write(folder / "text", ei4::fuzz::textSeeds());
  write(folder / "paint", ei4::fuzz::paintSeeds());
  write(folder / "table", ei4::fuzz::tableSeeds());
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "make_seeds: %s\n", error.what());
  return 1;
}
