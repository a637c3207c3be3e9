// Decoding in process, memory to packed pixels: decode_bench FOLDER [options of Google Benchmark].
// One benchmark for each image and reduction factor, and "thumbnail": what a request of 128 pixels decodes from the
// bytes that it reads. per_px is the time for each pixel of the output (not of the coded picture), per_decoded_px that
// for each pixel of the level that the wavelet is decoded to, before the output conversion halves what is left. "walk" is
// the part of a factor's decode that reads the directory: the decoder is set up and then refuses the buffer.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <limits>
#include <memory>
#include <string>

#include "gwav4/decompressor.h"
#include "input_files.h"

namespace {

using ei4::bench::kHeadBytes;
using ei4::bench::kPreambleBytes;
using zel::gwav4::CGWavDecompressor;
using zel::gwav4::kHeaderBytes;

using Bytes = std::vector<unsigned char>;

/// Decodes the first `codedBytes` behind the stream header.
void decode(benchmark::State& state, const Bytes& file, std::size_t codedBytes, int factor) {
  const unsigned char* stream = file.data() + kPreambleBytes;
  const CGWavDecompressor sizes(stream, codedBytes, factor, 0);
  const double pixels = static_cast<double>(sizes.getXSize()) * sizes.getYSize();
  const auto header = zel::gwav4::parseHeader(stream);
  const auto choice = zel::gwav4::chooseLevels(header.xSize, header.ySize, factor);
  const double decodedPixels = static_cast<double>(choice.xSize) * choice.ySize;
  Bytes out(static_cast<std::size_t>(sizes.getXSize()) * static_cast<std::size_t>(sizes.getYSize()) *
            static_cast<std::size_t>(sizes.getBytesPerPixel()));
  for (auto _ : state) {
    CGWavDecompressor decoder(stream, codedBytes, factor, 0);
    const int status = decoder.decompress(out.data(), out.size(), 0);
    if (status != zel::gwav4::kComplete && status != zel::gwav4::kPartial) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(out.data());
  }
  state.counters["Mpx"] = pixels / 1e6;
  const auto timePer = [](double count) {
    return benchmark::Counter(count,
                              benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  };
  state.counters["per_px"] = timePer(pixels);
  state.counters["per_decoded_px"] = timePer(decodedPixels);
}

void walkDirectory(benchmark::State& state, const Bytes& file, int factor) {
  for (auto _ : state) {
    CGWavDecompressor decoder(file.data() + kPreambleBytes, file.size() - kHeadBytes, factor, 0);
    if (decoder.decompress(nullptr, 0, 0) != zel::gwav4::kBufferTooSmall) state.SkipWithError("decoded");
  }
}

/// As the converter prepares a thumbnail: the factor for the width and twice the estimated bytes.
void decodeThumbnail(benchmark::State& state, const Bytes& file) {
  constexpr int kWidth = 128;
  int budget = 0;
  int factor = 0;
  int width = 0;
  int height = 0;
  if (zel::gwav4::getBestFactor(kWidth, &budget, &factor, file.data() + kPreambleBytes, kHeaderBytes, &width,
                                &height, nullptr, nullptr, nullptr) == 0) {
    state.SkipWithError("no stream");
    return;
  }
  const std::size_t coded = file.size() - kHeadBytes;
  decode(state, file,
         budget < 0 ? coded : std::min(coded, 2 * static_cast<std::size_t>(budget) - kHeaderBytes), factor);
}

void registerImage(const std::filesystem::path& path) {
  constexpr int kMostFactor = 5;
  const auto file =
      std::make_shared<Bytes>(ei4::bench::readFile(path, std::numeric_limits<std::size_t>::max()));
  const auto add = [&](const std::string& name, auto run) {
    benchmark::RegisterBenchmark((path.stem().string() + "/" + name).c_str(), run)
        ->Unit(benchmark::kMillisecond);
  };
  for (int factor = 0; factor <= kMostFactor; ++factor) {
    add(std::to_string(factor),
        [=](benchmark::State& state) { decode(state, *file, file->size() - kHeadBytes, factor); });
    add("walk/" + std::to_string(factor),
        [=](benchmark::State& state) { walkDirectory(state, *file, factor); });
  }
  add("thumbnail", [=](benchmark::State& state) { decodeThumbnail(state, *file); });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: decode_bench FOLDER [options of Google Benchmark]\n");
    return 2;
  }
  try {
    for (const auto& path : ei4::bench::imagesIn(argv[1])) registerImage(path);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "decode_bench: %s\n", fault.what());
    return 1;
  }
  argv[1] = argv[0];
  int count = argc - 1;
  benchmark::Initialize(&count, argv + 1);
  if (benchmark::ReportUnrecognizedArguments(count, argv + 1)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
