// Between packed pixels and the lines of 32-bit samples that the peers work with, made so that it does not slow them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ei4::bench {

/// Every `step`-th byte from `pixels` on, as samples.
void unpackBytes(const unsigned char* pixels, std::size_t step, std::size_t samples, std::int32_t* line);
void unpackWords(const unsigned char* pixels, std::size_t samples, std::int32_t* line);

/// The low bits of each sample; a peer that gave back the picture has no others.
void packBytes(const std::int32_t* line, std::size_t samples, unsigned char* pixels);
void packWords(const std::int32_t* line, std::size_t samples, unsigned char* pixels);
void packColours(const std::int32_t* red, const std::int32_t* green, const std::int32_t* blue,
                 std::size_t samples, unsigned char* pixels);

}  // namespace ei4::bench
