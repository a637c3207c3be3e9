#include "driver/prep_ei4.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "container/blob_reader.h"
#include "container/file_reader.h"
#include "container/serial_reader.h"
#include "driver/heap.h"
#include "driver/jpg_writer.h"
#include "driver/paths.h"
#include "driver/picture_limit.h"
#include "driver/settings.h"
#include "driver/to_int.h"
#include "gwav4/decompressor.h"
#include "gwav4/header.h"
#include "gwav4/status.h"
#include "image/dicom_image.h"

namespace {

using zel::gwav4::kHeaderBytes;

constexpr int kHeader = static_cast<int>(kHeaderBytes);
constexpr int kPreamble = 24;     // bytes; a longer one goes on with bytes that nobody reads
constexpr int kShortest = 40;     // bytes: a preamble and a stream header without any coded data
constexpr int kThumbnail = 128;   // pixels; requests up to this width read twice the estimate
constexpr int kLeastBudget = 32;  // bytes, of the stream; the estimates lie far above, from 4096 on

// The 24 bytes in front, little-endian. Bytes 0 to 5 are not looked at.
struct Preamble {
  int length;  // bytes, counted from the start of the file
  float intercept;
  float slope;
  float window;
  float level;
};

std::uint32_t littleEndian(const unsigned char* bytes, int count) {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i) value |= std::uint32_t{bytes[i]} << (8 * i);
  return value;
}

float floatAt(const unsigned char* bytes) {
  const std::uint32_t bits = littleEndian(bytes, 4);
  float value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

Preamble parsePreamble(const std::array<unsigned char, kPreamble>& bytes) {
  return {.length = static_cast<int>(littleEndian(&bytes[6], 2)),
          .intercept = floatAt(&bytes[8]),
          .slope = floatAt(&bytes[12]),
          .window = floatAt(&bytes[16]),
          .level = floatAt(&bytes[20])};
}

// The window of the image replaces the command line's. Quirk window-taken-early: also when the rest
// of the input is refused.
void takeWindow(const Preamble& preamble) {
  bWL = 1;
  dIntercept = static_cast<double>(preamble.intercept);
  dSlope = static_cast<double>(preamble.slope);
  nWindow = ei4::toInt(static_cast<double>(preamble.window));
  nLevel = ei4::toInt(static_cast<double>(preamble.level));
}

std::unique_ptr<SerialReader> openSource(const char* path, bool blob) {
  if (blob) return std::make_unique<BlobReader>(path);
  return std::make_unique<FileReader>(path);
}

// How a stream is to be decoded, as its header and the wanted width have it.
struct Plan {
  std::array<unsigned char, kHeaderBytes> header;
  int readBudget;  // bytes of the stream that will do; negative: all of it
  int factor;      // halvings
  int width;       // pixels, after halving; likewise height
  int height;
  int bytesPerPixel;  // any byte
};

// Reads preamble and stream header. False when the input is refused.
bool readPlan(SerialReader& source, int targetWidth, Plan& plan) {
  std::array<unsigned char, kPreamble> bytes{};
  if (source.getLength() <= kShortest || source.readBytes(bytes.data(), 0, kPreamble) != kPreamble)
    return false;

  const Preamble preamble = parsePreamble(bytes);
  if (preamble.length < kPreamble || preamble.length >= source.getLength() - (kHeader - 1)) return false;
  takeWindow(preamble);

  // Quirk file-skip-answers-zero: a plain file answers 0 to every skip, so it is taken only with a preamble
  // of exactly 24 bytes; a blob entry, which answers the count, may have a longer one.
  const int rest = preamble.length - kPreamble;
  if (source.skipBytes(rest) != rest) return false;

  return source.readBytes(plan.header.data(), 0, kHeader) == kHeader &&
         zel::gwav4::getBestFactor(targetWidth, &plan.readBudget, &plan.factor, plan.header.data(),
                                   kHeaderBytes, &plan.width, &plan.height, nullptr, &plan.bytesPerPixel,
                                   nullptr) != 0;
}

// Bytes of stream to hold, the header's included. Quirk thumbnail-reads-double.
int bufferSize(int length, int readBudget, int targetWidth) {
  std::int64_t wanted = readBudget < 0 ? length : std::max(readBudget, kLeastBudget);
  if (targetWidth >= 1 && targetWidth <= kThumbnail) wanted *= 2;
  return static_cast<int>(std::min<std::int64_t>(length, wanted));
}

// The stream header and as much of the coded data as is to be had, `coded` bytes, at most `size` bytes together.
// Closes the source.
struct Stream {
  std::unique_ptr<unsigned char[]> bytes;
  int coded;
};

Stream readStream(std::unique_ptr<SerialReader> source, const Plan& plan, int size) {
  Stream stream{std::unique_ptr<unsigned char[]>(new unsigned char[static_cast<std::size_t>(size)]), 0};
  std::copy(plan.header.begin(), plan.header.end(), stream.bytes.get());
  stream.coded = std::min(source->readBytes(stream.bytes.get(), kHeader, size - kHeader), size - kHeader);
  return stream;
}

COLOR_TYPE colorTypeOf(int bytesPerPixel) {
  switch (bytesPerPixel) {
    case 1:
      return COLOR_TYPE_M08;
    case 2:
      return COLOR_TYPE_M16;
    default:
      return COLOR_TYPE_C08;
  }
}

// True when an image may have so many bytes: it then takes nothing but memory to create it.
bool canBeCreated(CSize size, COLOR_TYPE colorType) {
  const int pixelBytes = colorType == COLOR_TYPE_M08 ? 1 : colorType == COLOR_TYPE_M16 ? 2 : 3;
  return ei4::hasAtMost(size, std::numeric_limits<std::uint32_t>::max() / pixelBytes);
}

// True when all that is wanted is a JPEG of a size that ProcessImage will refuse, whatever the pixels are: a
// few bytes of header may claim gigabytes of them.
bool isRefusedJpg(CSize size) {
  return szReportFile == nullptr && bDstSize == 0 && IsJpg(szOutFile) != 0 && !JpgTakes(size);
}

// True when `image`, whose buffer is there, holds a picture.
bool decode(const Stream& stream, int factor, const CDicomImage& image) {
  zel::gwav4::CGWavDecompressor decompressor(stream.bytes.get(), static_cast<unsigned long>(stream.coded),
                                             factor, 0);
  const int status = decompressor.decompress(image.m_pBuffer, image.m_nBufferSize, 0);
  return status == zel::gwav4::kComplete || status == zel::gwav4::kPartial;
}

}  // namespace

