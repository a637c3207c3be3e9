#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "terminal/shown.h"

namespace ei4::erblb {

using tools::shown;

/// The folders and, last, the file of an entry name that stays below the target folder. Nothing for a name
/// that is empty, starts or ends with '/', or has a component that is empty, "." or "..".
std::optional<std::vector<std::string>> safeComponents(std::string_view name);

}  // namespace ei4::erblb
