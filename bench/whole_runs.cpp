// Whole runs of the converter over the images of a folder: whole_runs EI4CONVERT FOLDER [RUNS].
// Times are the least of RUNS, peaks the largest. Each job runs in turns with what it cannot do without:
//   thumbnail  a program that starts MagickCore and writes a smooth JPEG of 128 x 128 pixels
//   full jpeg  one that reads the ready windowed pixels and writes them as JPEG through MagickCore
//   full raw   the converter's start (its usage text), the decoding in process, and the writing of as many bytes
// "ratio" is to these, "limit" what is aimed at, for times as for the peak. Ratios are of processor time, user and
// system: other programs disturb it less.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "child_run.h"
#include "gwav4/header.h"
#include "input_files.h"
#include "raw_parts.h"
#include "report_text.h"

namespace {

using ei4::bench::RunCost;
using ei4::bench::runInTurns;
using ei4::bench::Words;

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

// One job of the converter, beside the least that it could cost.
struct Job {
  const char* name;
  RunCost cost;
  double least = 0;      // ms of processor time; 0: nothing to compare with
  double limit = 0;      // of the ratio
  double peakLimit = 0;  // MiB; 0: none
};

void printJob(const std::string& image, const Job& job, double pixels) {
  std::printf("%-16s %-14s %8.2f %8.2f %8.2f", image.c_str(), job.name, job.cost.milliseconds,
              job.cost.cpuMilliseconds, job.cost.milliseconds * 1e6 / pixels);
  if (job.least > 0) {
    std::printf(" %8.2f %6.2f %6.2f", job.least, job.cost.cpuMilliseconds / job.least, job.limit);
  } else {
    std::printf(" %8s %6s %6s", "", "", "");
  }
  std::printf(" %9.1f", job.cost.peakMebibytes);
  if (job.peakLimit > 0) std::printf(" %6.1f", job.peakLimit);
  std::printf("\n");
  std::fflush(stdout);
}

struct Programs {
  std::string converter;
  std::string jpegOnly;
};

// The jobs on one image, `count` runs each.
class ImageRuns {
 public:
  ImageRuns(const Programs& toRun, const std::filesystem::path& image, const ScratchFolder& outputs,
            int count)
      : programs(toRun), path(image), scratch(outputs), runs(count) {
    // Only the head is read here: a child's peak memory starts at its parent's.
    const auto head = ei4::bench::readFile(path, ei4::bench::kHeadBytes);
    header = zel::gwav4::parseHeader(head.data() + ei4::bench::kPreambleBytes);
    pixels = static_cast<double>(header.xSize) * header.ySize;
  }

  void printAll() const {
    for (const Job& job : {thumbnail(), fullJpeg(), fullRaw(), plain("jpeg in 1024", boxed()), report()}) {
      printJob(path.stem().string(), job, pixels);
    }
  }

 private:
  Words convert(const Words& options) const {
    Words words = {programs.converter, "-in", path.string()};
    words.insert(words.end(), options.begin(), options.end());
    return words;
  }
  Words boxed() const { return {"-geom", "1024x1024", "-out", scratch.file("g.jpg"), "-jpgquality", "90"}; }

  Job plain(const char* name, const Words& options) const {
    return {.name = name, .cost = runInTurns({convert(options)}, runs)[0]};
  }

  Job thumbnail() const {
    constexpr int kTurns = 4;  // for each run: these are short
    const auto costs =
        runInTurns({convert({"-geom", "128x128", "-out", scratch.file("t.jpg"), "-jpgquality", "90"}),
                    {programs.jpegOnly, scratch.file("s.jpg"), "128", "128"}},
                   kTurns * runs);
    return {.name = "thumbnail 128",
            .cost = costs[0],
            .least = costs[1].cpuMilliseconds,
            .limit = 1.15,
            .peakLimit = 16};
  }

  Job fullJpeg() const {
    const bool grey = header.bytesPerPixel <= 2;
    const std::string windowed = scratch.file("windowed");
    ei4::bench::runOnce(convert({"-outcolor", grey ? "M08" : "C08", "-out", windowed}));
    const auto costs = runInTurns({convert({"-out", scratch.file("f.jpg"), "-jpgquality", "90"}),
                                   {programs.jpegOnly, scratch.file("o.jpg"), std::to_string(header.xSize),
                                    std::to_string(header.ySize), windowed, grey ? "I" : "RGB"}},
                                  runs);
    return {.name = "full jpeg", .cost = costs[0], .least = costs[1].cpuMilliseconds, .limit = 1.25};
  }

  Job fullRaw() const {
    constexpr double kMebibyte = 1024.0 * 1024.0;
    constexpr double kBytesPerCoefficient = 2;
    const auto costs =
        runInTurns({convert({"-out", scratch.file("f.raw")}), {programs.converter, "-help"}}, runs);
    const double outputBytes = pixels * header.bytesPerPixel;
    const double components = header.bytesPerPixel == 3 ? 3 : 1;
    const double decoding = ei4::bench::inChild([&] { return ei4::bench::decodeMilliseconds(path, runs); });
    const double writing = ei4::bench::inChild([&] {
      return ei4::bench::writeMilliseconds(scratch.file("w.raw"), static_cast<std::size_t>(outputBytes),
                                           runs);
    });
    const double bytes = pixels * components * kBytesPerCoefficient + outputBytes +
                         static_cast<double>(std::filesystem::file_size(path));
    return {.name = "full raw",
            .cost = costs[0],
            .least = costs[1].cpuMilliseconds + decoding + writing,
            .limit = 1.3,
            .peakLimit = bytes / kMebibyte + 12};
  }

  Job report() const {
    const std::string text = scratch.file("report.txt");
    std::ofstream(text) << ei4::bench::reportText(header.xSize, header.ySize, kAnnotations);
    Words options = {"-ima", text};
    for (const std::string& word : boxed()) options.push_back(word);
    return plain("report in 1024", options);
  }

  const Programs& programs;
  std::filesystem::path path;
  const ScratchFolder& scratch;
  int runs;
  zel::gwav4::GWHeader header{};
  double pixels = 0;
};

void measureFolder(const std::string& converter, const std::string& folder, int runs) {
  const ScratchFolder scratch;
  const auto beside = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const Programs programs{.converter = converter, .jpegOnly = (beside / "jpeg_only").string()};
  std::printf("%-16s %-14s %8s %8s %8s %8s %6s %6s %9s %6s\n", "image", "job", "ms", "cpu ms", "ns/px",
              "least ms", "ratio", "limit", "peak MiB", "limit");
  for (const auto& path : ei4::bench::imagesIn(folder)) {
    ImageRuns(programs, path, scratch, runs).printAll();
  }
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
