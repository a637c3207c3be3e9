// The pictures that the report runs show, by formula.
#pragma once

#include <map>
#include <string>

namespace ei4::test {

struct Source {
  int width;           ///< pixels
  int height;          ///< pixels
  int components;      ///< 1 grey, 3 colour
  int bytesPerSample;  ///< 1 or 2
  /// The stored value at column x of row y.
  int (*sample)(int x, int y, int component);
};

/// By name. None looks the same when it is turned or mirrored, but for the plain ones.
const std::map<std::string, Source>& sources();

}  // namespace ei4::test
