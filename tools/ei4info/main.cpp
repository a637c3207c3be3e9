// ei4info: shows what is in .ei4 images.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>
#include <vector>

#include "container/blob_reader.h"
#include "container/file_reader.h"
#include "ei4info/command_line.h"
#include "ei4info/image_facts.h"
#include "ei4info/json_report.h"
#include "ei4info/text_report.h"
#include "terminal/progress.h"
#include "terminal/shown.h"

namespace {

using ei4::info::ImageFacts;
using ei4::info::Request;
using ei4::tools::Progress;

std::unique_ptr<SerialReader> openSource(const std::string& path, bool blob) {
  if (blob) return std::make_unique<BlobReader>(path.c_str());
  return std::make_unique<FileReader>(path.c_str());
}

std::string whyNotOpened(const std::string& path) {
  if (openRegularFile(path.c_str(), "rb")) return "is larger than 2 GiB";
  return errno == EINVAL ? "is no regular file" : std::generic_category().message(errno);
}

ImageFacts inspect(const std::string& path, bool blob) {
  const auto failed = [](const char* why) {
    ImageFacts facts;
    facts.faults.emplace_back(why);
    return facts;
  };
  try {
    const auto source = openSource(path, blob);
    if (blob && source->getLength() < 0)
      return failed("is in no container that can be read: full.erblb of its folder");
    if (blob && source->getLength() == 0)
      return failed("is no entry, or an empty one, of full.erblb of its folder");
    if (source->getLength() < 0) return failed(whyNotOpened(path).c_str());
    return ei4::info::inspectImage(*source);
  } catch (const std::bad_alloc&) {
    return failed("is too large for the memory");
  }
}

// For the bar only: what cannot be measured counts as nothing.
std::int64_t sizeOf(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? std::int64_t{status.st_size} : 0;
}

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

// True when all images are good.
bool inspectAll(const Request& request) {
  // What is printed to a terminal shows by itself how far the work is.
  const bool hasBar = request.progress && request.paths.size() > 1 && isatty(STDOUT_FILENO) == 0;
  Progress progress(hasBar ? ei4::tools::progressOnStderr() : std::nullopt);
  if (progress.isShown()) {
    for (const std::string& path : request.paths) progress.expect(1, request.blob ? 0 : sizeOf(path));
  }
  const bool isArray = request.json && request.paths.size() > 1;
  bool allGood = true;
  if (isArray) print("[\n");
  for (std::size_t i = 0; i < request.paths.size(); ++i) {
    const std::string& path = request.paths[i];
    if (request.blob) progress.hide();  // containers tell their faults themselves
    const ImageFacts facts = inspect(path, request.blob);
    const bool isRead = facts.length >= 0;
    if (!isRead) {
      progress.hide();
      std::fprintf(stderr, "ei4info: %s: %s\n", ei4::tools::shown(path).c_str(),
                   facts.faults.front().c_str());
    }
    allGood = allGood && facts.faults.empty();
    const bool isLast = i + 1 == request.paths.size();
    if (request.json) {
      print(ei4::info::jsonReport(path, facts) + (isLast ? "\n" : ",\n"));
    } else if (isRead) {
      print(ei4::info::textReport(path, facts) + (isLast ? "" : "\n"));
    }
    progress.advance(1, request.blob ? 0 : sizeOf(path));
  }
  if (isArray) print("]\n");
  return allGood;
}

int run(const Request& request) {
  bool allGood = true;
  switch (request.job) {
    case Request::Job::help:
      print(ei4::info::usageText());
      break;
    case Request::Job::version:
      std::puts("ei4info " EI4_VERSION);
      break;
    case Request::Job::inspect:
      allGood = inspectAll(request);
      break;
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    std::fprintf(stderr, "ei4info: standard output: %s\n", std::generic_category().message(errno).c_str());
    return 1;
  }
  return allGood ? 0 : 1;
}

}  // namespace

int main(int argc, char* argv[]) {
  try {
    const std::vector<std::string_view> words(argv + (argc > 0 ? 1 : 0), argv + argc);
    return run(ei4::info::parseCommandLine(words));
  } catch (const ei4::info::UsageError& error) {
    std::fprintf(stderr, "ei4info: %s\nTry 'ei4info --help'.\n", error.what());
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ei4info: %s\n", error.what());
    return 1;
  }
}
