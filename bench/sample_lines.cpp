#include "sample_lines.h"

#include <cstring>

// Plain loops, each built for AVX2 as well: with the instructions that every x86-64 has, narrowing alone would cost the
// peers a tenth of their time.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define EI4_ALSO_FOR_AVX2 __attribute__((target_clones("avx2", "default")))
#else
#define EI4_ALSO_FOR_AVX2
#endif

namespace ei4::bench {

void unpackBytes(const unsigned char* pixels, std::size_t step, std::size_t samples, std::int32_t* line) {
  for (std::size_t i = 0; i < samples; ++i) line[i] = pixels[i * step];
}

void unpackWords(const unsigned char* pixels, std::size_t samples, std::int32_t* line) {
  for (std::size_t i = 0; i < samples; ++i) {
    std::uint16_t word;
    std::memcpy(&word, pixels + i * sizeof word, sizeof word);
    line[i] = word;
  }
}

EI4_ALSO_FOR_AVX2
void packBytes(const std::int32_t* line, std::size_t samples, unsigned char* pixels) {
  for (std::size_t i = 0; i < samples; ++i) pixels[i] = static_cast<unsigned char>(line[i]);
}

EI4_ALSO_FOR_AVX2
void packWords(const std::int32_t* line, std::size_t samples, unsigned char* pixels) {
  for (std::size_t i = 0; i < samples; ++i) {
    const auto word = static_cast<std::uint16_t>(line[i]);
    std::memcpy(pixels + i * sizeof word, &word, sizeof word);
  }
}

EI4_ALSO_FOR_AVX2
void packColours(const std::int32_t* __restrict red, const std::int32_t* __restrict green,
                 const std::int32_t* __restrict blue, std::size_t samples, unsigned char* __restrict pixels) {
  for (std::size_t i = 0; i < samples; ++i) {
    pixels[3 * i] = static_cast<unsigned char>(red[i]);
    pixels[3 * i + 1] = static_cast<unsigned char>(green[i]);
    pixels[3 * i + 2] = static_cast<unsigned char>(blue[i]);
  }
}

}  // namespace ei4::bench
