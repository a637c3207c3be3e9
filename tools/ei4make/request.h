#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "encoder/ei4_writer.h"
#include "encoder/stream_format.h"

namespace ei4::tools {

/// How headerless pixels are to be read.
struct RawFormat {
  int width = 0;
  int height = 0;
  int bytesPerPixel = 1;
};

/// One job of ei4make as the command line states it.
struct MakeRequest {
  bool wantsHelp = false;     ///< nothing else counts then
  bool wantsVersion = false;  ///< nothing else counts then
  std::string input;
  std::string output;
  std::optional<RawFormat> raw;  ///< absent: the input says itself what it is
  std::optional<int> frame;      ///< from 1
  std::optional<int> bits;
  bool bareStream = false;
  Magic magic = Magic::GW41;
  std::optional<int> levels;
  int lowestBit = 0;
  std::optional<float> window;
  std::optional<float> level;
  std::optional<float> slope;
  std::optional<float> intercept;
  int preambleLength = kShortestPreamble;
};

/// The command line is wrong; what() says where.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the words behind the program's name. Options and files may mix; "--" ends the options; a value
/// follows its option as the next word or behind "=". Throws UsageError.
MakeRequest parseRequest(std::span<const std::string_view> words);

/// What --help prints.
std::string_view usageText();

}  // namespace ei4::tools
