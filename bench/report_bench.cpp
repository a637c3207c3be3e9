// Reading reports, and drawing what they hold.
#include <benchmark/benchmark.h>
#include <magick/MagickCore.h>

#include <memory>
#include <string>
#include <vector>

#include "annotation/annotation_set.h"
#include "draw/cdc.h"
#include "draw/font_folder.h"
#include "report_text.h"

namespace {

void readReport(benchmark::State& state) {
  constexpr int kSide = 2048;
  const int annotations = static_cast<int>(state.range(0));
  std::string text = ei4::bench::reportText(kSide, kSide, annotations);
  for (auto _ : state) {
    CAnnotationSet set;
    if (set.SetAnnotationSetReport(text.data(), CSize(kSide, kSide), 1) == 0 ||
        set.m_listAnnotations.GetCount() != annotations) {
      state.SkipWithError("the report was not read");
      break;
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}
BENCHMARK(readReport)->Arg(20)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

struct DestroyPicture {
  void operator()(Image* image) const { DestroyImage(image); }
  void operator()(ImageInfo* info) const { DestroyImageInfo(info); }
  void operator()(ExceptionInfo* exception) const { DestroyExceptionInfo(exception); }
};

void drawReport(benchmark::State& state) {
  constexpr int kSide = 1024;
  std::string text = ei4::bench::reportText(kSide, kSide, static_cast<int>(state.range(0)));
  CAnnotationSet set;
  set.SetAnnotationSetReport(text.data(), CSize(kSide, kSide), 1);
  const std::unique_ptr<ImageInfo, DestroyPicture> info(AcquireImageInfo());
  const std::unique_ptr<ExceptionInfo, DestroyPicture> exception(AcquireExceptionInfo());
  const std::vector<unsigned char> pixels(std::size_t{kSide} * kSide, 90);
  const std::unique_ptr<Image, DestroyPicture> picture(
      ConstituteImage(kSide, kSide, "I", CharPixel, pixels.data(), exception.get()));
  for (auto _ : state) {
    CDC dc(picture.get(), info.get());
    set.PaintAnnotations(&dc, 1.0);
    set.PaintOrientation(&dc, set.m_ptOffset, set.GetDstImageSize(), set.m_sizeClip, 1.0);
  }
}
BENCHMARK(drawReport)->Arg(0)->Arg(20)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  AddFontFolder();
  MagickCoreGenesis(argv[0], MagickFalse);
  SetMagickResourceLimit(ThreadResource, 1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  MagickCoreTerminus();
  return 0;
}
