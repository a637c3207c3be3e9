#include "erblb/command_line.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ei4::erblb {

namespace {

struct CommandName {
  std::string_view name;
  Command command;
  bool needsWords;  // behind the container's path
};

constexpr std::array kCommands = {
    CommandName{"list", Command::list, false},       CommandName{"verify", Command::verify, false},
    CommandName{"extract", Command::extract, false}, CommandName{"build", Command::build, false},
    CommandName{"append", Command::append, true},    CommandName{"delete", Command::remove, true},
};

constexpr std::string_view kDirectoryIs = "--directory=";

const CommandName& commandNamed(std::string_view name) {
  const auto* const found = std::find_if(kCommands.begin(), kCommands.end(),
                                         [name](const CommandName& c) { return c.name == name; });
  if (found == kCommands.end()) throw UsageError("unknown command '" + std::string(name) + "'");
  return *found;
}

[[noreturn]] void refuseOption(std::string_view option) {
  throw UsageError("the option '" + std::string(option) + "' is unknown or does not fit the command");
}

// Of the options that not every command takes, in any of their spellings.
bool takes(Command command, std::string_view option) {
  using enum Command;
  if (option == "-a" || option == "--all") return command == list;
  if (option == "-f" || option == "--force") return command == extract || command == build;
  if (option == "-i" || option == "--images") return command == verify;
  if (option == "--no-progress")
    return command == verify || command == extract || command == build || command == append;
  return command == extract;  // -C, --directory
}

}  // namespace

Request parseCommandLine(std::span<const std::string_view> words) {
  Request request;
  std::vector<std::string> plain;
  std::vector<std::string_view> used;  // options that not every command takes
  bool optionsEnded = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (optionsEnded || word.size() < 2 || word.front() != '-') {
      plain.emplace_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else if (word == "-h" || word == "--help") {
      return {};
    } else if (word == "--version") {
      return {.command = Command::version, .container = {}, .words = {}};
    } else if (word == "-f" || word == "--force") {
      request.force = true;
      used.push_back(word);
    } else if (word == "-a" || word == "--all") {
      request.all = true;
      used.push_back(word);
    } else if (word == "-i" || word == "--images") {
      request.images = true;
      used.push_back(word);
    } else if (word == "--no-progress") {
      request.progress = false;
      used.push_back(word);
    } else if (word.starts_with(kDirectoryIs)) {
      request.folder = word.substr(kDirectoryIs.size());
      used.push_back("--directory");
    } else if (word == "-C" || word == "--directory") {
      if (++i == words.size()) throw UsageError("the option '" + std::string(word) + "' needs a folder");
      request.folder = words[i];
      used.push_back(word);
    } else {
      refuseOption(word);
    }
  }

  if (plain.empty()) throw UsageError("no command");
  const CommandName& command = commandNamed(plain[0]);
  request.command = command.command;
  for (const std::string_view option : used) {
    if (!takes(request.command, option)) refuseOption(option);
  }
  if (plain.size() < 2) throw UsageError(plain[0] + " needs the path of a container");
  request.container = plain[1];
  request.words.assign(plain.begin() + 2, plain.end());
  if (command.needsWords && request.words.empty())
    throw UsageError(plain[0] + " needs something to " + plain[0]);
  if (request.command == Command::list && !request.words.empty())
    throw UsageError("list takes one container");
  return request;
}

std::string_view usageText() {
  return R"(erblb: lists, checks, unpacks and writes blob containers (.erblb)

Usage: erblb COMMAND FILE [WORD...] [OPTION...]

  erblb list FILE                     show size, file offset, name and prefix of each entry
  erblb verify FILE...                check containers, and tell each fault with its offset and entry
  erblb extract FILE [NAME...]        write the named entries, or all, to files of their names
  erblb build FILE [[NAME=]PATH...]   make a container of these files
  erblb append FILE [NAME=]PATH...    add files; an entry of the same name is superseded
  erblb delete FILE NAME...           append marks that remove these entries

An entry is called as its file, without folders, unless NAME= stands in front of the path (needed when the path
holds a '='). In a NAME given for packing, what stands before the first '#' is a prefix and no part of the name.

Options:
  -C, --directory DIR   extract into DIR, which must exist (default: the current folder)
  -f, --force           build and extract: replace files that exist
  -a, --all             list: show the marks that deletions leave, too
  -i, --images          verify: look at each .ei4 entry, too: would the converter take it, and is it whole?
      --no-progress     verify, extract, build and append: no progress bar (there is one on a terminal only)
  -h, --help            print this text
      --version         print the version
      --                what follows is no option

verify prints a line FILE:OFFSET: fault: ENTRY... for each fault and FILE:OFFSET: note: ENTRY... for what is odd but
loses nothing (at most 1000 of a container), then a line on the whole. The converter forgives many faults, such as a
damaged chunk, which only hides what stands behind it: "readable to the converter" then stands there. Entries that were
superseded or deleted are no faults. With --images, entries NAME.f.ei4 of a full.erblb are read behind NAME.t.ei4 of the
initial.erblb beside it.

extract writes nothing outside DIR: names such as "../x" and "/x" and ways through symbolic links are refused,
and so is a whole container whose entries overlap so much that they take 16 times its size (and over 64 MiB).
build puts the finished file in place in one step. append and delete work in place and undo what they wrote when
they cannot finish or are interrupted; each waits for others that work on the same container.

Exit status: 0 done (verify: no faults), 1 failed in whole or in part, 2 wrong usage, 128 + N interrupted by signal N.
)";
}

}  // namespace ei4::erblb
