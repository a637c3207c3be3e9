// Files for one test, in a folder that goes away with it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

namespace ei4::test {

using Bytes = std::vector<unsigned char>;

class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ei4-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    m_path = name;
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string path(const std::string& name) const { return (m_path / name).string(); }

  std::string write(const std::string& name, std::span<const unsigned char> bytes) const {
    std::ofstream file(path(name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path(name);
  }

  bool has(const std::string& name) const { return std::filesystem::exists(path(name)); }

  Bytes read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
  }

  bool empty() const { return std::filesystem::is_empty(m_path); }

 private:
  std::filesystem::path m_path;
};

}  // namespace ei4::test
