#include "container/file_below.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

std::optional<std::vector<std::string>> componentsBelow(std::string_view name) {
  if (name.find('\0') != std::string_view::npos) return std::nullopt;
  std::vector<std::string> components;
  for (std::size_t start = 0; start <= name.size();) {
    const std::size_t end = std::min(name.find('/', start), name.size());
    const std::string_view component = name.substr(start, end - start);
    if (component.empty() || component == "." || component == "..") return std::nullopt;
    components.emplace_back(component);
    start = end + 1;
  }
  return components;
}

FileBelow::FileBelow(const std::string& name) {
  const auto components = componentsBelow(name);
  if (!components) return;
  constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
  Descriptor folder(open(".", kFolder));
  for (std::size_t i = 0; folder && i + 1 < components->size(); ++i)
    folder = Descriptor(openat(folder.get(), (*components)[i].c_str(), kFolder));
  if (!folder) return;

  // Only a file that did not exist is nobody else's: under a name in use may be a link, a pipe, or a file that
  // has other names elsewhere.
  m_name = components->back();
  Descriptor created;
  if (unlinkat(folder.get(), m_name.c_str(), 0) == 0 || errno == ENOENT) {
    created = Descriptor(
        openat(folder.get(), m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
  }
  m_folder = std::move(folder);
  if (!created) {
    m_name.clear();
    return;
  }
  m_file.reset(fdopen(created.get(), "wb"));
  if (m_file) created.release();  // the stream closes it
}

FileBelow::~FileBelow() {
  if (!m_name.empty()) unlinkat(m_folder.get(), m_name.c_str(), 0);
}

bool FileBelow::write(std::span<const unsigned char> bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), m_file.get()) == bytes.size();
}

bool FileBelow::keep() {
  if (std::fclose(m_file.release()) != 0) return false;
  m_name.clear();
  return true;
}
