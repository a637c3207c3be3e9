#include "ei4info/command_line.h"

namespace ei4::info {

Request parseCommandLine(std::span<const std::string_view> words) {
  Request request;
  bool optionsEnded = false;
  for (const std::string_view word : words) {
    if (optionsEnded || word.size() < 2 || word.front() != '-') {
      request.paths.emplace_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else if (word == "-h" || word == "--help") {
      request.job = Request::Job::help;
      return request;
    } else if (word == "--version") {
      request.job = Request::Job::version;
      return request;
    } else if (word == "-j" || word == "--json") {
      request.json = true;
    } else if (word == "-b" || word == "--blob") {
      request.blob = true;
    } else if (word == "--no-progress") {
      request.progress = false;
    } else {
      throw UsageError("unknown option '" + std::string(word) + "'");
    }
  }
  if (request.paths.empty()) throw UsageError("no file");
  return request;
}

std::string_view usageText() {
  return R"(ei4info: shows what is in .ei4 images, whether they are whole, and how many bytes each size of them takes

Usage: ei4info [OPTION...] FILE...

Of each image it shows the preamble and the stream header, the chunks of each plane and order in the coded data, and
for each size that the converter can choose its width and height, the -geom widths that lead to it, and the bytes of
the input that are then read. No pixels are made; coded data that is cut or damaged is described as far as it goes.

Options:
  -b, --blob          FILE is DIR/NAME for the entry NAME of DIR/full.erblb (or NAME in two parts, the first of them
                      in DIR/initial.erblb), as with ei4convert -blob
  -j, --json          print one JSON document: an object for one FILE, an array of objects for several
      --no-progress   no progress bar (there is one on a terminal only, and only when standard output goes elsewhere)
  -h, --help          print this text
      --version       print the version
      --              what follows is no option

An image decodes "completely" when its directory has its end code, "partly" when the data ends before, and else not at
all. Data that ends behind a whole chunk is no fault: lossy images end so. Data that ends within one is cut.

Keys of a JSON object, always there; null for what cannot be read, and for numbers that are not finite:
  file       the path; bytes that are no UTF-8 are replaced by U+FFFD
  bytes      of the file, of the entry, or of its two parts
  decodes    "completely", "partly" or "no"
  faults     array of texts; empty for a good image
  preamble   {bytes, intercept, slope, window, level}
  header     {magic, bytesPerPixel, bitsPerPixel, width, height}, as the file claims
  coding     {levels, topBit}; topBit is null when all coefficients are 0
  directory  {state, chunks, bits, codedBytes, trailingBytes, orders}; state is "complete", "open" (ends behind a whole
             chunk), "cut" or "bad"; orders is an array of {plane, order, bits, significance, refinement}, the last two
             {chunks, bits}
  sizes      array from full size down of {factor, width, height, wantedFrom, wantedTo, readBudget, bytesRead, accepted};
             wantedTo is null for "and wider, and without -geom", readBudget is null for the whole stream, accepted is
             false for a size that an input of this length may not claim

Exit status: 0 all images are good, 1 some cannot be read, are cut or damaged (all others are shown), 2 wrong usage.
)";
}

}  // namespace ei4::info
