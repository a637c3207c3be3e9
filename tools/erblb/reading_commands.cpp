#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

#include "erblb/commands.h"
#include "erblb/interrupt.h"
#include "erblb/new_file.h"
#include "erblb/opened_container.h"

namespace ei4::erblb {

namespace {

// Opens the folder that the entry's file belongs to, making folders on the way.
Descriptor openTarget(int top, const std::vector<std::string>& components) {
  Descriptor folder = openFolder(top, ".", false);
  for (std::size_t i = 0; i + 1 < components.size(); ++i) {
    mkdirat(folder.get(), components[i].c_str(), 0777);  // may exist; the next line says when it is no folder
    folder = openFolder(folder.get(), components[i], false);
  }
  return folder;
}

void extractEntry(OpenedContainer& container, const BlobEntry& entry, int top, bool force,
                  tools::Progress& progress) {
  const auto components = safeComponents(entry.name);
  if (!components) throw JobError(shown(entry.name) + ": would leave the target folder, not extracted");
  const Descriptor folder = openTarget(top, *components);
  NewFile file(folder.get(), components->back(), force);
  std::array<unsigned char, 65536> block;
  for (int done = 0; done < entry.size;) {
    const int read =
        container.readEntryIntoBuffer(&entry, done, block.data(), 0, static_cast<int>(block.size()));
    if (read < 1) throw JobError(shown(entry.name) + ": cannot be read to its end");
    file.write(std::span(block).first(static_cast<std::size_t>(read)));
    done += read;
    progress.advance(0, read);
  }
  file.commit();
}

std::vector<std::string> effectiveNames(OpenedContainer& container) {
  std::vector<std::string> names;
  std::int64_t bytes = 0;
  for (const auto& [name, entry] : container.entries()) {
    if (isDeletionMark(*entry)) continue;
    names.push_back(name);
    bytes += entry->size;
  }
  if (claimsTooMuch(bytes, container.getFileSize())) {
    throw JobError("the entries overlap and would take " + std::to_string(bytes) +
                   " bytes, nothing extracted: name those that are wanted");
  }
  return names;
}

}  // namespace

void listEntries(const Request& request) {
  const OpenedContainer container(request.container);
  std::printf("%10s  %10s  %s\n", "size", "offset", "name [prefix]");
  for (const auto& [name, entry] : container.entries()) {
    if (!request.all && isDeletionMark(*entry)) continue;
    std::printf("%10" PRId32 "  %10" PRId64 "  %s", entry->size, container.dataBase() + entry->offset,
                shown(name).c_str());
    if (!entry->prefix.empty()) std::printf(" [%s]", shown(entry->prefix).c_str());
    std::printf("\n");
  }
}

void extractEntries(const Request& request) {
  const InterruptGuard guard;
  OpenedContainer container(request.container);
  const Descriptor top = openFolder(AT_FDCWD, request.folder, true);
  const std::vector<std::string> names = request.words.empty() ? effectiveNames(container) : request.words;
  tools::Progress progress(progressFor(request));
  for (const std::string& name : names) {
    progress.expect(1, std::max(FileBlob::getEntrySize(container.findBlobEntry(name)), 0));
  }
  std::size_t refused = 0;
  for (const std::string& name : names) {
    try {
      const BlobEntry* entry = container.findBlobEntry(name);
      if (entry == nullptr) throw JobError(shown(name) + ": no such entry");
      extractEntry(container, *entry, top.get(), request.force, progress);
    } catch (const JobError& error) {
      progress.hide();
      std::fprintf(stderr, "erblb: %s\n", error.what());
      ++refused;
    }
    progress.advance(1, 0);
  }
  if (refused > 0)
    throw JobError(std::to_string(refused) + (refused == 1 ? " entry" : " entries") + " not extracted");
}

}  // namespace ei4::erblb
