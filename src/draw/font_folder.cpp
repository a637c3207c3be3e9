#include "draw/font_folder.h"

#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

namespace {

constexpr const char* kVariable = "MAGICK_CONFIGURE_PATH";
constexpr char kSeparator = ':';

// Programs and data keep their places to each other: in an installation, wherever that has been moved to, and
// in a build tree, which is laid out alike.
std::filesystem::path fontFolder() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return {};
  const auto folder = (program.parent_path() / EI4_DATA_FROM_PROGRAM).lexically_normal();
  return std::filesystem::is_regular_file(folder / "type.xml", error) ? folder : std::filesystem::path();
}

}  // namespace

bool AddFontFolder() {
  const std::string folder = fontFolder().string();
  if (folder.empty() || folder.find(kSeparator) != std::string::npos) return false;

  const char* const before = std::getenv(kVariable);
  std::string folders = folder;
  if (before != nullptr && *before != '\0') {
    const std::string users = before;
    if (users == folder || users.starts_with(folder + kSeparator)) return true;
    folders += kSeparator + users;
  }
  // Only for lack of memory; text would be drawn in another font.
  if (setenv(kVariable, folders.c_str(), /*overwrite=*/1) != 0) throw std::bad_alloc();
  return true;
}
