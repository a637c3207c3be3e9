// The tables of a folder of conformance vectors, as rows to run.
//
//   streams/vectors.tsv  a row per decode of the first `bytes_given` bytes of a bare stream at a reduction
//   factor;
//                        the pixels also stand in NAME.BYTES.FACTOR.raw
//   real/real.tsv        a row per decode of an .ei4 file: "whole stream" at "factor F", or
//                        "N stream bytes read" for "wanted width W"
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ei4::test {

struct VectorRow {
  std::string title;           ///< names the row in a message
  std::filesystem::path file;  ///< a bare stream, or an .ei4 file
  bool isEi4 = false;
  std::uint64_t bytesGiven = 0;    ///< of the stream, header included; 0: all of it
  int factor = 0;                  ///< unless wantedWidth is set
  std::optional<int> wantedWidth;  ///< the factor and the bytes to read are to be found from it

  int status = 0;
  int width = 0;
  int height = 0;
  std::optional<int> bytesPerPixel;
  std::optional<std::uint64_t> outputBytes;
  std::string sha256;
  std::filesystem::path pixels;  ///< raw file of the same pixels; empty: there is none
};

/// The rows of both tables. Throws std::runtime_error that names file and line where a table is missing or a
/// line of it cannot be understood.
std::vector<VectorRow> readVectorRows(const std::filesystem::path& folder);

}  // namespace ei4::test
