// All that can be said about an image without making its pixels.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ei4info/coded_image.h"
#include "ei4info/read_sizes.h"
#include "ei4info/stream_directory.h"

namespace ei4::info {

enum class Decodes { no, partly, completely };

struct ImageFacts {
  std::int64_t length = -1;  ///< bytes of the file or of both parts; -1: it cannot be opened
  std::optional<Preamble> preamble;
  std::optional<zel::gwav4::GWHeader> header;
  std::optional<StreamDirectory> directory;  ///< of a header that says how to read it
  std::vector<ReadSize> sizes;               ///< none for a header of a foreign magic

  /// What the converter gets at full size, by the decoder's own answer: nothing, a picture that lacks detail, or all of
  /// it.
  Decodes decodes = Decodes::no;

  /// What is wrong, each as the rest of a sentence that begins with the file. Empty for an image that is whole, and for
  /// one that ends behind a chunk, as lossy ones do.
  std::vector<std::string> faults;
};

/// Reads the image to its end. Memory: the source's length. Throws std::bad_alloc only.
ImageFacts inspectImage(SerialReader& source);

}  // namespace ei4::info
