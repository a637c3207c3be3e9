// The images that a benchmark runs over.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "gwav4/header.h"

namespace ei4::bench {

inline constexpr std::size_t kPreambleBytes = 24;
inline constexpr std::size_t kHeadBytes = kPreambleBytes + zel::gwav4::kHeaderBytes;

/// The `.ei4` files of a folder by name, those left out that are too short for one. Throws std::exception without the
/// folder or without any.
inline std::vector<std::filesystem::path> imagesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> images;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".ei4" && entry.file_size() > kHeadBytes) images.push_back(entry.path());
  }
  if (images.empty()) throw std::runtime_error(folder.string() + ": no .ei4 images");
  std::sort(images.begin(), images.end());
  return images;
}

/// The first `most` bytes of a file, or all that it has.
inline std::vector<unsigned char> readFile(const std::filesystem::path& path, std::size_t most) {
  std::vector<unsigned char> bytes(std::min<std::size_t>(most, std::filesystem::file_size(path)));
  std::ifstream file(path, std::ios::binary);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

}  // namespace ei4::bench
