#pragma once

#include <string>
#include <string_view>

namespace ei4::tools {

/// The name as it can be shown on a terminal: each byte of control characters, backslashes and what is no
/// UTF-8 becomes \xNN.
std::string shown(std::string_view name);

}  // namespace ei4::tools
