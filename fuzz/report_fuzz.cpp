// Reports: from the text to annotations, their view, and the drawing.
//
// Input   u16 sides of the image, u8 flags (bit 0: annotations measure themselves, 1: draw, 2: on colour), u8 sides of
//         the box that the view is fitted into (0 x 0: as reported), then the text up to its first zero byte.
// Limits  Pictures of at most 128 x 128 are drawn on, with a hundredth of the work that a report may take; beyond it
//         figures are left out. Texts of more than 128 KiB are cut.
// Holds   The text is only read, and a text read twice gives the same answer and as many annotations. A report is good
//         with its size and its window, unless it passes a limit: it then leaves no annotation, and within the limits
//         it has no more annotations, bytes of labels and vertices than these say. A fitted view has the box's size.
//         Drawing leaves the picture its size, and a bound that leaves nothing out changes no pixel.

#include <magick/MagickCore.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "annotation/ann_free.h"
#include "annotation/ann_text.h"
#include "annotation/annotation_set.h"
#include "annotation/report_limits.h"
#include "check.h"
#include "draw/cdc.h"
#include "draw/font_folder.h"
#include "driver/report_view.h"
#include "input.h"
#include "quiet.h"
#include "target.h"

namespace {

using ei4::fuzz::require;

constexpr std::size_t kLongestText = 1 << 17;
constexpr long kLargestSide = 128;
constexpr long kMostWork = ei4::kMostDrawingWork / 100;

struct Library {
  Library() {
    AddFontFolder();
    MagickCoreGenesis("", MagickFalse);  // without its signal handlers, which would hide a crash
    SetMagickResourceLimit(ThreadResource, 1);
  }
  ~Library() { MagickCoreTerminus(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
};

struct Destroy {
  void operator()(Image* image) const { DestroyImageList(image); }
  void operator()(ImageInfo* info) const { DestroyImageInfo(info); }
  void operator()(ExceptionInfo* exception) const { DestroyExceptionInfo(exception); }
};

int readInto(CAnnotationSet& set, const std::string& text, CSize image, int measure) {
  std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);
  const int answer = set.SetAnnotationSetReport(exact.data(), image, measure);
  require(std::strcmp(exact.data(), text.c_str()) == 0, "the text is only read");
  return answer;
}

int countOf(const CAnnotationSet& set) { return static_cast<int>(set.m_listAnnotations.GetCount()); }

void requireLimits(const CAnnotationSet& set) {
  long bytes = 0;
  long vertices = 0;
  for (POSITION at = set.m_listAnnotations.GetHeadPosition(); at != nullptr;) {
    const CAnnotation* const annotation = set.m_listAnnotations.GetNext(at);
    const auto* const text = dynamic_cast<const CAnnText*>(annotation);
    const auto* const outline = dynamic_cast<const CAnnFree*>(annotation);
    const int label = text != nullptr ? text->m_strText.GetLength() : annotation->m_strValue.GetLength();
    require(label <= ei4::kMostLabelBytes, "no label is longer than the limit");
    bytes += label;
    vertices += outline != nullptr ? outline->m_arrVertices.GetSize() : 0;
  }
  require(countOf(set) <= ei4::kMostAnnotations && bytes <= ei4::kMostBytesOfLabels &&
              vertices <= ei4::kMostVertices,
          "a report that is taken keeps the limits");
}

bool isDrawable(const CAnnotationSet& set) {
  const CSize clip = set.m_sizeClip;
  return clip.cx >= 1 && clip.cy >= 1 && clip.cx <= kLargestSide && clip.cy <= kLargestSide;
}

// The drawn picture, two bytes a channel; whether it is complete.
struct Drawn {
  std::vector<unsigned short> channels;
  bool isComplete;
};

Drawn draw(CAnnotationSet& set, bool colour, long work) {
  const auto width = static_cast<std::size_t>(set.m_sizeClip.cx);
  const auto height = static_cast<std::size_t>(set.m_sizeClip.cy);
  const std::vector<unsigned char> pixels(width * height * (colour ? 3 : 1), 90);
  const std::unique_ptr<ImageInfo, Destroy> info(AcquireImageInfo());
  const std::unique_ptr<ExceptionInfo, Destroy> exception(AcquireExceptionInfo());
  const std::unique_ptr<Image, Destroy> picture(
      ConstituteImage(width, height, colour ? "RGB" : "I", CharPixel, pixels.data(), exception.get()));
  require(picture != nullptr, "a picture can be had");
  CDC dc(picture.get(), info.get());
  dc.LimitWork(work);
  set.PaintAnnotations(&dc, 1.0);
  set.PaintCalibrations(&dc, 1.0);
  set.PaintOrientation(&dc, set.m_ptOffset, set.GetDstImageSize(), set.m_sizeClip, 1.0);
  require(picture->columns == width && picture->rows == height, "drawing leaves the size");
  Drawn drawn{std::vector<unsigned short>(4 * width * height), !dc.HasLeftOut()};
  ExportImagePixels(picture.get(), 0, 0, width, height, "RGBA", ShortPixel, drawn.channels.data(),
                    exception.get());
  return drawn;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Library library;
  ei4::fuzz::silence();
  ei4::fuzz::Input input(data, size);
  const CSize image(input.u16(), input.u16());
  const unsigned flags = input.u8();
  const CSize box(input.u8(), input.u8());
  const std::string bytes = input.text().substr(0, kLongestText);
  const std::string text = bytes.substr(0, bytes.find('\0'));

  CAnnotationSet set;
  const int answer = readInto(set, text, image, static_cast<int>(flags & 1));
  const bool isViewed = set.m_bReported[CAnnotationSet::REPORTED_SIZED] != 0 &&
                        set.m_bReported[CAnnotationSet::REPORTED_LIGHT] != 0;
  const bool isRefused = set.m_allowance.IsExceeded();
  require(answer == (isViewed && !isRefused ? 1 : 0),
          "a report needs a size and a window, and keeps the limits");
  require(!isRefused || countOf(set) == 0, "of a report beyond the limits nothing is left");
  requireLimits(set);
  CAnnotationSet again;
  require(readInto(again, text, image, 1) == answer && countOf(again) == countOf(set), "twice the same");
  if (answer == 0) return 0;

  if (!FitReportView(set, box)) return 0;
  require(box == CSize(0, 0) || set.m_sizeClip == box, "a fitted view has the size of its box");
  set.GetRoiDisplay();
  if ((flags & 2) == 0 || !isDrawable(set)) return 0;
  const bool colour = (flags & 4) != 0;
  const Drawn drawn = draw(set, colour, kMostWork);
  const bool isCheap = countOf(set) <= 3;
  if (!drawn.isComplete || !isCheap) return 0;
  const Drawn unbounded = draw(set, colour, std::numeric_limits<long>::max());
  require(unbounded.isComplete && unbounded.channels == drawn.channels,
          "a bound that suffices changes nothing");
  return 0;
}
