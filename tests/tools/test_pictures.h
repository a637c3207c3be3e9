// Pictures that give an encoder something to do at every bit position and at every edge.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ei4::test {

/// The same sequence everywhere: a 64-bit linear congruential generator, its high bits used.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed * 2 + 1) {}
  /// 0..most
  int upTo(int most) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state_ >> 33) % (static_cast<std::uint64_t>(most) + 1));
  }

 private:
  std::uint64_t state_;
};

enum class Look { Noise, Flat, Smooth };

/// width * height pixels of 1, 2 (host byte order) or 3 bytes; every sample fits `bits` bits. Flat pictures
/// are white.
inline std::vector<unsigned char> testPicture(int width, int height, int bytesPerPixel, int bits, Look look) {
  const int most = (1 << bits) - 1;
  const int components = bytesPerPixel == 3 ? 3 : 1;
  Dice dice(static_cast<std::uint64_t>(width * 131 + height * 7 + bits));
  std::vector<unsigned char> pixels;
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < width * components; ++i) {
      int value = most;
      if (look == Look::Noise) value = dice.upTo(most);
      if (look == Look::Smooth) {
        const int ramp = most * (i + 2 * y) / (width * components + 2 * height);
        value = dice.upTo(15) == 0 ? dice.upTo(most) : std::clamp(ramp + dice.upTo(4) - 2, 0, most);
      }
      const auto sample = static_cast<std::uint16_t>(value);
      unsigned char bytes[2] = {static_cast<unsigned char>(sample), 0};
      if (bytesPerPixel == 2) std::memcpy(bytes, &sample, 2);
      pixels.insert(pixels.end(), bytes, bytes + (bytesPerPixel == 2 ? 2 : 1));
    }
  }
  return pixels;
}

}  // namespace ei4::test