bool PrepEI4(const char* path, bool blob, const CSize* target) {
  std::unique_ptr<SerialReader> source = openSource(path, blob);
  const int targetWidth = target != nullptr ? static_cast<int>(target->cx) : 0;
  Plan plan{};
  if (!readPlan(*source, targetWidth, plan)) return false;
  csSrc = CSize(plan.width, plan.height);

  // Quirk late-failure-is-no-failure: from here on the answer is true, and the image tells whether it worked.
  // Without one the conversion goes on to read the same path as a raw image.
  pImageFromEI4.reset();
  const int length = source->getLength();
  if (isRefusedJpg(csSrc) || !ei4::inputMayClaim(csSrc, length)) return true;
  const int size = bufferSize(length, plan.readBudget, targetWidth);  // at least 32
  ei4::prepareHeap(csSrc, static_cast<std::size_t>(size));
  // The image first: what the stream and the decoding leave behind is then in one piece for the painting.
  const COLOR_TYPE colorType = colorTypeOf(plan.bytesPerPixel);
  auto image = CreateDicomImage(colorType);
  const bool hasPixels = image && image->Create(plan.width, plan.height) != 0;
  // Without this the stream could be taken for the pixels of a raw image, once there is memory again.
  if (!hasPixels && canBeCreated(csSrc, colorType)) throw std::bad_alloc();
  const Stream stream = readStream(std::move(source), plan, size);
  if (stream.coded < 1) return true;

  nInputColorType = colorType;
  if (hasPixels && decode(stream, plan.factor, *image)) pImageFromEI4 = std::move(image);
  return true;
}
