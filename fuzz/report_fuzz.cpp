// Reports: from the text to annotations, their view, and the drawing.
//
// Input   u16 sides of the image, u8 flags (bit 0: annotations measure themselves, 1: draw, 2: on colour), u8 sides of
//         the box that the view is fitted into (0 x 0: as reported), then the text up to its first zero byte.
// Limits  Drawn are at most 8 annotations, in pictures of at most 128 x 128: the library opens the font anew for each
//         line of text. Texts of more than 8192 bytes are cut.
// Holds   The text is only read, and a text read twice gives the same answer and as many annotations. A report is good
//         with its size and its window. A fitted view has the box's size. Drawing leaves the picture its size.

#include <magick/MagickCore.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "annotation/annotation_set.h"
#include "check.h"
#include "draw/cdc.h"
#include "draw/font_folder.h"
#include "driver/report_view.h"
#include "input.h"
#include "quiet.h"
#include "target.h"

namespace {

using ei4::fuzz::require;

constexpr std::size_t kLongestText = 8192;
constexpr int kMostDrawn = 8;
constexpr long kLargestSide = 128;

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

bool isDrawable(const CAnnotationSet& set) {
  const CSize clip = set.m_sizeClip;
  return clip.cx >= 1 && clip.cy >= 1 && clip.cx <= kLargestSide && clip.cy <= kLargestSide &&
         countOf(set) <= kMostDrawn;
}

void draw(CAnnotationSet& set, bool colour) {
  const auto width = static_cast<std::size_t>(set.m_sizeClip.cx);
  const auto height = static_cast<std::size_t>(set.m_sizeClip.cy);
  const std::vector<unsigned char> pixels(width * height * (colour ? 3 : 1), 90);
  const std::unique_ptr<ImageInfo, Destroy> info(AcquireImageInfo());
  const std::unique_ptr<ExceptionInfo, Destroy> exception(AcquireExceptionInfo());
  const std::unique_ptr<Image, Destroy> picture(
      ConstituteImage(width, height, colour ? "RGB" : "I", CharPixel, pixels.data(), exception.get()));
  require(picture != nullptr, "a picture can be had");
  CDC dc(picture.get(), info.get());
  set.PaintAnnotations(&dc, 1.0);
  set.PaintCalibrations(&dc, 1.0);
  set.PaintOrientation(&dc, set.m_ptOffset, set.GetDstImageSize(), set.m_sizeClip, 1.0);
  require(picture->columns == width && picture->rows == height, "drawing leaves the size");
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
  require(answer == (isViewed ? 1 : 0), "a report needs a size and a window");
  CAnnotationSet again;
  require(readInto(again, text, image, 1) == answer && countOf(again) == countOf(set), "twice the same");
  if (answer == 0) return 0;

  if (!FitReportView(set, box)) return 0;
  require(box == CSize(0, 0) || set.m_sizeClip == box, "a fitted view has the size of its box");
  set.GetRoiDisplay();
  if ((flags & 2) != 0 && isDrawable(set)) draw(set, (flags & 4) != 0);
  return 0;
}
