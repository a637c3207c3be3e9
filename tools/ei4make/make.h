#pragma once

#include <iosfwd>
#include <span>
#include <string_view>

namespace ei4::tools {

/// The whole program behind its main(): does what `words` (without the program's name) ask for, answers on
/// `out`, complains on `err`, returns the exit status: 0 done, 1 the file could not be made, 2 wrong usage.
int runEi4make(std::span<const std::string_view> words, std::ostream& out, std::ostream& err);

}  // namespace ei4::tools
