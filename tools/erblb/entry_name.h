#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ei4::erblb {

/// The name as it can be shown on a terminal: each byte of control characters, backslashes and what is no
/// UTF-8 becomes \xNN.
std::string shown(std::string_view name);

/// The folders and, last, the file of an entry name that stays below the target folder. Nothing for a name
/// that is empty, starts or ends with '/', or has a component that is empty, "." or "..".
std::optional<std::vector<std::string>> safeComponents(std::string_view name);

}  // namespace ei4::erblb
