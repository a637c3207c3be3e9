#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace ei4::tools {

/// Undoes the compression of a deflate stream without a header. Throws PictureError when it is damaged or cut, or gives
/// more than `most` bytes.
std::vector<unsigned char> inflated(std::span<const unsigned char> stream, std::size_t most);

}  // namespace ei4::tools
