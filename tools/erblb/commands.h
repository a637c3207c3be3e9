#pragma once

#include "erblb/command_line.h"
#include "terminal/progress.h"

namespace ei4::erblb {

/// Each does one job and throws JobError when it cannot. Those that write files throw Interrupted when a
/// signal asks the program to end, and leave no half-written file then.
void listEntries(const Request& request);
/// Extracts what it can; entries that it must refuse are named on stderr, and the error comes at the end.
void extractEntries(const Request& request);
void buildContainer(const Request& request);
void appendFiles(const Request& request);
void deleteEntries(const Request& request);
/// Says on stdout what is wrong with each container; the error comes at the end.
void verifyContainers(const Request& request);

/// The terminal for a bar, unless it is not wanted.
inline std::optional<tools::ProgressTerminal> progressFor(const Request& request) {
  return request.progress ? tools::progressOnStderr() : std::nullopt;
}

}  // namespace ei4::erblb
