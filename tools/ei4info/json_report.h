#pragma once

#include <string>
#include <string_view>

#include "ei4info/image_facts.h"

namespace ei4::info {

/// The facts as one JSON object of the keys that --help names, in UTF-8, over several lines without a line end behind
/// the last.
std::string jsonReport(std::string_view path, const ImageFacts& facts);

}  // namespace ei4::info
