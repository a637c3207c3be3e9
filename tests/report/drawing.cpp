#include "report/drawing.h"

#include <magick/MagickCore.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace ei4::test {

namespace {

struct Free {
  void operator()(ExceptionInfo* exception) const noexcept { DestroyExceptionInfo(exception); }
  void operator()(ImageInfo* info) const noexcept { DestroyImageInfo(info); }
  void operator()(Image* image) const noexcept { DestroyImageList(image); }
  void operator()(DrawInfo* info) const noexcept { DestroyDrawInfo(info); }
};

template <typename Handle>
using Owned = std::unique_ptr<Handle, Free>;

Owned<ExceptionInfo> newException() { return Owned<ExceptionInfo>(AcquireExceptionInfo()); }
Owned<ImageInfo> newInfo() { return Owned<ImageInfo>(AcquireImageInfo()); }

Owned<Image> imageOf(int width, int height, const void* rgb) {
  const auto exception = newException();
  Owned<Image> image(ConstituteImage(static_cast<std::size_t>(width), static_cast<std::size_t>(height), "RGB",
                                     CharPixel, rgb, exception.get()));
  if (!image) throw std::runtime_error("no memory for a picture");
  return image;
}

Raster rasterOf(const Image& image) {
  Raster raster{static_cast<int>(image.columns), static_cast<int>(image.rows), {}};
  raster.bytes.resize(3 * image.columns * image.rows);
  const auto exception = newException();
  if (ExportImagePixels(&image, 0, 0, image.columns, image.rows, "RGB", CharPixel, raster.bytes.data(),
                        exception.get()) == MagickFalse) {
    throw std::runtime_error("pixels that cannot be read");
  }
  return raster;
}

// What all drawing has in common. Its strings for primitives and texts are set for one call each.
Owned<DrawInfo> newDrawInfo() {
  const auto info = newInfo();
  Owned<DrawInfo> drawInfo(CloneDrawInfo(info.get(), nullptr));
  CloneString(&drawInfo->font, "Courier");
  drawInfo->pointsize = 12.0;
  return drawInfo;
}

void setColour(PixelPacket& pixel, const std::string& colour) {
  const auto exception = newException();
  if (QueryColorDatabase(colour.c_str(), &pixel, exception.get()) == MagickFalse) {
    throw std::runtime_error("unknown colour " + colour);
  }
}

std::string coordinates(Point point) { return " " + std::to_string(point.x) + " " + std::to_string(point.y); }

void measureCell() {
  const std::vector<unsigned char> pixel(3);
  const auto image = imageOf(1, 1, pixel.data());
  const auto drawInfo = newDrawInfo();
  CloneString(&drawInfo->text, "Q");
  TypeMetric metrics{};
  GetMultilineTypeMetrics(image.get(), drawInfo.get(), &metrics);
  const double width = std::ceil(metrics.bounds.x2 - metrics.bounds.x1);
  const double height = std::ceil(metrics.bounds.y2 - metrics.bounds.y1);
  if (width != kCellWidth || height != kCellHeight) {
    throw std::runtime_error("the font of the labels is not there (fonts-urw-base35)");
  }
}

}  // namespace

void startDrawing(const std::string& fontFolder) {
  struct Library {
    explicit Library(const std::string& folder) {
      setenv("MAGICK_CONFIGURE_PATH", folder.c_str(), 1);
      MagickCoreGenesis("", MagickFalse);
      SetMagickResourceLimit(ThreadResource, 1);
    }
    ~Library() { MagickCoreTerminus(); }
  };
  static const Library library(fontFolder);
  measureCell();
}

Raster readPicture(const std::string& path) {
  const auto exception = newException();
  const auto info = newInfo();
  CopyMagickString(info->filename, path.c_str(), MaxTextExtent);
  const Owned<Image> image(ReadImage(info.get(), exception.get()));
  if (!image) throw std::runtime_error("no picture: " + path);
  return rasterOf(*image);
}

void writePicture(const Raster& raster, const std::string& path) {
  const auto image = imageOf(raster.width, raster.height, raster.bytes.data());
  const auto info = newInfo();
  CopyMagickString(image->filename, path.c_str(), MaxTextExtent);
  if (WriteImage(info.get(), image.get()) == MagickFalse) throw std::runtime_error("cannot write " + path);
}

struct Drawing::Parts {
  Owned<Image> image;
  Owned<DrawInfo> info;
};

Drawing::Drawing(const Canvas& canvas) : m_parts(std::make_unique<Parts>()) {
  static_assert(sizeof(Rgb) == 3);
  m_parts->image = imageOf(canvas.width(), canvas.height(), canvas.pixels().data());
  m_parts->info = newDrawInfo();
}

Drawing::~Drawing() = default;

void Drawing::draw(const std::string& primitive, const std::string& colour) {
  DrawInfo& info = *m_parts->info;
  info.stroke_width = 1.0;
  setColour(info.stroke, colour);
  setColour(info.fill, "none");
  CloneString(&info.primitive, primitive.c_str());
  const bool drawn = DrawImage(m_parts->image.get(), &info) != MagickFalse;
  info.primitive = DestroyString(info.primitive);
  if (!drawn) throw std::runtime_error("refused: " + primitive);
}

void Drawing::line(const std::string& colour, Point from, Point to) {
  draw("line" + coordinates(from) + coordinates(to), colour);
}

void Drawing::polygon(const std::string& colour, const std::vector<Point>& corners) {
  std::string primitive = "polygon";
  for (const Point corner : corners) primitive += coordinates(corner);
  draw(primitive, colour);
}

void Drawing::ellipse(const std::string& colour, Point centre, int radiusX, int radiusY) {
  draw("ellipse" + coordinates(centre) + coordinates({radiusX, radiusY}) + " 0 360", colour);
}

void Drawing::text(const std::string& colour, Point at, const std::string& words) {
  DrawInfo& info = *m_parts->info;
  info.stroke_width = 0.01;
  setColour(info.stroke, "none");
  setColour(info.fill, colour);
  CloneString(&info.text, words.c_str());
  CloneString(&info.geometry, ("+" + std::to_string(at.x) + "+" + std::to_string(at.y)).c_str());
  const bool drawn = AnnotateImage(m_parts->image.get(), &info) != MagickFalse;
  info.text = DestroyString(info.text);
  info.geometry = DestroyString(info.geometry);
  if (!drawn) throw std::runtime_error("refused: " + words);
}

Raster Drawing::raster() const { return rasterOf(*m_parts->image); }

Raster Drawing::rasterInFile(const std::string& format, int quality) const {
  const auto exception = newException();
  const auto info = newInfo();
  info->interlace = NoInterlace;
  info->quality = static_cast<std::size_t>(quality);
  const Owned<Image> image(CloneImage(m_parts->image.get(), 0, 0, MagickTrue, exception.get()));
  if (!image) throw std::runtime_error("no memory for a picture");
  image->quality = info->quality;
  CopyMagickString(image->magick, format.c_str(), MaxTextExtent);
  std::size_t length = 0;
  void* const blob = ImageToBlob(info.get(), image.get(), &length, exception.get());
  if (blob == nullptr) throw std::runtime_error("no " + format + " can be made");
  const Owned<Image> decoded(BlobToImage(info.get(), blob, length, exception.get()));
  RelinquishMagickMemory(blob);
  if (!decoded) throw std::runtime_error("this " + format + " does not decode");
  return rasterOf(*decoded);
}

}  // namespace ei4::test
