// Painting in process, buffer to buffer: paint_bench [options of Google Benchmark].
// per_px is the time for each pixel of the larger side: of the source where a picture shrinks, else of the
// destination. The benchmarks named limit/... do the least that a painting of the same pixels could do.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "image/dicom_image.h"
#include "image/paint_image.h"

namespace {

constexpr CSize kRadiograph(2000, 2128);
constexpr CSize kSlice(512, 512);

std::size_t pixelsOf(CSize size) {
  return static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
}

void countPixels(benchmark::State& state, std::size_t pixels) {
  state.counters["per_px"] =
      benchmark::Counter(static_cast<double>(pixels),
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// 12 significant bits of 16, or 8: slopes with some noise, as pictures have them.
template <class Pixel>
std::vector<Pixel> makePicture(CSize size) {
  std::vector<Pixel> pixels(pixelsOf(size));
  auto* components = reinterpret_cast<typename Pixel::Component*>(pixels.data());
  std::uint32_t state = 1;
  for (std::size_t i = 0; i < pixels.size() * Pixel::kComponents; ++i) {
    state = state * 1664525U + 1013904223U;
    const std::uint32_t slope = static_cast<std::uint32_t>(i >> 10);
    const std::uint32_t sample = (slope + (state >> 26)) & (sizeof(components[0]) == 2 ? 0xFFF : 0xFF);
    components[i] = static_cast<typename Pixel::Component>(sample);
  }
  return pixels;
}

/// A ramp over the 12 bits, white above.
template <class Source, class Destination>
std::vector<typename Destination::Component> makeTable() {
  using Entry = typename Destination::Component;
  constexpr std::size_t kEntries = sizeof(typename Source::Component) == 2 ? 65536 : 256;
  constexpr std::size_t kRamp = kEntries == 256 ? 256 : 4096;
  constexpr std::size_t kTop = std::numeric_limits<Entry>::max();
  std::vector<Entry> table(kEntries, static_cast<Entry>(kTop));
  for (std::size_t i = 0; i < kRamp; ++i) table[i] = static_cast<Entry>(i * kTop / kRamp);
  return table;
}

struct Job {
  CSize from, to;
  ORIENTATION orientation = ORIENTATION_AS_STORED;
  bool table = false;
  int mode = 1;
};

template <class Source, class Accumulator, class Destination>
void paint(benchmark::State& state, const Job& job) {
  const auto source = makePicture<Source>(job.from);
  std::vector<typename Destination::Component> table;
  if (job.table) table = makeTable<Source, Destination>();
  std::vector<Destination> destination(pixelsOf(job.to));
  for (auto _ : state) {
    const int done = PaintImage_<Source, Accumulator, Destination>(
        source.data(), job.from, destination.data(), job.to, CPoint(0, 0), job.to,
        CRect(CPoint(0, 0), job.to), job.orientation, 0, job.table ? table.data() : nullptr, 0, job.mode);
    if (done == 0) state.SkipWithError("not painted");
    benchmark::ClobberMemory();
  }
  countPixels(state, std::max(pixelsOf(job.from), pixelsOf(job.to)));
}

/// Through the image's own entry, which also makes the destination: what a conversion pays.
void paintNewImage(benchmark::State& state, CSize to) {
  auto pixels = makePicture<CPixelM16>(kRadiograph);
  auto table = makeTable<CPixelM16, CPixelM08>();
  const auto source = CreateDicomImage(COLOR_TYPE_M16);
  source->Create(static_cast<int>(kRadiograph.cx), static_cast<int>(kRadiograph.cy), pixels.data());
  for (auto _ : state) {
    CDicomImage* made = nullptr;
    if (source->PaintImage(to, CPoint(0, 0), to, CRect(CPoint(0, 0), to), ORIENTATION_AS_STORED, 0,
                           table.data(), 0, 1, COLOR_TYPE_M08, &made) == 0) {
      state.SkipWithError("not painted");
    }
    const std::unique_ptr<CDicomImage> image(made);
    benchmark::ClobberMemory();
  }
  countPixels(state, pixelsOf(kRadiograph));
}

/// A new image whose pages are all written once.
void touchNewImage(benchmark::State& state) {
  const auto side = static_cast<int>(state.range(0));
  for (auto _ : state) {
    const auto image = CreateDicomImage(COLOR_TYPE_M16);
    if (image->Create(side, side) == 0) state.SkipWithError("no memory");
    std::memset(image->m_pBuffer, 1, image->m_nBufferSize);
    benchmark::ClobberMemory();
  }
  countPixels(state, static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
}

// --- What cannot be undercut.

template <class Pixel>
void copyBytes(benchmark::State& state) {
  const auto from = makePicture<Pixel>(kRadiograph);
  std::vector<Pixel> to(from.size());
  for (auto _ : state) {
    std::memcpy(static_cast<void*>(to.data()), from.data(), from.size() * sizeof(Pixel));
    benchmark::ClobberMemory();
  }
  countPixels(state, from.size());
}

/// Four look-ups and one store at a time.
void lookUp(benchmark::State& state) {
  const auto from = makePicture<CPixelM16>(kRadiograph);
  const auto table = makeTable<CPixelM16, CPixelM08>();
  std::vector<CPixelM08> to(from.size());
  const std::uint8_t* entries = table.data();
  for (auto _ : state) {
    auto* out = reinterpret_cast<unsigned char*>(to.data());
    for (std::size_t i = 0; i + 4 <= from.size(); i += 4) {
      std::uint64_t values = 0;
      std::memcpy(&values, &from[i], sizeof values);
      std::uint32_t four = entries[values & 0xFFFF];
      four |= static_cast<std::uint32_t>(entries[(values >> 16) & 0xFFFF]) << 8;
      four |= static_cast<std::uint32_t>(entries[(values >> 32) & 0xFFFF]) << 16;
      four |= static_cast<std::uint32_t>(entries[values >> 48]) << 24;
      std::memcpy(out + i, &four, sizeof four);
    }
    benchmark::ClobberMemory();
  }
  countPixels(state, from.size());
}

/// Reads every component once and adds it up.
template <class Pixel>
void sumOnce(benchmark::State& state) {
  const auto from = makePicture<Pixel>(kRadiograph);
  const auto* components = reinterpret_cast<const typename Pixel::Component*>(from.data());
  const std::size_t count = from.size() * Pixel::kComponents;
  for (auto _ : state) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < count; ++i) sum += components[i];
    benchmark::DoNotOptimize(sum);
    benchmark::ClobberMemory();
  }
  countPixels(state, from.size());
}

// The arithmetic of averaging and blending on numbers that lie ready side by side, for each row of the destination:
// the rows behind it weighted and added up, the columns behind a pixel weighted and added up, one
// multiplication in place of the division.
#if defined(__x86_64__) && !defined(__clang__)  // which has no clones of templates
#define EI4_BEST_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define EI4_BEST_VECTORS
#endif

template <int kRows, class Component>
EI4_BEST_VECTORS void weighRows(const Component* lines, std::uint16_t weight, std::size_t columns,
                                double* sums) {
  for (std::size_t i = 0; i < columns; ++i) {
    std::uint32_t sum = std::uint32_t{lines[i]} * weight + std::uint32_t{lines[i + columns]} * weight;
    if constexpr (kRows > 2) sum += std::uint32_t{lines[i + 2 * columns]} * weight;
    sums[i] = static_cast<double>(static_cast<std::int32_t>(sum));
  }
}

template <int kTaps, class Component>
EI4_BEST_VECTORS void weighColumns(const double* sums, const double* weights, std::size_t columns,
                                   Component* out) {
  for (std::size_t i = 0; i < columns; ++i) {
    double sum = sums[i] * weights[i] + sums[i + 1] * weights[i + 1];
    if constexpr (kTaps > 2) sum += sums[i + 2] * weights[i + 2];
    out[i] = static_cast<Component>(static_cast<int>((sum + 0.5) * 0.0625));
  }
}

template <class Pixel, int kTaps>
void computeOnly(benchmark::State& state, CSize from, CSize to) {
  constexpr std::size_t kComponents = Pixel::kComponents;
  const std::size_t columnsIn = static_cast<std::size_t>(from.cx) * kComponents;
  const std::size_t columnsOut = static_cast<std::size_t>(to.cx) * kComponents;
  const auto rowsIn = static_cast<std::size_t>(from.cy);
  const auto rowsOut = static_cast<std::size_t>(to.cy);
  const auto source = makePicture<Pixel>(CSize(static_cast<int>(from.cx), static_cast<int>(from.cy) + 3));
  const auto* lines = reinterpret_cast<const typename Pixel::Component*>(source.data());
  std::vector<Pixel> out(pixelsOf(to));
  auto* components = reinterpret_cast<typename Pixel::Component*>(out.data());
  std::vector<double> sums(std::max(columnsIn, columnsOut) + 3);
  const std::vector<double> weights(columnsOut + 3, 0.001);
  for (auto _ : state) {
    for (std::size_t row = 0; row < rowsOut; ++row) {
      weighRows<kTaps>(lines + row * rowsIn / rowsOut * columnsIn, 3, columnsIn, sums.data());
      weighColumns<kTaps>(sums.data(), weights.data(), columnsOut, components + row * columnsOut);
    }
    benchmark::ClobberMemory();
  }
  countPixels(state, std::max(pixelsOf(from), pixelsOf(to)));
}

template <class Source, class Accumulator, class Destination>
void add(const std::string& name, const Job& job) {
  benchmark::RegisterBenchmark(name.c_str(), paint<Source, Accumulator, Destination>, job)
      ->Unit(benchmark::kMicrosecond);
}

void addGreyAndColour(const std::string& name, const Job& job) {
  Job windowed = job;
  windowed.table = true;
  add<CPixelM16, CPixelDDD, CPixelM08>(name + "/windowed", windowed);
  add<CPixelM16, CPixelDDD, CPixelM16>(name + "/grey16", job);
  add<CPixelM08, CPixelDDD, CPixelM08>(name + "/grey8", job);
  add<CPixelC08, CPixelCCC, CPixelC08>(name + "/colour", job);
}

void addLimit(const char* name, void (*run)(benchmark::State&)) {
  benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMicrosecond);
}

template <int kTaps>
void addArithmetic(const std::string& name, CSize from, CSize to) {
  const auto addFor = [&](const char* format, auto run) {
    benchmark::RegisterBenchmark(("limit/" + name + format).c_str(), run, from, to)
        ->Unit(benchmark::kMicrosecond);
  };
  addFor("/grey16", computeOnly<CPixelM16, kTaps>);
  addFor("/grey8", computeOnly<CPixelM08, kTaps>);
  addFor("/colour", computeOnly<CPixelC08, kTaps>);
}

void addAll() {
  addLimit("limit/copy/grey16", copyBytes<CPixelM16>);
  addLimit("limit/copy/grey8", copyBytes<CPixelM08>);
  addLimit("limit/copy/colour", copyBytes<CPixelC08>);
  addLimit("limit/look_up", lookUp);
  addLimit("limit/sum/grey16", sumOnce<CPixelM16>);
  addLimit("limit/sum/grey8", sumOnce<CPixelM08>);
  addLimit("limit/sum/colour", sumOnce<CPixelC08>);
  addArithmetic<3>("average/1024", kRadiograph, CSize(1024, 1089));
  addArithmetic<2>("average/half", kRadiograph, CSize(1000, 1064));
  addArithmetic<3>("average/two_thirds", kRadiograph, CSize(1333, 1418));
  addArithmetic<2>("bilinear/double", kSlice, CSize(1024, 1024));

  addGreyAndColour("copy", {kRadiograph, kRadiograph});
  constexpr CSize kTurned(kRadiograph.cy, kRadiograph.cx);
  for (int turn = 1; turn < 8; ++turn) {
    const auto orientation = static_cast<ORIENTATION>(turn);
    const Job job{kRadiograph, ExchangesSides(orientation) ? kTurned : kRadiograph, orientation};
    addGreyAndColour("orient/" + std::to_string(turn), job);
  }
  addGreyAndColour("average/1024", {kRadiograph, CSize(1024, 1089)});
  addGreyAndColour("average/480", {kRadiograph, CSize(480, 510)});
  addGreyAndColour("average/128", {kRadiograph, CSize(128, 136)});
  addGreyAndColour("average/half", {kRadiograph, CSize(1000, 1064)});
  addGreyAndColour("average/two_thirds", {kRadiograph, CSize(1333, 1418)});
  addGreyAndColour("bilinear/double", {kSlice, CSize(1024, 1024)});
  addGreyAndColour("bilinear/one_and_a_half", {kSlice, CSize(768, 768)});
  addGreyAndColour("bilinear/2.3", {kSlice, CSize(1178, 1178)});
  addGreyAndColour("nearest/1024", {kRadiograph, CSize(1024, 1089), ORIENTATION_AS_STORED, false, 0});
  addGreyAndColour("nearest/double", {kSlice, CSize(1024, 1024), ORIENTATION_AS_STORED, false, 0});
  // The sums of the sides agree, so pixels are copied one by one although one side shrinks.
  addGreyAndColour("replicate", {kRadiograph, CSize(1999, 2129)});

  benchmark::RegisterBenchmark("new_image/copy", paintNewImage, kRadiograph)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("new_image/half", paintNewImage, CSize(1000, 1064))
      ->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("new_image/touch", touchNewImage)
      ->Arg(256)
      ->Arg(512)
      ->Arg(1024)
      ->Arg(2048)
      ->Arg(4096)
      ->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  addAll();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
