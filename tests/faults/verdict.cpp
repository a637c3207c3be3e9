#include "verdict.h"

#include <algorithm>
#include <string_view>

namespace ei4::test {

namespace {

bool isSame(const Run& a, const Run& b) {
  return a.status == b.status && a.output == b.output && a.files == b.files;
}

// Another picture of the same size in pixels; of a compressed one it is known that it was written to its end.
bool isWholeFile(const std::string& name, const std::string& bytes, const std::string& clean) {
  using namespace std::string_view_literals;
  if (name.ends_with(".jpg")) return bytes.ends_with("\xFF\xD9"sv);
  if (name.ends_with(".png")) return bytes.ends_with("IEND\xAE\x42\x60\x82"sv);
  return bytes.size() == clean.size();
}

bool isLike(const Run& run, const Run& clean) {
  return run.status == clean.status && run.output == clean.output && run.files.size() == clean.files.size() &&
         std::all_of(run.files.begin(), run.files.end(), [&](const auto& file) {
           const auto wanted = clean.files.find(file.first);
           return wanted != clean.files.end() && isWholeFile(file.first, file.second, wanted->second);
         });
}

// While MagickCore starts, the command line has not been read, and a report fails as a conversion does.
bool saysFailed(const Scenario& scenario, const Run& run, bool inLibrary) {
  if (inLibrary && scenario.flow == Flow::report && run.status == 1 && run.output == "\n") return true;
  switch (scenario.flow) {
    case Flow::conversion:
      return run.status == 1 && run.output == "\n";
    case Flow::decoding:
      return run.status == 1 && (run.output == "\n" || run.output.empty());
    case Flow::report:
      return (run.status == 0 || run.status == 1) && run.output.empty();
    case Flow::tool:
      return run.status == 1 && run.errors.starts_with(scenario.program);
  }
  return false;
}

// A tool that fails at its second file may leave the first, but nothing half written.
bool leftNothingHalf(const Scenario& scenario, const Run& clean, const Run& before, const Run& run) {
  if (scenario.flow != Flow::tool) return run.files.empty();
  return std::all_of(run.files.begin(), run.files.end(), [&](const auto& file) {
    const auto holds = [&](const Run& other) {
      const auto found = other.files.find(file.first);
      return found != other.files.end() && found->second == file.second;
    };
    return holds(clean) || holds(before);
  });
}

// Where a failed allocation is known to end a run inside a library's own code: fontconfig and its XML reader go on with
// what they could not have; MagickCore waits for the lock whose memory it failed to get.
bool isBeyondHelp(std::string_view where) {
  while (where.starts_with("libc.so.")) where.remove_prefix(std::min(where.find(' '), where.size() - 1) + 1);
  const std::string_view caller = where.substr(0, where.find(' '));
  return caller.starts_with("libfontconfig.") || caller.starts_with("libexpat.") ||
         caller.ends_with("(AllocateSemaphoreInfo)");
}

bool hasCrashed(const Run& run) {
  return run.status < 0 || run.errors.find("AddressSanitizer:DEADLYSIGNAL") != std::string::npos;
}

}  // namespace

Verdict judge(const Scenario& scenario, const Fault& fault, const Run& clean, const Run& before,
              const Run& run) {
  const bool isLimit = fault.addressSpace != 0;
  const auto isOf = [&](FaultKind kind) { return !isLimit && fault.kind == kind; };
  const bool inLibrary = isLimit || isOf(FaultKind::libraryMemory);

  if (isLimit && run.status == kNotStarted) return Verdict::notStarted;
  if (hasCrashed(run)) {
    const bool isLibrarys = isLimit || (inLibrary && isBeyondHelp(run.record.where));
    return isLibrarys ? Verdict::libraryCrash : Verdict::wrong;
  }
  if (isSame(run, clean)) return Verdict::survived;
  const bool isTool = scenario.flow == Flow::tool;
  // What a library had begun to write stays.
  const bool mayLeaveHalf = !isTool && (inLibrary || isOf(FaultKind::write));
  if (saysFailed(scenario, run, inLibrary) &&
      (mayLeaveHalf || leftNothingHalf(scenario, clean, before, run))) {
    return Verdict::failed;
  }
  if (isTool) return Verdict::wrong;
  const bool mayEndEarly =
      isOf(FaultKind::cut) || (isOf(FaultKind::read) && scenario.flow != Flow::conversion);
  if (mayEndEarly && isLike(run, clean)) return Verdict::coarser;
  if (mayLeaveHalf && run.status == clean.status && run.output == clean.output) return Verdict::claimed;
  return Verdict::wrong;
}

}  // namespace ei4::test
