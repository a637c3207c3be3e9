#include "gwav4/picture_writer.h"

#include <algorithm>
#include <cstddef>
#include <memory>

#include "gwav4/mean_rows.h"

namespace zel::gwav4 {
namespace {

/// The planes of a picture, two rows at a time.
template <class Lane>
class Planes {
 public:
  Planes(const LaneKernel<Lane>& kernel, PictureSource& source)
      : width(static_cast<std::size_t>(source.shape.width)), block(std::make_unique<BlockScratch>()) {
    for (std::size_t i = 0; i < source.planes.size(); ++i) {
      planes.push_back(std::make_unique<PlaneRows<Lane>>(
          kernel, source.planes[i], source.shape, ScanLimit{source.rowEnds[i], source.stopped}, *block));
    }
    memory.resize(2 * planes.size() * rowSize());
  }

  /// Makes one or two rows of each plane. Returns how many; 0 at the end.
  int next() {
    int made = 0;
    for (std::size_t i = 0; i < planes.size(); ++i) made = planes[i]->next(rowOf(i, 0), rowOf(i, 1));
    return made;
  }
  /// The same for the first plane, into other memory, with kRowSlack behind both rows.
  int nextInto(Lane* first, Lane* second) { return planes[0]->next(first, second); }

  SampleRows<Lane> row(int which) {
    SampleRows<Lane> rows{};
    for (std::size_t i = 0; i < planes.size(); ++i) rows.planes[i] = rowOf(i, which);
    return rows;
  }

  bool withinLimits() const {
    return std::all_of(planes.begin(), planes.end(), [](const auto& plane) { return plane->withinLimits(); });
  }

 private:
  std::size_t rowSize() const { return width + kRowSlack; }
  Lane* rowOf(std::size_t plane, int which) {
    return memory.data() + (2 * plane + static_cast<std::size_t>(which)) * rowSize();
  }

  std::size_t width;
  std::unique_ptr<BlockScratch> block;
  std::vector<std::unique_ptr<PlaneRows<Lane>>> planes;
  std::vector<Lane> memory;
};

/// Hands each row to `store(rows, y)`.
template <class Lane, class Store>
bool forEachRow(Planes<Lane>& planes, const PictureSource& source, Store store) {
  for (int y = 0; !*source.killed;) {
    const int made = planes.next();
    if (made == 0 || !planes.withinLimits()) break;
    for (int i = 0; i < made; ++i) store(planes.row(i), y++);
  }
  return planes.withinLimits();
}

/// 16-bit pixels from lanes of 16 bits: the rows are made where they belong.
bool writeInPlace(const LaneKernel<std::int16_t>& kernel, Planes<std::int16_t>& planes,
                  const PictureSource& source, int bits, void* out) {
  const auto width = static_cast<std::size_t>(source.shape.width);
  const auto height = static_cast<std::size_t>(source.shape.height);
  auto* const pixels = static_cast<std::int16_t*>(out);
  std::size_t y = 0;
  while (y < height && !*source.killed) {
    std::int16_t* const to = pixels + y * width;
    int made = 0;
    if ((y + 2) * width + kRowSlack <= height * width) {
      made = planes.nextInto(to, to + width);
    } else {
      made = planes.next();
      for (int i = 0; i < made; ++i)
        std::copy_n(planes.row(i).planes[0], width, to + static_cast<std::size_t>(i) * width);
    }
    if (!planes.withinLimits()) return false;
    if (bits > 0) {
      kernel.output.storeGrey16(to, static_cast<std::size_t>(made) * width, bits,
                                reinterpret_cast<std::uint16_t*>(to));
    }
    y += static_cast<std::size_t>(made);
  }
  return true;
}

}  // namespace

template <class Lane>
bool writePicture(const LaneKernel<Lane>& kernel, PictureSource& source, const PictureFormat& format,
                  void* out) {
  Planes<Lane> planes(kernel, source);
  if (format.step > 1) {
    MeanRows<Lane> means(source.shape.width, source.shape.height, format.step, out, format.bytesPerPixel,
                         format.bits);
    return forEachRow(planes, source, [&](const SampleRows<Lane>& rows, int) { means.add(rows); });
  }
  if constexpr (sizeof(Lane) == 2) {
    if (format.bytesPerPixel == 2) return writeInPlace(kernel, planes, source, format.bits, out);
  }
  const auto width = static_cast<std::size_t>(source.shape.width);
  const std::size_t rowBytes = width * static_cast<std::size_t>(format.bytesPerPixel);
  return forEachRow(planes, source, [&](const SampleRows<Lane>& rows, int y) {
    auto* const to = static_cast<unsigned char*>(out) + static_cast<std::size_t>(y) * rowBytes;
    if (format.bytesPerPixel == 3) {
      kernel.output.storeColour(rows, width, format.bits, to);
    } else if (format.bytesPerPixel == 1) {
      kernel.output.storeGrey8(rows.planes[0], width, format.bits, to);
    } else {
      kernel.output.storeGrey16(rows.planes[0], width, format.bits, reinterpret_cast<std::uint16_t*>(to));
    }
  });
}

template <class T>
void copyPlane(const LaneKernel<std::int32_t>& kernel, PictureSource& source, T* out) {
  Planes<std::int32_t> planes(kernel, source);
  const auto width = static_cast<std::size_t>(source.shape.width);
  forEachRow(planes, source, [&](const SampleRows<std::int32_t>& rows, int y) {
    std::transform(rows.planes[0], rows.planes[0] + width, out + static_cast<std::size_t>(y) * width,
                   [](std::int32_t sample) { return static_cast<T>(sample); });
  });
}

template bool writePicture(const LaneKernel<std::int16_t>&, PictureSource&, const PictureFormat&, void*);
template bool writePicture(const LaneKernel<std::int32_t>&, PictureSource&, const PictureFormat&, void*);
template void copyPlane(const LaneKernel<std::int32_t>&, PictureSource&, short*);
template void copyPlane(const LaneKernel<std::int32_t>&, PictureSource&, int*);

}  // namespace zel::gwav4
