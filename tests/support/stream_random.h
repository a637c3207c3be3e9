// Reproducible random choices for tests.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace ei4::test {

class Dice {
 public:
  explicit Dice(unsigned seed) : m_Engine(seed) {}

  /// 0 to count - 1; count at least 1.
  int below(int count) { return static_cast<int>(m_Engine() % static_cast<std::uint32_t>(count)); }
  /// from to last, both included.
  int between(int from, int last) { return from + below(last - from + 1); }
  /// Any int.
  int any() { return static_cast<int>(static_cast<std::uint32_t>(m_Engine())); }
  bool chance(int oneIn) { return below(oneIn) == 0; }
  unsigned char byte() { return static_cast<unsigned char>(m_Engine()); }

  /// Bytes in which only one bit in 2^(sparse + 1) is set.
  std::vector<unsigned char> bytes(int count, int sparse = 0) {
    std::vector<unsigned char> all(static_cast<std::size_t>(count));
    for (auto& one : all) {
      one = byte();
      for (int i = 0; i < sparse; ++i) one = static_cast<unsigned char>(one & byte());
    }
    return all;
  }

 private:
  std::mt19937 m_Engine;
};

}  // namespace ei4::test
