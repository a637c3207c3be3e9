#include <sys/stat.h>

#include <cinttypes>
#include <cstdio>

#include "erblb/commands.h"
#include "erblb/container_check.h"
#include "erblb/entry_name.h"
#include "erblb/image_check.h"
#include "erblb/interrupt.h"

namespace ei4::erblb {

namespace {

std::string counted(std::int64_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::int64_t sizeOf(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? std::int64_t{status.st_size} : 0;
}

// Lines for one container: where one is damaged badly, every few bytes are a fault.
constexpr std::int64_t kMostShown = 1000;

class Verification {
 public:
  Verification(const Request& request, tools::Progress& progress)
      : m_request(request), m_progress(progress) {}

  /// True when nothing is wrong with it.
  bool isSound(const std::string& path) {
    std::int64_t faults = 0;
    std::int64_t notes = 0;
    const ContainerCheck::Tell tell = [&](const Finding& finding) {
      throwIfInterrupted();
      ++(finding.weight == Weight::note ? notes : faults);
      if (faults + notes <= kMostShown) show(path, finding);
    };
    ContainerCheck check(path);
    check.run(tell, m_progress);
    std::string images;
    if (m_request.images && !check.isRefused())
      images = ", " + counted(checkImages(path, check, tell, m_progress), "image");

    std::int64_t entries = 0;
    for (const auto& [name, entry] : check.entries()) entries += entry.isMark ? 0 : 1;
    std::string verdict = faults == 0 ? "sound" : counted(faults, "fault");
    if (faults > 0)
      verdict += check.isRefused() ? ", refused by the converter" : ", readable to the converter";
    if (notes > 0) verdict += ", " + counted(notes, "note");
    m_progress.hide();
    if (faults + notes > kMostShown)
      std::printf("%s: %" PRId64 " more faults and notes\n", shown(path).c_str(),
                  faults + notes - kMostShown);
    std::printf("%s: %s: %s, %" PRId64 " superseded, %" PRId64 " deleted%s\n", shown(path).c_str(),
                verdict.c_str(), (std::to_string(entries) + (entries == 1 ? " entry" : " entries")).c_str(),
                check.superseded(), check.deleted(), images.c_str());
    return faults == 0;
  }

 private:
  void show(const std::string& path, const Finding& finding) {
    m_progress.hide();
    std::printf("%s:%" PRId64 ": %s: %s%s%s\n", shown(path).c_str(), finding.offset,
                finding.weight == Weight::note ? "note" : "fault", shown(finding.name).c_str(),
                finding.name.empty() ? "" : " ", finding.what.c_str());
  }

  const Request& m_request;
  tools::Progress& m_progress;
};

}  // namespace

void verifyContainers(const Request& request) {
  const InterruptGuard guard;
  std::vector<std::string> paths = request.words;
  paths.insert(paths.begin(), request.container);
  tools::Progress progress(progressFor(request));
  if (progress.isShown()) {
    for (const std::string& path : paths) progress.expect(1, sizeOf(path));
  }
  Verification verification(request, progress);
  std::size_t faulty = 0;
  for (const std::string& path : paths) {
    try {
      if (!verification.isSound(path)) ++faulty;
    } catch (const JobError& error) {
      progress.hide();
      std::fprintf(stderr, "erblb: %s\n", error.what());
      ++faulty;
    }
    progress.advance(1, 0);
  }
  if (faulty > 0)
    throw JobError(std::to_string(faulty) + " of " + counted(std::int64_t(paths.size()), "container") +
                   (faulty == 1 ? " is not sound" : " are not sound"));
}

}  // namespace ei4::erblb
