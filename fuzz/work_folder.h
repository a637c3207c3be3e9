// A folder in memory for what a target has to see as files.
#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>

#include "check.h"

namespace ei4::fuzz {

/// Locked while its process lives. Goes away at the end of that or, after a crash, when the next one is made.
class WorkFolder {
 public:
  WorkFolder() {
    std::error_code error;
    const bool hasMemory = std::filesystem::is_directory("/dev/shm", error) && access("/dev/shm", W_OK) == 0;
    const std::string place = hasMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string();
    removeAbandoned(place);
    do {  // until nobody took it for an abandoned one
      m_path = place + "/" + kName + "XXXXXX";
      require(mkdtemp(m_path.data()) != nullptr, "a folder can be made");
    } while (!lock(m_path));
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
  static constexpr const char* kName = "ei4-fuzz-";

  // Holds the folder for the rest of the process. False when another process does, or it is gone.
  static bool lock(const std::string& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) return false;
    struct stat held = {};
    struct stat named = {};
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &held) == 0 &&
        stat(folder.c_str(), &named) == 0 && held.st_ino == named.st_ino) {
      return true;
    }
    close(descriptor);
    return false;
  }

  static void removeAbandoned(const std::string& place) {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(place, ignored)) {
      const std::string path = entry.path().string();
      if (entry.path().filename().string().starts_with(kName) && lock(path))
        std::filesystem::remove_all(path, ignored);
    }
  }

  std::string m_path;
};

}  // namespace ei4::fuzz
