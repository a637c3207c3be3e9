// What a run that writes raw pixels cannot do without, measured in process.
#pragma once

#include <filesystem>

namespace ei4::bench {

/// The least of `runs` times: milliseconds of the processor, user and system.
/// decodeMilliseconds  decodes the whole stream of an image into memory that has been touched.
/// writeMilliseconds   opens `path`, writes `bytes` bytes in one go over what it holds, and closes it.
/// Throw std::exception when the image does not decode or the file cannot be written.
double decodeMilliseconds(const std::filesystem::path& image, int runs);
double writeMilliseconds(const std::filesystem::path& path, std::size_t bytes, int runs);

}  // namespace ei4::bench
