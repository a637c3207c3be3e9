// Whole runs of the converter over the images of a folder: whole_runs EI4CONVERT FOLDER [RUNS].
// Times are medians; "x start" compares with a run that converts a raw image of 128 x 128 pixels to JPEG,
// which is little more than the start of a process with its libraries.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "child_run.h"
#include "gwav4/header.h"
#include "input_files.h"
#include "report_text.h"

namespace {

using ei4::bench::medianRun;
using ei4::bench::RunCost;
using Words = std::vector<std::string>;

constexpr int kAnnotations = 20;  // of the reports

/// A folder for outputs that goes away at the end.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "whole_runs.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
    path = pattern;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::string file(const char* name) const { return (path / name).string(); }

 private:
  std::filesystem::path path;
};

RunCost measureStart(const std::string& converter, const ScratchFolder& scratch, int runs) {
  constexpr int kSide = 128;
  const std::string raw = scratch.file("start.raw");
  std::ofstream(raw, std::ios::binary) << std::string(std::size_t{kSide} * kSide, '\x40');
  return medianRun({converter, "-in", raw, "-size", "128x128", "-incolor", "M08", "-out",
                    scratch.file("start.jpg"), "-jpgquality", "90"},
                   runs);
}

void printRow(const std::string& image, const char* job, const RunCost& cost, const RunCost& start,
              double pixels) {
  constexpr double kMebibyte = 1024.0 * 1024.0;
  const double beyond = std::max(0.0, cost.peakMebibytes - 16) * kMebibyte / pixels;
  std::printf("%-16s %-16s %8.1f %8.1f %8.2f %8.1f %9.1f %9.1f\n", image.c_str(), job, cost.milliseconds,
              cost.cpuMilliseconds, cost.milliseconds / start.milliseconds, cost.milliseconds * 1e6 / pixels,
              cost.peakMebibytes, beyond);
}

void measureImage(const std::string& converter, const std::filesystem::path& path,
                  const ScratchFolder& scratch, const RunCost& start, int runs) {
  // Only the head is read here: a child's peak memory starts at its parent's.
  const auto head = ei4::bench::readFile(path, ei4::bench::kHeadBytes);
  const auto header = zel::gwav4::parseHeader(head.data() + ei4::bench::kPreambleBytes);
  const double pixels = static_cast<double>(header.xSize) * header.ySize;
  const auto job = [&](const char* name, const Words& options) {
    Words words = {converter, "-in", path.string()};
    words.insert(words.end(), options.begin(), options.end());
    printRow(path.stem().string(), name, medianRun(words, runs), start, pixels);
  };
  job("thumbnail 128", {"-geom", "128x128", "-out", scratch.file("t.jpg"), "-jpgquality", "90"});
  job("full-size jpeg", {"-out", scratch.file("f.jpg"), "-jpgquality", "90"});
  job("full-size raw", {"-out", scratch.file("f.raw")});
  job("jpeg in 1024", {"-geom", "1024x1024", "-out", scratch.file("g.jpg"), "-jpgquality", "90"});
  const std::string report = scratch.file("report.txt");
  std::ofstream(report) << ei4::bench::reportText(header.xSize, header.ySize, kAnnotations);
  job("report in 1024",
      {"-ima", report, "-geom", "1024x1024", "-out", scratch.file("r.jpg"), "-jpgquality", "90"});
}

void measureFolder(const std::string& converter, const std::string& folder, int runs) {
  const ScratchFolder scratch;
  const RunCost start = measureStart(converter, scratch, 4 * runs);
  std::printf("%-16s %-16s %8s %8s %8s %8s %9s %9s\n", "image", "job", "ms", "cpu ms", "x start", "ns/px",
              "peak MiB", "B/px>16M");
  std::printf("%-16s %-16s %8.1f %8.1f %8.2f %8s %9.1f\n", "(raw 128x128)", "start + jpeg",
              start.milliseconds, start.cpuMilliseconds, 1.0, "", start.peakMebibytes);
  for (const auto& path : ei4::bench::imagesIn(folder)) measureImage(converter, path, scratch, start, runs);
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kDefaultRuns = 11;
  const int runs = argc > 3 ? std::atoi(argv[3]) : kDefaultRuns;
  if (argc < 3 || runs < 1) {
    std::fprintf(stderr, "usage: whole_runs EI4CONVERT FOLDER [RUNS]\n");
    return 2;
  }
  try {
    measureFolder(argv[1], argv[2], runs);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "whole_runs: %s\n", fault.what());
    return 1;
  }
  return 0;
}
