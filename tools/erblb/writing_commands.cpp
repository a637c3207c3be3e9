#include <fcntl.h>

#include <algorithm>
#include <set>

#include "erblb/commands.h"
#include "erblb/input_file.h"
#include "erblb/interrupt.h"
#include "erblb/new_file.h"
#include "erblb/opened_container.h"
#include "erblb/tail.h"

namespace ei4::erblb {

namespace {

using tools::Bytes;

std::vector<InputFile> inputsOf(const Request& request) {
  std::vector<InputFile> inputs;
  std::set<std::string> names;
  for (const std::string& word : request.words) {
    const InputFile& input = inputs.emplace_back(word);
    if (!names.insert(input.entryName()).second) {
      throw JobError(shown(input.entryName()) + ": two files for one entry name");
    }
  }
  return inputs;
}

void expectAll(tools::Progress& progress, const std::vector<InputFile>& inputs) {
  for (const InputFile& input : inputs) progress.expect(1, input.size());
}

// Copies a file piece by piece into a NewFile or a Tail.
template <class Target>
void copy(const InputFile& input, Target& target, tools::Progress& progress) {
  input.copyTo([&](std::span<const unsigned char> piece) {
    target.write(piece);
    progress.advance(0, static_cast<std::int64_t>(piece.size()));
  });
  progress.advance(1, 0);
}

// Chunks behind damaged ones, or behind a data end that lies past the file, are never reached by a reader.
[[noreturn]] void refuseUnreachable(const std::string& path) {
  throw JobError(shown(path) +
                 ": its end is damaged, readers would not find what is appended; nothing changed");
}

}  // namespace

void buildContainer(const Request& request) {
  const InterruptGuard guard;
  const std::vector<InputFile> inputs = inputsOf(request);
  std::vector<tools::TableEntry> table;
  std::int64_t offset = 0;
  for (const InputFile& input : inputs) {
    table.push_back({input.storedName(), input.size(), offset});
    offset += input.size();
  }
  const Bytes head = tools::encodeTable(table);
  if (std::int64_t(head.size()) + offset > tools::kLargestContainer) {
    throw JobError(shown(request.container) + ": would get larger than 2 GiB");
  }

  const std::size_t slash = request.container.rfind('/');
  const bool here = slash == std::string::npos;
  const Descriptor folder = openFolder(AT_FDCWD, here ? "." : request.container.substr(0, slash + 1), true);
  const std::string name = here ? request.container : request.container.substr(slash + 1);
  if (name.empty()) throw JobError(shown(request.container) + ": names a folder");
  NewFile file(folder.get(), name, request.force);
  file.write(head);
  tools::Progress progress(progressFor(request));
  expectAll(progress, inputs);
  for (const InputFile& input : inputs) copy(input, file, progress);
  file.commit();
}

void appendFiles(const Request& request) {
  const InterruptGuard guard;
  const std::vector<InputFile> inputs = inputsOf(request);
  Tail tail(request.container);
  { const OpenedContainer parses(request.container); }
  std::int64_t end = tail.before();
  std::vector<std::int64_t> payloadAt;
  tools::Progress progress(progressFor(request));
  expectAll(progress, inputs);
  for (const InputFile& input : inputs) {
    const Bytes head = tools::encodeChunkHead(input.storedName(), input.size());
    payloadAt.push_back(end + static_cast<std::int64_t>(head.size()));
    end = payloadAt.back() + input.size();
    if (end > tools::kLargestContainer)
      throw JobError(shown(request.container) + ": would get larger than 2 GiB");
    tail.write(head);
    copy(input, tail, progress);
  }
  progress.hide();

  FileBlob written(request.container);
  if (!written.parseBlob()) refuseUnreachable(request.container);
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    const BlobEntry* entry = written.findBlobEntry(inputs[i].entryName());
    const bool found = entry != nullptr && entry->size == inputs[i].size() &&
                       written.dataBase() + entry->offset == payloadAt[i];
    if (!found) refuseUnreachable(request.container);
  }
  tail.keep();
}

void deleteEntries(const Request& request) {
  const InterruptGuard guard;
  Tail tail(request.container);
  OpenedContainer container(request.container);
  for (const std::string& name : request.words) {
    const BlobEntry* entry = container.findBlobEntry(name);
    if (entry == nullptr || isDeletionMark(*entry)) throw JobError(shown(name) + ": no such entry");
    if (name.size() > tools::kLongestBlobName)
      throw JobError(shown(name) + ": too long a name to be deleted");
    // The mark itself is stored under what follows its first '#', and would hide another entry.
    if (name.find('#') != std::string::npos)
      throw JobError(shown(name) + ": a name with '#' cannot be deleted");
  }
  std::int64_t end = tail.before();
  for (const std::string& name : request.words) {
    const Bytes mark = tools::encodeDeletion(name);
    end += static_cast<std::int64_t>(mark.size());
    if (end > tools::kLargestContainer)
      throw JobError(shown(request.container) + ": would get larger than 2 GiB");
    tail.write(mark);
  }

  FileBlob written(request.container);
  const bool gone =
      written.parseBlob() && std::all_of(request.words.begin(), request.words.end(), [&](const auto& n) {
        return written.findBlobEntry(n) == nullptr &&
               written.findBlobEntry(FileBlob::DELPREFIX + n) != nullptr;
      });
  if (!gone) refuseUnreachable(request.container);
  tail.keep();
}

}  // namespace ei4::erblb
