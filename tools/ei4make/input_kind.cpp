#include "ei4make/input_kind.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "ei4make/picture.h"

namespace ei4::tools {

namespace {

constexpr std::size_t kDicomMark = 128;  // bytes in front of it, which may be anything

bool hasAt(std::span<const unsigned char> file, std::size_t offset, std::string_view mark) {
  return file.size() >= offset + mark.size() &&
         std::equal(mark.begin(), mark.end(), file.begin() + static_cast<std::ptrdiff_t>(offset),
                    [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

}  // namespace

InputKind kindOf(std::span<const unsigned char> file) {
  if (hasAt(file, kDicomMark, "DICM")) return InputKind::Dicom;
  if (hasAt(file, 0, "\x89PNG\r\n\x1a\n")) return InputKind::Png;
  return looksLikePnm(file) ? InputKind::Pnm : InputKind::Unknown;
}

}  // namespace ei4::tools
