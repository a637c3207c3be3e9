#include "ei4info/coded_image.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ei4::info {

namespace {

using zel::gwav4::kHeaderBytes;

constexpr int kHeader = static_cast<int>(kHeaderBytes);
constexpr int kPreamble = 24;  // bytes; a longer one goes on with bytes that nobody reads
constexpr int kShortest = 40;  // bytes that are refused, whatever they hold

float floatAt(const unsigned char* bytes) {
  std::uint32_t bits = 0;
  for (unsigned i = 0; i < 4; ++i) bits |= std::uint32_t{bytes[i]} << (8 * i);
  float value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

Preamble parsePreamble(const std::array<unsigned char, kPreamble>& bytes) {
  return {.length = bytes[6] | bytes[7] << 8,
          .intercept = floatAt(&bytes[8]),
          .slope = floatAt(&bytes[12]),
          .window = floatAt(&bytes[16]),
          .level = floatAt(&bytes[20])};
}

// The first reason stays.
void refuse(CodedImage& image, std::string reason) {
  if (image.refusal.empty()) image.refusal = std::move(reason);
}

// Moves to the stream header. False when it cannot be found.
bool skipToHeader(SerialReader& source, CodedImage& image) {
  const int length = image.preamble->length;
  if (length < kPreamble) {
    refuse(image, "states a preamble of " + std::to_string(length) + " bytes; it has at least 24");
    return false;
  }
  if (length >= image.length - (kHeader - 1)) {
    refuse(image,
           "states a preamble of " + std::to_string(length) + " bytes, behind which no stream header fits");
    return false;
  }
  const int rest = length - kPreamble;
  const int skipped = source.skipBytes(rest);
  if (skipped != rest)  // Quirk file-skip-answers-zero
    refuse(image, "has a preamble of " + std::to_string(length) + " bytes; in a plain file it must have 24");
  return skipped >= 0;
}

}  // namespace

CodedImage readCodedImage(SerialReader& source) {
  CodedImage image;
  image.length = source.getLength();
  if (image.length < 0) return image;
  if (image.length <= kShortest)
    refuse(image, "has " + std::to_string(image.length) + " bytes; 40 or less are no image");

  std::array<unsigned char, kPreamble> preamble{};
  if (source.readBytes(preamble.data(), 0, kPreamble) != kPreamble) {
    refuse(image, "cannot be read");
    return image;
  }
  image.preamble = parsePreamble(preamble);
  if (!skipToHeader(source, image)) return image;

  std::array<unsigned char, kHeaderBytes> header{};
  if (source.readBytes(header.data(), 0, kHeader) != kHeader) {
    refuse(image, "cannot be read to the end of its stream header");
    return image;
  }
  image.header = zel::gwav4::parseHeader(header.data());
  if (versionOf(*image.header) == zel::gwav4::Version::unknown) {
    refuse(image, "has a stream header that begins with neither GW40 nor GW41");
    return image;
  }
  // The room that the converter takes for a whole stream. New, so that pages nobody fills cost nothing.
  const int size = std::max(static_cast<int>(image.length), kHeader);
  image.bytes.reset(new unsigned char[static_cast<std::size_t>(size)]);
  std::copy(header.begin(), header.end(), image.bytes.get());
  const int coded = std::min(source.readBytes(image.bytes.get(), kHeader, size - kHeader), size - kHeader);
  image.streamBytes = static_cast<std::size_t>(kHeader) + static_cast<std::size_t>(std::max(coded, 0));
  if (coded < 1) refuse(image, "has no coded data behind its stream header");
  return image;
}

}  // namespace ei4::info
