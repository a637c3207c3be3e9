// erblb: lists, checks, unpacks and writes blob containers.
#include <cerrno>
#include <cstdio>
#include <exception>
#include <string_view>
#include <system_error>
#include <vector>

#include "erblb/commands.h"
#include "erblb/interrupt.h"

namespace {

using ei4::erblb::Command;
using ei4::erblb::Request;

void run(const Request& request) {
  switch (request.command) {
    case Command::help:
      std::fputs(ei4::erblb::usageText().data(), stdout);
      break;
    case Command::version:
      std::puts("erblb " EI4_VERSION);
      break;
    case Command::list:
      ei4::erblb::listEntries(request);
      break;
    case Command::verify:
      ei4::erblb::verifyContainers(request);
      break;
    case Command::extract:
      ei4::erblb::extractEntries(request);
      break;
    case Command::build:
      ei4::erblb::buildContainer(request);
      break;
    case Command::append:
      ei4::erblb::appendFiles(request);
      break;
    case Command::remove:
      ei4::erblb::deleteEntries(request);
      break;
  }
}

}  // namespace

int main(int argc, char* argv[]) {
  try {
    const std::vector<std::string_view> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    run(ei4::erblb::parseCommandLine(words));
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
      throw ei4::erblb::JobError("standard output: " + std::generic_category().message(errno));
    }
    return 0;
  } catch (const ei4::erblb::UsageError& error) {
    std::fprintf(stderr, "erblb: %s\nTry 'erblb --help'.\n", error.what());
    return 2;
  } catch (const ei4::erblb::Interrupted& interruption) {
    std::fprintf(stderr, "erblb: %s\n", interruption.what());
    return 128 + interruption.signal;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "erblb: %s\n", error.what());
    return 1;
  }
}
