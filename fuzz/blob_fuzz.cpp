// Blob containers: reading the structure, reading of entries, and what the extraction of hostile names leaves behind.
//
// Input   four reads of u8 entry (modulo their number), i32 position, i32 count; then the container. In the end the
//         last read's position, modulo the file's size plus one, is where the file is cut.
// Limits  Containers of more than 64 entries are not extracted: making files takes most of the time.
// Holds   Accepted containers, entries and payloads are those of the second reader. A read answers and writes exactly
//         what lies within its entry, and in a file that was cut no more than that. Extraction, by the tool as well as
//         by the class for names without folders, makes and changes nothing outside its folder, and what it makes are whole payloads.

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "check.h"
#include "container/FileBlob.h"
#include "erblb/commands.h"
#include "input.h"
#include "literal_container.h"
#include "quiet.h"
#include "target.h"
#include "work_folder.h"

namespace {

namespace fs = std::filesystem;
using ei4::fuzz::LiteralContainer;
using ei4::fuzz::LiteralEntry;
using ei4::fuzz::require;
using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kMostExtracted = 64;

struct Read {
  std::size_t entry;
  int position;
  int count;
};

Bytes payloadOf(Bytes file, const LiteralContainer& literal, const LiteralEntry& entry) {
  return file.subspan(static_cast<std::size_t>(literal.dataBase + entry.offset),
                      static_cast<std::size_t>(entry.size));
}

void compareEntries(const FileBlob& blob, const LiteralContainer& literal) {
  require(blob.dataBase() == literal.dataBase, "the same data base");
  require(blob.entries().size() == literal.entries.size(), "as many entries");
  auto wanted = literal.entries.begin();
  for (const auto& [name, entry] : blob.entries()) {
    require(entry != nullptr && name == wanted->first && entry->name == name, "the same names");
    require(entry->prefix == wanted->second.prefix, "the same prefixes");
    require(entry->offset == wanted->second.offset && entry->size == wanted->second.size, "the same places");
    ++wanted;
  }
}

// `there`: bytes that the file has by now, at least those of its start.
void tryRead(FileBlob& blob, Bytes file, std::size_t there, const LiteralContainer& literal,
             const Read& read) {
  if (literal.entries.empty()) return;
  const auto& [name, wanted] =
      *std::next(literal.entries.begin(), static_cast<std::ptrdiff_t>(read.entry % literal.entries.size()));
  const BlobEntry* const entry = blob.findBlobEntry(name);
  require(entry != nullptr, "each entry is found by its name");
  unsigned char nothing = 0;
  if (read.position < 0) {
    require(blob.readEntryIntoBuffer(entry, read.position, &nothing, 0, read.count) == -1,
            "it has no such place");
    return;
  }
  const auto most = std::max<std::int64_t>(
      0, std::min<std::int64_t>(read.count, wanted.size - std::int64_t{read.position}));
  const std::int64_t start = literal.dataBase + wanted.offset + read.position;
  const auto least = std::clamp<std::int64_t>(static_cast<std::int64_t>(there) - start, 0, most);
  std::vector<unsigned char> buffer(static_cast<std::size_t>(most));  // exactly what may be written
  const int got =
      blob.readEntryIntoBuffer(entry, read.position, most > 0 ? buffer.data() : &nothing, 0, read.count);
  require(got >= least && got <= most, "a read answers what there is");
  const Bytes payload = payloadOf(file, literal, wanted);
  require(got == 0 || std::equal(buffer.begin(), buffer.begin() + got, payload.begin() + read.position),
          "a read gives the payload's bytes");
}

bool holds(const fs::path& path, Bytes payload) {
  std::ifstream stream(path, std::ios::binary);
  const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
  return std::equal(bytes.begin(), bytes.end(), payload.begin(), payload.end(),
                    [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

/// The folder that extraction works in, among others that it must leave alone.
class Surroundings {
 public:
  Surroundings() {
    fs::create_directory(m_folder.path("outside"));
    m_folder.write("outside/kept", kKept);
    fs::create_directory(m_folder.path("inside"));
    restore();
  }

  std::string place(Bytes container) const { return m_folder.write("container.erblb", container); }
  std::string inside() const { return m_folder.path("inside"); }

  /// An empty folder but for ways out of it.
  void restore() const {
    for (const auto& entry : fs::directory_iterator(inside())) fs::remove_all(entry.path());
    fs::create_directory_symlink("../outside", m_folder.path("inside/link"));
    fs::create_symlink("../outside/made", m_folder.path("inside/dangling"));
    fs::create_symlink("../outside/kept", m_folder.path("inside/kept"));
    fs::create_hard_link(m_folder.path("outside/kept"), m_folder.path("inside/hard"));
    fs::create_directory(m_folder.path("inside/folder"));
    require(mkfifo(m_folder.path("inside/pipe").c_str(), 0600) == 0, "a pipe can be made");
  }

  /// True for the file outside under its other name.
  bool isKept(const fs::path& path) const { return fs::equivalent(path, m_folder.path("outside/kept")); }

  void requireUnchanged() const {
    require(namesIn(m_folder.path()) == std::vector<std::string>{"container.erblb", "inside", "outside"} &&
                namesIn(m_folder.path("outside")) == std::vector<std::string>{"kept"} &&
                holds(m_folder.path("outside/kept"), kKept),
            "nothing is made or changed outside the folder");
  }

 private:
  static constexpr std::array<std::uint8_t, 3> kKept = {1, 2, 3};

  static std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  ei4::fuzz::WorkFolder m_folder;
};

/// Makes a folder the current one, where the class extracts to and which absolute names can lead back to.
class Within {
 public:
  explicit Within(const std::string& folder) : m_before(fs::current_path()) { fs::current_path(folder); }
  ~Within() {
    std::error_code ignored;
    fs::current_path(m_before, ignored);
  }
  Within(const Within&) = delete;
  Within& operator=(const Within&) = delete;

 private:
  fs::path m_before;
};

void requirePayloads(const Surroundings& place, Bytes file, const LiteralContainer& literal) {
  const std::string folder = place.inside();
  for (const auto& found : fs::recursive_directory_iterator(folder)) {
    if (found.is_symlink() || !found.is_regular_file() || place.isKept(found.path())) continue;
    const auto entry = literal.entries.find(found.path().string().substr(folder.size() + 1));
    require(entry != literal.entries.end(), "what is extracted is an entry");
    require(holds(found.path(), payloadOf(file, literal, entry->second)),
            "an extracted file holds its payload");
  }
}

void extractByTool(const Surroundings& place, const std::string& container, bool force) {
  ei4::erblb::Request request;
  request.command = ei4::erblb::Command::extract;
  request.container = container;
  request.folder = place.inside();
  request.force = force;
  try {
    ei4::erblb::extractEntries(request);
  } catch (const ei4::erblb::JobError&) {
    // It says that some were refused.
  }
}

void extractByClass(FileBlob& blob, const LiteralContainer& literal, const std::string& folder) {
  for (const auto& [name, entry] : literal.entries) {
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return;
    std::error_code ignored;
    fs::remove(fs::path(folder) / name, ignored);  // it follows links, as its description says
  }
  blob.extractAll();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::silence();
  static const Surroundings place;
  ei4::fuzz::Input input(data, size);
  std::array<Read, 4> reads{};
  for (Read& read : reads) read = {.entry = input.u8(), .position = input.i32(), .count = input.i32()};
  const Bytes file = input.rest();
  const std::string path = place.place(file);

  FileBlob blob(path);
  const bool parsed = blob.parseBlob();
  const auto literal = ei4::fuzz::LiteralContainerReader(file).read();
  require(parsed == literal.has_value(), "the same containers are accepted");
  if (!parsed) return 0;
  compareEntries(blob, *literal);
  blob.printEntries();
  for (const Read& read : reads) tryRead(blob, file, file.size(), *literal, read);

  if (literal->entries.size() > kMostExtracted) return 0;
  const Within within(place.inside());
  const auto requireSafe = [&] {
    place.requireUnchanged();
    requirePayloads(place, file, *literal);
  };
  extractByTool(place, path, (size & 1) != 0);
  requireSafe();
  extractByClass(blob, *literal, place.inside());
  requireSafe();

  const std::size_t cut = static_cast<std::uint32_t>(reads.back().position) % (file.size() + 1);
  fs::resize_file(path, cut);
  for (const Read& read : reads) tryRead(blob, file, cut, *literal, read);
  place.restore();
  return 0;
}
