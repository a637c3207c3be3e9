// The images that a benchmark runs over.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace ei4::bench {

inline constexpr unsigned long kPreambleBytes = 24;

/// The `.ei4` files of a folder by name.
inline std::vector<std::filesystem::path> imagesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> images;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".ei4") images.push_back(entry.path());
  }
  std::sort(images.begin(), images.end());
  return images;
}

inline std::vector<unsigned char> readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace ei4::bench
