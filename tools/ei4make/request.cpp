#include "ei4make/request.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <vector>

namespace ei4::tools {

namespace {

constexpr int kMostFrames = 2147483647;

[[noreturn]] void refuse(std::string_view option, std::string_view value, std::string_view expected) {
  throw UsageError(std::string(option) + " takes " + std::string(expected) + ", not \"" + std::string(value) +
                   "\"");
}

template <typename Number>
bool readWhole(std::string_view text, Number& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}

int integer(std::string_view option, std::string_view text, int least, int most) {
  int value = 0;
  if (!readWhole(text, value) || value < least || value > most) {
    refuse(option, text, "a number from " + std::to_string(least) + " to " + std::to_string(most));
  }
  return value;
}

float real(std::string_view option, std::string_view text) {
  float value = 0;
  if (!readWhole(text, value) || !std::isfinite(value)) refuse(option, text, "a number");
  return value;
}

int bytesPerPixelOf(std::string_view option, std::string_view text) {
  if (text == "M08") return 1;
  if (text == "M16") return 2;
  if (text == "RGB") return 3;
  refuse(option, text, "M08, M16 or RGB");
}

Magic magicOf(std::string_view option, std::string_view text) {
  if (text == "GW40") return Magic::GW40;
  if (text == "GW41") return Magic::GW41;
  refuse(option, text, "GW40 or GW41");
}

/// Collects the options one by one and checks at the end that they go together.
class Parser {
 public:
  MakeRequest parse(std::span<const std::string_view> words) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
      const std::string_view word = words[i];
      if (optionsEnded || word.size() < 2 || word[0] != '-') {
        files_.emplace_back(word);
      } else if (word == "--") {
        optionsEnded = true;
      } else if (!takeFlag(word)) {
        i += takeValue(word, i + 1 < words.size() ? words[i + 1] : std::string_view(), i + 1 < words.size());
      }
    }
    if (!request_.wantsHelp && !request_.wantsVersion) checkTogether();
    return request_;
  }

 private:
  bool takeFlag(std::string_view word) {
    if (word == "--help" || word == "-h") return request_.wantsHelp = true;
    if (word == "--version") return request_.wantsVersion = true;
    if (word == "--stream") return request_.bareStream = true;
    return false;
  }

  /// Returns how many further words it used: 0 for "--name=value", 1 for "--name value".
  std::size_t takeValue(std::string_view word, std::string_view next, bool hasNext) {
    const std::size_t equals = word.find('=');
    const std::string_view name = word.substr(0, equals);
    const bool isJoined = equals != std::string_view::npos;
    const auto handler = handlers_.find(name);
    if (handler == handlers_.end()) throw UsageError("unknown option " + std::string(word));
    if (!isJoined && !hasNext) throw UsageError(std::string(name) + " needs a value");
    handler->second(name, isJoined ? word.substr(equals + 1) : next);
    return isJoined ? 0 : 1;
  }

