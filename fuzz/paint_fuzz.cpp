// Painting against the slow painter.
//
// Input   u8 format of the picture (modulo 3), i8 format of the destination (any is tried), u8 sides of the picture
//         and i8 sides of the destination, i32 offset, displayed size, clip (left, top, right, bottom), i32 orientation,
//         i32 mode (0: nearest), u8 table (0 none, else its slope), u32 background, then the samples: little-endian for
//         16 bits, repeated as needed.
// Limits  Not tried: destinations for which the slow painter, which looks at each pixel by itself and averages unit by
//         unit, would take more than two million steps.
// Holds   Result, size, format and each byte are the slow painter's, wherever the displayed picture, the clip and the
//         orientation lie. Sanitizers see a touch outside the buffers, which have exactly the right size.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "check.h"
#include "image/dicom_image.h"
#include "image/reference_painter.h"
#include "input.h"
#include "target.h"

namespace {

using ei4::fuzz::require;
using ei4::test::PaintRequest;
using ei4::test::Picture;

constexpr long kMostSteps = 2'000'000;

/// Steps of the slow painter when it averages the whole picture into the whole destination.
long stepsFor(const Picture& source, const PaintRequest& request) {
  if (request.cx < 1 || request.cy < 1) return 0;
  return request.cx * request.cy * std::max(request.cx, request.cy) * std::max(source.cx, source.cy);
}

/// What the format of no destination is counts as colour for the slow painter, which is then not asked.
bool isFormat(int format) { return format >= COLOR_TYPE_C08 && format <= COLOR_TYPE_M16; }

std::vector<unsigned> samplesFrom(std::span<const std::uint8_t> bytes, COLOR_TYPE format) {
  std::vector<unsigned> samples;
  const std::size_t step = format == COLOR_TYPE_M16 ? 2 : 1;
  for (std::size_t i = 0; i + step <= bytes.size(); i += step) {
    samples.push_back(step == 1 ? bytes[i] : bytes[i] | unsigned{bytes[i + 1]} << 8);
  }
  if (samples.empty()) samples.push_back(1);
  return samples;
}

std::vector<std::uint16_t> tableFor(COLOR_TYPE format, unsigned slope) {
  if (slope == 0) return {};
  std::vector<std::uint16_t> table(format == COLOR_TYPE_M16 ? 65536 : 256);
  for (std::size_t i = 0; i < table.size(); ++i)
    table[i] = static_cast<std::uint16_t>(i * slope * 257 + slope);
  return table;
}

/// A picture without pixels holds no sample either.
std::vector<std::uint8_t> bufferOf(const Picture& picture) {
  std::vector<std::uint8_t> buffer;
  const auto count =
      static_cast<std::size_t>(picture.cx * picture.cy * ei4::test::componentsOf(picture.format));
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned sample = picture.samples[i % picture.samples.size()];
    buffer.push_back(static_cast<std::uint8_t>(sample));
    if (picture.format == COLOR_TYPE_M16) buffer.push_back(static_cast<std::uint8_t>(sample >> 8));
  }
  return buffer;
}

/// Entries as the painter takes them: 16 bits each for a 16-bit destination, else bytes.
std::vector<std::uint8_t> tableBytes(const PaintRequest& request) {
  std::vector<std::uint8_t> bytes;
  for (const std::uint16_t entry : request.table) {
    bytes.push_back(static_cast<std::uint8_t>(entry));
    if (request.format == COLOR_TYPE_M16) bytes.push_back(static_cast<std::uint8_t>(entry >> 8));
  }
  return bytes;
}

void compare(const Picture& source, const PaintRequest& request, const CDicomImage& painted) {
  require(painted.GetColorType() == request.format, "the format asked for");
  require(painted.m_Size == tagSIZE{request.cx, request.cy}, "the size asked for");
  const ei4::test::ReferencePainter painter(source, request);
  // Bytes that nothing is stored in differ between these two; what they hold is nowhere said.
  const auto wanted = painter.paint(0x00);
  const auto other = painter.paint(0xFF);
  const auto pixels = static_cast<std::size_t>(request.cx * request.cy);
  const bool keepsSource = request.table.empty() && request.format == COLOR_TYPE_M08;
  const std::size_t bytes =
      keepsSource ? wanted.size() : pixels * static_cast<std::size_t>(ei4::test::bytesOf(request.format));
  for (std::size_t i = 0; i < bytes; ++i) {
    require(wanted[i] != other[i] || painted.m_pBuffer[i] == wanted[i], "each byte");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ei4::fuzz::Input input(data, size);
  Picture source{};
  source.format = static_cast<COLOR_TYPE>(input.u8() % 3);
  PaintRequest request{};
  request.format = static_cast<COLOR_TYPE>(input.i8());
  source.cx = input.u8();
  source.cy = input.u8();
  request.cx = input.i8();
  request.cy = input.i8();
  for (long* number : {&request.offsetX, &request.offsetY, &request.shownX, &request.shownY, &request.clipL,
                       &request.clipT, &request.clipR, &request.clipB}) {
    *number = input.i32();
  }
  request.orientation = static_cast<ORIENTATION>(input.i32());
  request.mode = input.i32();
  request.table = tableFor(source.format, input.u8());
  request.background = input.u32() & 0xFFFFFF;
  source.samples = samplesFrom(input.rest(), source.format);
  if (stepsFor(source, request) > kMostSteps) return 0;

  std::vector<std::uint8_t> buffer = bufferOf(source);
  std::vector<std::uint8_t> table = tableBytes(request);
  std::uint8_t nothing = 0;
  const auto image = CreateDicomImage(source.format);
  require(image->Create(static_cast<int>(source.cx), static_cast<int>(source.cy),
                        buffer.empty() ? &nothing : buffer.data()) != 0,
          "a picture can be lent its pixels");
  CRect clip(tagRECT{request.clipL, request.clipT, request.clipR, request.clipB});
  CDicomImage* made = nullptr;
  const int result = image->PaintImage(
      tagSIZE{request.cx, request.cy}, tagPOINT{request.offsetX, request.offsetY},
      tagSIZE{request.shownX, request.shownY}, clip, request.orientation, 0,
      table.empty() ? nullptr : table.data(), request.background, request.mode, request.format, &made);
  const std::unique_ptr<CDicomImage> painted(made);

  const bool possible = request.cx >= 0 && request.cy >= 0 && isFormat(request.format);
  require((result != 0) == possible, "what is possible is painted");
  require((painted != nullptr) == possible, "what is painted is handed over");
  if (!possible) return 0;
  if (source.cx < 1 || source.cy < 1 || !IsOrientation(request.orientation)) {
    // Nothing but the background: a picture shown at no size gives the slow painter nothing else to paint.
    source.cx = source.cy = 1;
    request.shownX = request.shownY = 0;
    request.orientation = ORIENTATION_AS_STORED;
  }
  compare(source, request, *painted);
  return 0;
}
