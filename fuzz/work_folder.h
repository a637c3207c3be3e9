// A folder in memory for what a target has to see as files.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>

#include "check.h"

namespace ei4::fuzz {

/// Goes away at the end of the process, unless that crashes.
class WorkFolder {
 public:
  WorkFolder() {
    std::error_code error;
    const bool hasMemory = std::filesystem::is_directory("/dev/shm", error) && access("/dev/shm", W_OK) == 0;
    m_path = hasMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string();
    m_path += "/ei4-fuzz-XXXXXX";
    require(mkdtemp(m_path.data()) != nullptr, "a folder can be made");
  }
  ~WorkFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  const std::string& path() const { return m_path; }
  std::string path(const std::string& name) const { return m_path + "/" + name; }

  /// Writes a whole file, replacing it, and returns its path.
  std::string write(const std::string& name, std::span<const std::uint8_t> bytes) const {
    std::string file = path(name);
    std::FILE* const stream = std::fopen(file.c_str(), "wb");
    require(stream != nullptr, "a file can be made");
    const bool written = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    require(std::fclose(stream) == 0 && written, "a file can be written");
    return file;
  }

 private:
  std::string m_path;
};

}  // namespace ei4::fuzz
