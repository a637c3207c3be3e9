// Decoding in process, memory to packed pixels: decode_bench FOLDER [options of Google Benchmark].
// One benchmark for each image and reduction factor; ns_per_px counts the pixels of the decoded (not the
// coded) size.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>

#include "gwav4/decompressor.h"
#include "input_files.h"

namespace {

using ei4::bench::kPreambleBytes;
using zel::gwav4::CGWavDecompressor;
using zel::gwav4::kHeaderBytes;

using Bytes = std::vector<unsigned char>;

void decode(benchmark::State& state, const Bytes& file, int factor) {
  const unsigned char* stream = file.data() + kPreambleBytes;
  const unsigned long codedBytes = file.size() - kPreambleBytes - kHeaderBytes;
  const CGWavDecompressor sizes(stream, codedBytes, factor, 0);
  const double pixels = static_cast<double>(sizes.getXSize()) * sizes.getYSize();
  Bytes out(static_cast<std::size_t>(sizes.getXSize()) * static_cast<std::size_t>(sizes.getYSize()) *
            static_cast<std::size_t>(sizes.getBytesPerPixel()));
  for (auto _ : state) {
    CGWavDecompressor decoder(stream, codedBytes, factor, 0);
    const int status = decoder.decompress(out.data(), out.size(), 0);
    if (status != zel::gwav4::kComplete && status != zel::gwav4::kPartial) state.SkipWithError("not decoded");
    benchmark::DoNotOptimize(out.data());
  }
  state.counters["Mpx"] = pixels / 1e6;
  state.counters["per_px"] =
      benchmark::Counter(pixels, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: decode_bench FOLDER [options of Google Benchmark]\n");
    return 2;
  }
  constexpr int kMostFactor = 5;
  for (const auto& path : ei4::bench::imagesIn(argv[1])) {
    const auto file = std::make_shared<Bytes>(ei4::bench::readFile(path));
    if (file->size() <= kPreambleBytes + kHeaderBytes) continue;
    for (int factor = 0; factor <= kMostFactor; ++factor) {
      const std::string name = path.stem().string() + "/" + std::to_string(factor);
      benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        decode(state, *file, factor);
      })->Unit(benchmark::kMillisecond);
    }
  }
  argv[1] = argv[0];
  int count = argc - 1;
  benchmark::Initialize(&count, argv + 1);
  if (benchmark::ReportUnrecognizedArguments(count, argv + 1)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
