#pragma once

#include <string>
#include <string_view>

#include "ei4info/image_facts.h"

namespace ei4::info {

/// The facts of an input that could be opened, for people: some lines, the first of which begins with the path.
std::string textReport(std::string_view path, const ImageFacts& facts);

/// "completely", "partly", "no".
std::string_view nameOf(Decodes decodes);

/// "complete", "open", "cut", "bad".
std::string_view nameOf(DirectoryState state);

}  // namespace ei4::info
