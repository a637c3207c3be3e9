// The first inputs of each fuzz target, made with the project's own writers: by their names, which say what they are.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::fuzz {

using Bytes = std::vector<unsigned char>;
using Seeds = std::map<std::string, Bytes>;

Seeds streamSeeds();
Seeds bestFactorSeeds();
Seeds prepSeeds();
Seeds blobSeeds();
Seeds optionsSeeds();
Seeds pictureSeeds();
Seeds reportSeeds();
Seeds textSeeds();
Seeds paintSeeds();
Seeds tableSeeds();

/// An input, put together as its target takes it apart (see input.h).
class Seed {
 public:
  Seed& u8(int value) { return put(static_cast<std::uint64_t>(value), 1); }
  Seed& u16(int value) { return put(static_cast<std::uint64_t>(value), 2); }
  Seed& i32(std::int64_t value) { return put(static_cast<std::uint64_t>(value), 4); }
  Seed& i64(std::int64_t value) { return put(static_cast<std::uint64_t>(value), 8); }
  Seed& f64(double value) { return put(std::bit_cast<std::uint64_t>(value), 8); }
  Seed& bytes(std::span<const unsigned char> more) {
    for (const unsigned char byte : more) m_bytes.push_back(byte);
    return *this;
  }
  Seed& text(std::string_view more) {
    for (const char c : more) m_bytes.push_back(static_cast<unsigned char>(c));
    return *this;
  }

  operator Bytes() const { return m_bytes; }

 private:
  Seed& put(std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i) m_bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
    return *this;
  }

  Bytes m_bytes;
};

/// A small coded picture with smooth parts, an edge and some noise. bits: of a sample, up to 8, or 16 for two bytes.
Bytes smallStream(int width, int height, int bytesPerPixel, int bits);

}  // namespace ei4::fuzz
