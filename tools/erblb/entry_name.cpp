#include "erblb/entry_name.h"

#include <algorithm>

namespace ei4::erblb {

std::optional<std::vector<std::string>> safeComponents(std::string_view name) {
  std::vector<std::string> components;
  for (std::size_t start = 0; start <= name.size();) {
    const std::size_t end = std::min(name.find('/', start), name.size());
    const std::string_view component = name.substr(start, end - start);
    if (component.empty() || component == "." || component == "..") return std::nullopt;
    components.emplace_back(component);
    start = end + 1;
  }
  return components;
}

}  // namespace ei4::erblb
