#include "ei4info/image_facts.h"

#include <utility>

#include "driver/picture_limit.h"
#include "gwav4/decompressor.h"
#include "gwav4/status.h"

namespace ei4::info {

namespace {

using zel::gwav4::kHeaderBytes;

// The decoder's answer, without any pixels: into a buffer of no size it only reads the directory, and then remembers what
// it found (Quirk too-small-then-nothing).
int decoderStatus(std::span<const unsigned char> stream) {
  zel::gwav4::CGWavDecompressor decompressor(stream.data(), stream.size() - kHeaderBytes, 0, 0);
  const int status = decompressor.decompress(nullptr, 0, 0);
  return status == zel::gwav4::kBufferTooSmall ? decompressor.decompress(nullptr, 0, 0) : status;
}

void inspectStream(const CodedImage& image, ImageFacts& facts) {
  const zel::gwav4::GWHeader& header = *image.header;
  const auto stream = image.stream();
  facts.sizes = readSizes(stream.first(kHeaderBytes), image.length, image.preamble->length);
  if (header.bytesPerPixel < 1 || header.bytesPerPixel > 3) {
    facts.faults.push_back("states " + std::to_string(header.bytesPerPixel) +
                           " bytes a pixel; there are 1, 2 and 3");
    return;
  }
  facts.directory = walkDirectory(header, stream.subspan(kHeaderBytes));
  if (!facts.directory->fault.empty()) facts.faults.push_back(facts.directory->fault);
  const int status = decoderStatus(stream);
  if (status == zel::gwav4::kBadStream && facts.directory->state != DirectoryState::bad) {
    facts.faults.push_back("states a top bit of " + std::to_string(facts.directory->top.value_or(-1)) +
                           ", too high for samples of " + std::to_string(header.bitsPerPixel) + " bits");
  }
  if (!ei4::inputMayClaim(CSize(header.xSize, header.ySize), image.length)) {
    facts.faults.emplace_back("claims more pixels than an input of its length may");
  } else if (image.refusal.empty() && (status == zel::gwav4::kComplete || status == zel::gwav4::kPartial)) {
    facts.decodes = status == zel::gwav4::kComplete ? Decodes::completely : Decodes::partly;
  }
}

}  // namespace

ImageFacts inspectImage(SerialReader& source) {
  CodedImage image = readCodedImage(source);
  ImageFacts facts;
  facts.length = image.length;
  if (image.length < 0) {
    facts.faults.emplace_back("cannot be opened");
    return facts;
  }
  if (!image.refusal.empty()) facts.faults.push_back(image.refusal);
  facts.preamble = image.preamble;
  facts.header = image.header;
  if (!image.stream().empty()) inspectStream(image, facts);
  return facts;
}

}  // namespace ei4::info
