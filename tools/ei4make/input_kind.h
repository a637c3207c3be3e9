#pragma once

#include <span>

namespace ei4::tools {

enum class InputKind { Unknown, Pnm, Png, Dicom };

/// What a file is by its first bytes; its name does not count.
InputKind kindOf(std::span<const unsigned char> file);

}  // namespace ei4::tools
