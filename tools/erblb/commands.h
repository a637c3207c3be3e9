#pragma once

#include "erblb/command_line.h"

namespace ei4::erblb {

/// Each does one job and throws JobError when it cannot. Those that write files throw Interrupted when a
/// signal asks the program to end, and leave no half-written file then.
void listEntries(const Request& request);
/// Extracts what it can; entries that it must refuse are named on stderr, and the error comes at the end.
void extractEntries(const Request& request);
void buildContainer(const Request& request);
void appendFiles(const Request& request);
void deleteEntries(const Request& request);

}  // namespace ei4::erblb
