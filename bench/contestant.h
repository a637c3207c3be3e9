// What the comparison of codecs compares.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace ei4::bench {

using Bytes = std::vector<unsigned char>;

/// A picture as packed pixels, and the coded stream that it came from.
struct Picture {
  std::string name;
  int width;          ///< pixels, at least 1
  int height;         ///< pixels, at least 1
  int bytesPerPixel;  ///< 1, 2: grey, 2 in host byte order; 3: interleaved colour of 8 bits a component
  int bitsPerSample;  ///< enough for the largest sample
  Bytes stream;       ///< stream header and coded data
  Bytes pixels;
};

/// A way to store pictures without loss and to get them back, memory to memory, on one thread.
class Contestant {
 public:
  virtual ~Contestant() = default;
  virtual std::string key() const = 0;    ///< for options
  virtual std::string title() const = 0;  ///< for tables

  /// The picture as this contestant stores it. Throws std::exception when it can't.
  virtual Bytes code(const Picture& picture) const = 0;

  /// Everything from the coded bytes to the packed pixels, set-up included. `out` has the size of the picture's pixels.
  /// Throws std::exception when it can't.
  virtual void decode(const Bytes& coded, std::span<unsigned char> out) const = 0;
};

std::unique_ptr<Contestant> makeOurs(const std::string& title);
std::unique_ptr<Contestant> makeCopy();      ///< stores the pixels as they are: copying them is the floor
std::unique_ptr<Contestant> makeOpenJph();   ///< reversible HTJ2K; null when built without the library
std::unique_ptr<Contestant> makeOpenJpeg();  ///< reversible JPEG 2000; null when built without the library

}  // namespace ei4::bench