  void takeSize(std::string_view option, std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) refuse(option, text, "WIDTHxHEIGHT");
    raw_.width = integer(option, text.substr(0, cross), 1, kMostSide);
    raw_.height = integer(option, text.substr(cross + 1), 1, kMostSide);
    hasSize_ = true;
  }

  void checkTogether() {
    if (files_.size() != 2) throw UsageError("one INPUT and one OUTPUT are needed");
    if (hasSize_ != hasFormat_) throw UsageError("a raw input needs both --size and --format");
    if (hasSize_ && request_.frame) throw UsageError("a raw input has no frames");
    if (request_.bareStream && hasPreambleOption_) {
      throw UsageError("--stream writes no preamble, so it has no window, level, slope, intercept or length");
    }
    request_.input = files_[0];
    request_.output = files_[1];
    if (hasSize_) request_.raw = raw_;
  }

  using Handler = std::function<void(std::string_view option, std::string_view value)>;

  Handler preambleReal(std::optional<float> MakeRequest::*field) {
    return [this, field](std::string_view option, std::string_view value) {
      request_.*field = real(option, value);
      hasPreambleOption_ = true;
    };
  }

  MakeRequest request_;
  RawFormat raw_;
  std::vector<std::string> files_;
  bool hasSize_ = false;
  bool hasFormat_ = false;
  bool hasPreambleOption_ = false;

  const std::map<std::string_view, Handler> handlers_ = {
      {"--size", [this](auto option, auto value) { takeSize(option, value); }},
      {"--format",
       [this](auto option, auto value) {
         raw_.bytesPerPixel = bytesPerPixelOf(option, value);
         hasFormat_ = true;
       }},
      {"--frame",
       [this](auto option, auto value) { request_.frame = integer(option, value, 1, kMostFrames); }},
      {"--bits", [this](auto option, auto value) { request_.bits = integer(option, value, 1, 16); }},
      {"--magic", [this](auto option, auto value) { request_.magic = magicOf(option, value); }},
      {"--levels",
       [this](auto option, auto value) { request_.levels = integer(option, value, 0, kMostLevels); }},
      {"--lowest-bit",
       [this](auto option, auto value) { request_.lowestBit = integer(option, value, 0, kHighestBit); }},
      {"--window", preambleReal(&MakeRequest::window)},
      {"--level", preambleReal(&MakeRequest::level)},
      {"--slope", preambleReal(&MakeRequest::slope)},
      {"--intercept", preambleReal(&MakeRequest::intercept)},
      {"--preamble",
       [this](auto option, auto value) {
         request_.preambleLength = integer(option, value, kShortestPreamble, kLongestPreamble);
         hasPreambleOption_ = true;
       }},
  };
};

}  // namespace

MakeRequest parseRequest(std::span<const std::string_view> words) { return Parser().parse(words); }

std::string_view usageText() {
  return R"(Makes a wavelet-compressed .ei4 file of a DICOM, PNG, PGM, PPM or raw picture.

Usage: ei4make [OPTION...] INPUT OUTPUT

What an input is shows by its content; PGM and PPM are the binary ones, and raw pixels
need --size and --format.

DICOM input:
  --frame N          which frame of several, from 1
  Taken are 8 and 16 bits allocated, grey, palettes and 8-bit colour, uncompressed, deflated,
  RLE, JPEG and JPEG-LS. Rescaling and the first window come from the file; without a
  window the values of the picture are all shown. Signed samples are shifted to begin at 0.
  Where high samples are not the bright ones (MONOCHROME1, or a slope below 0), samples are
  exchanged, the highest with the lowest. Both change slope and intercept such that the
  rescaled values stay. Nothing else of the file's header goes into the .ei4.

PNG input:
  Grey of up to 16 bits, palettes and 8-bit colour; opaque ones only. The sBIT chunk of a
  16-bit picture counts when it holds for all samples.

Raw input (rows from the top, no header, 16-bit samples low byte first):
  --size WxH         width and height in pixels
  --format FORMAT    M08 (8-bit grey), M16 (16-bit grey) or RGB (24-bit colour)

Coding:
  --bits N           significant bits of a sample (default: those that the input states;
                     for raw input 8, with M16 16)
  --lowest-bit N     leave out the bits below bit N of each wavelet coefficient
                     (default 0: lossless)
  --levels N         wavelet levels, 0 to 8 (default: as many as leave 8 samples a side)
  --magic MAGIC      GW41 (default) or GW40
  --stream           write the bare stream, without a preamble

Preamble (these take the place of what a DICOM file states):
  --slope S          rescale slope (default 1)
  --intercept I      rescale intercept (default 0)
  --window W         window width, in rescaled units  (default: both together show
  --level L          window centre, in rescaled units  all values of the stated bits)
  --preamble N       length of the preamble in bytes, 24 (default) to 65535; readers of
                     plain files take 24 only, inside a container longer ones are possible

  --help, --version

Exit status: 0 the file was written, 1 it could not be made, 2 wrong usage.
)";
}

}  // namespace ei4::tools
