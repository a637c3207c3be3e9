// Decodes every row of a folder of conformance vectors and compares the results to the byte.
//
//   conformance [--naive] [--limit PIXELS] FOLDER
//
// --naive  runs the slow reference decoder of the tests instead of the real one
// --limit  leaves out rows whose full-size picture has more pixels; the summary says how many
// Exit status: 0 when every row matches, 1 when one does not or none was run, 2 for wrong usage.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "conformance/vector_rows.h"
#include "gwav4/decompressor.h"
#include "gwav4/header.h"
#include "reference/naive_decoder.h"
#include "support/sha256.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using ei4::test::NaiveResult;
using ei4::test::VectorRow;

constexpr std::size_t kHeaderBytes = zel::gwav4::kHeaderBytes;
constexpr std::size_t kShortestPreamble = 24;

struct Options {
  std::string folder;
  bool naive = false;
  long long limit = -1;
};

struct RowError {
  std::string message;
};

Bytes readFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw RowError{"cannot read " + path.string()};
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

Bytes firstBytes(const Bytes& bytes, std::size_t from, std::size_t count) {
  if (from > bytes.size()) throw RowError{"the file is too short"};
  const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(from);
  return Bytes(first, first + static_cast<std::ptrdiff_t>(std::min(count, bytes.size() - from)));
}

struct Request {
  Bytes stream;
  int factor = 0;
};

// As the converter reads an .ei4 file for an output of that width: as much of the stream as the budget
// allows.
Request requestForWidth(const Bytes& file, std::size_t streamAt, int width, std::uint64_t bytesExpected) {
  constexpr int kThumbnail = 128;
  constexpr int kSmallestRead = 32;
  Request request;
  int budget = -1, xSize = 0, ySize = 0;
  const Bytes header = firstBytes(file, streamAt, kHeaderBytes);
  if (zel::gwav4::getBestFactor(width, &budget, &request.factor, header.data(), header.size(), &xSize, &ySize,
                                nullptr, nullptr, nullptr) == 0) {
    throw RowError{"getBestFactor refuses the header"};
  }
  std::uint64_t toRead =
      budget < 0 ? file.size() : static_cast<std::uint64_t>(std::max(budget, kSmallestRead));
  if (1 <= width && width <= kThumbnail) toRead *= 2;
  toRead = std::min<std::uint64_t>(toRead, file.size());
  if (toRead != bytesExpected) throw RowError{"reads " + std::to_string(toRead) + " bytes of the stream"};
  request.stream = firstBytes(file, streamAt, toRead);
  return request;
}

Request requestOf(const VectorRow& row) {
  const Bytes file = readFile(row.file);
  if (!row.isEi4) return {firstBytes(file, 0, row.bytesGiven), row.factor};
  if (file.size() < kShortestPreamble) throw RowError{"the file is too short"};
  const std::size_t streamAt = file[6] | file[7] << 8;
  if (row.wantedWidth) return requestForWidth(file, streamAt, *row.wantedWidth, row.bytesGiven);
  return {firstBytes(file, streamAt, row.bytesGiven == 0 ? file.size() : row.bytesGiven), row.factor};
}

NaiveResult decode(const Request& request) {
  zel::gwav4::CGWavDecompressor decompressor(request.stream.data(), request.stream.size() - kHeaderBytes,
                                             request.factor, 0);
  NaiveResult result;
  result.width = decompressor.getXSize();
  result.height = decompressor.getYSize();
  result.bytesPerPixel = decompressor.getBytesPerPixel();
  result.pixels.resize(static_cast<std::size_t>(result.width) * static_cast<std::size_t>(result.height) *
                       static_cast<std::size_t>(result.bytesPerPixel));
  result.status = decompressor.decompress(result.pixels.data(), result.pixels.size(), 0);
  return result;
}

void require(bool holds, const std::string& otherwise) {
  if (!holds) throw RowError{otherwise};
}

void compare(const VectorRow& row, const NaiveResult& result) {
  require(result.status == row.status, "status " + std::to_string(result.status));
  require(result.width == row.width && result.height == row.height,
          "size " + std::to_string(result.width) + " x " + std::to_string(result.height));
  require(!row.bytesPerPixel || result.bytesPerPixel == *row.bytesPerPixel,
          "bytes per pixel " + std::to_string(result.bytesPerPixel));
  require(!row.outputBytes || result.pixels.size() == *row.outputBytes,
          std::to_string(result.pixels.size()) + " bytes of pixels");
  if (!row.pixels.empty()) {
    const Bytes wanted = readFile(row.pixels);
    const auto [got, want] = std::ranges::mismatch(result.pixels, wanted);
    require(got == result.pixels.end() && want == wanted.end(),
            "pixels differ at byte " + std::to_string(got - result.pixels.begin()));
  }
  const std::string digest = ei4::test::sha256Hex(result.pixels);
  require(digest == row.sha256, "SHA-256 " + digest);
}

long long pixelsOf(const Bytes& stream) {
  return (stream[6] | stream[7] << 8) * static_cast<long long>(stream[8] | stream[9] << 8);
}

enum class Outcome { matches, differs, leftOut };

Outcome run(const VectorRow& row, const Options& options) {
  try {
    const Request request = requestOf(row);
    require(request.stream.size() >= kHeaderBytes, "the stream has no header");
    if (options.limit >= 0 && pixelsOf(request.stream) > options.limit) return Outcome::leftOut;
    compare(row, options.naive ? ei4::test::decodeNaively(request.stream, request.factor) : decode(request));
    return Outcome::matches;
  } catch (const RowError& error) {
    std::printf("FAILED %s: %s\n", row.title.c_str(), error.message.c_str());
    return Outcome::differs;
  }
}

int runAll(const Options& options) {
  int matching = 0, ran = 0, leftOut = 0;
  for (const VectorRow& row : ei4::test::readVectorRows(options.folder)) {
    const Outcome outcome = run(row, options);
    if (outcome == Outcome::leftOut) {
      ++leftOut;
      continue;
    }
    ++ran;
    if (outcome == Outcome::matches) ++matching;
  }
  if (leftOut > 0) std::printf("%d rows left out by --limit\n", leftOut);
  std::printf("%d of %d rows match\n", matching, ran);
  return ran > 0 && matching == ran ? EXIT_SUCCESS : EXIT_FAILURE;
}

bool parse(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--naive") {
      options.naive = true;
    } else if (argument == "--limit" && i + 1 < argc) {
      char* end = nullptr;
      options.limit = std::strtoll(argv[++i], &end, 10);
      if (end == argv[i] || *end != '\0' || options.limit < 0) return false;
    } else if (options.folder.empty() && !argument.starts_with("-")) {
      options.folder = argument;
    } else {
      return false;
    }
  }
  return !options.folder.empty();
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  try {
    if (parse(argc, argv, options)) return runAll(options);
    std::fprintf(stderr, "usage: conformance [--naive] [--limit PIXELS] FOLDER\n");
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "conformance: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
