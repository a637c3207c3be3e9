#pragma once

#include <cstdint>

namespace ei4::samples {

/// The same numbers on every machine: splitmix64, and only arithmetic that IEEE 754 rounds in one way.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    return scrambled(state_);
  }

  /// 0 up to, not including, 1.
  double unit() { return static_cast<double>(next() >> 11) / 9007199254740992.0; }

  double between(double least, double most) { return least + (most - least) * unit(); }

  /// About normally distributed, mean 0, standard deviation 1: four 16-bit parts of one draw added up.
  double normal() {
    const std::uint64_t draw = next();
    double sum = 0;
    for (int part = 0; part < 4; ++part) sum += static_cast<double>((draw >> (16 * part)) & 0xFFFFU);
    return (sum / 65535.0 - 2.0) * 1.7320508075688772;
  }

  /// A well mixed function of its argument.
  static std::uint64_t scrambled(std::uint64_t v) {
    v = (v ^ (v >> 30)) * 0xBF58476D1CE4E5B9U;
    v = (v ^ (v >> 27)) * 0x94D049BB133111EBU;
    return v ^ (v >> 31);
  }

 private:
  std::uint64_t state_;
};

}  // namespace ei4::samples
