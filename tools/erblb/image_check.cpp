#include "erblb/image_check.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "container/serial_reader.h"
#include "ei4info/image_facts.h"
#include "erblb/command_line.h"
#include "erblb/interrupt.h"
#include "erblb/opened_container.h"

namespace ei4::erblb {

namespace {

constexpr std::string_view kExtension = ".ei4";
constexpr std::string_view kFullPart = ".f.ei4";
constexpr std::string_view kInitialPart = ".t.ei4";
constexpr std::string_view kFullName = "full.erblb";
constexpr std::string_view kInitialName = "initial.erblb";

struct Part {
  std::FILE* file = nullptr;
  std::int64_t start = 0;
  std::int32_t size = 0;  // lies within the file
};

/// One or two payloads, one behind the other.
class PartsReader final : public SerialReader {
 public:
  explicit PartsReader(std::vector<Part> parts) : m_parts(std::move(parts)) {
    for (const Part& part : m_parts) m_length += part.size;
  }

  int getLength() override { return m_length <= INT32_MAX ? static_cast<int>(m_length) : -1; }

  int readBytes(unsigned char* buffer, int bufferOffset, int count) override {
    int read = 0;
    std::int64_t partBegin = 0;
    for (const Part& part : m_parts) {
      const std::int64_t inPart = m_position - partBegin;
      partBegin += part.size;
      if (inPart < 0 || inPart >= part.size) continue;
      const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(count - read, part.size - inPart));
      if (fseeko(part.file, static_cast<off_t>(part.start + inPart), SEEK_SET) != 0) break;
      const std::size_t got = std::fread(buffer + bufferOffset + read, 1, wanted, part.file);
      read += static_cast<int>(got);
      m_position += static_cast<std::int64_t>(got);
      if (got < wanted) break;
    }
    return read;
  }

  int skipBytes(int count) override {
    if (count < 0 || m_position + count > m_length) return -1;
    m_position += count;
    return count;
  }

 private:
  std::vector<Part> m_parts;
  std::int64_t m_length = 0;
  std::int64_t m_position = 0;
};

struct Image {
  std::string name;
  const StoredEntry* entry = nullptr;
  const StoredEntry* initial = nullptr;  // its first part in the other container, or null
  bool mayEndEarly = false;
};

class ImageCheck {
 public:
  ImageCheck(const std::string& path, const ContainerCheck& container, const ContainerCheck::Tell& tell,
             tools::Progress& progress)
      : m_container(container), m_tell(tell), m_progress(progress) {
    const std::size_t slash = path.rfind('/') + 1;  // 0 without one
    m_isFull = path.substr(slash) == kFullName;
    if (m_isFull) openInitial(path.substr(0, slash) + std::string(kInitialName));
  }

  std::int64_t all() {
    for (const auto& [name, entry] : m_container.entries()) {
      if (!entry.isMark && name.ends_with(kExtension)) take(name, entry);
    }
    std::int64_t bytes = 0;
    for (const Image& image : m_images) bytes += bytesOf(image);
    const std::int64_t containers = m_container.fileSize() + (m_initial ? m_initial->fileSize() : 0);
    if (claimsTooMuch(bytes, containers)) {
      m_tell({Weight::fault, 0, "",
              "has images that overlap and together hold " + std::to_string(bytes) +
                  " bytes; they were not looked at"});
      return 0;
    }
    m_progress.expect(std::int64_t(m_images.size()), bytes);
    for (const Image& image : m_images) {
      throwIfInterrupted();
      look(image);
      m_progress.advance(1, bytesOf(image));
    }
    return std::int64_t(m_images.size());
  }

 private:
  static std::int64_t bytesOf(const Image& image) {
    return std::int64_t{image.entry->size} + (image.initial != nullptr ? image.initial->size : 0);
  }

  // Without one that the converter can read, images begin in this container.
  void openInitial(const std::string& path) {
    try {
      auto initial = std::make_unique<ContainerCheck>(path);
      tools::Progress nothingShown(std::nullopt);
      initial->run([](const Finding&) {}, nothingShown);
      if (!initial->isRefused()) m_initial = std::move(initial);
    } catch (const JobError&) {
      m_initial.reset();
    }
  }

  void take(const std::string& name, const StoredEntry& entry) {
    Image image{name, &entry, nullptr, name.ends_with(kInitialPart)};
    if (name.ends_with(kFullPart)) {
      const std::string stem = name.substr(0, name.size() - kFullPart.size());
      if (m_initial) {
        const auto found = m_initial->entries().find(stem + std::string(kInitialPart));
        if (found != m_initial->entries().end() && found->second.size > 0) image.initial = &found->second;
      }
      if (image.initial == nullptr && !m_isFull) {
        m_tell({Weight::note, entry.record, name,
                "is the second part of an image, which only a full.erblb leads to; not looked at"});
        return;
      }
    }
    m_images.push_back(std::move(image));
  }

  void look(const Image& image) {
    std::vector<Part> parts;
    if (image.initial != nullptr)
      parts.push_back({m_initial->file(), image.initial->start, image.initial->size});
    parts.push_back({m_container.file(), image.entry->start, image.entry->size});
    PartsReader reader(std::move(parts));
    const info::ImageFacts facts = info::inspectImage(reader);
    const auto fault = [&](const std::string& what) {
      m_tell({Weight::fault, image.entry->record, image.name, what});
    };
    const bool endsEarly = facts.directory && facts.directory->state == info::DirectoryState::cut;
    if (image.mayEndEarly && endsEarly && facts.decodes == info::Decodes::partly) return;
    for (const std::string& what : facts.faults) fault(what);
    constexpr int kStreamHeader = 16;
    if (image.initial != nullptr && facts.preamble &&
        image.initial->size <= facts.preamble->length + kStreamHeader)
      fault("has a first part without any coded data, behind which the converter reads unevenly");
  }

  const ContainerCheck& m_container;
  const ContainerCheck::Tell& m_tell;
  tools::Progress& m_progress;
  bool m_isFull = false;
  std::unique_ptr<ContainerCheck> m_initial;
  std::vector<Image> m_images;
};

}  // namespace

std::int64_t checkImages(const std::string& path, const ContainerCheck& container,
                         const ContainerCheck::Tell& tell, tools::Progress& progress) {
  return ImageCheck(path, container, tell, progress).all();
}

}  // namespace ei4::erblb
